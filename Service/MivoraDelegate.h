#pragma once

#include "Service/MVUpdates.h"

namespace mv {

// What a screen hears from the service. Called on the main thread. Override what you need.
class MivoraDelegate {
public:
    virtual ~MivoraDelegate() = default;
    virtual void didBroadcastStarted(const MVBroadcastLiveUpdate& /*update*/) { }
    virtual void didBroadcastCompleted(const MVBroadcastCompletedUpdate& /*update*/) { }
    virtual void didRecievedNewMessageInBroadcast(const MVBroadcastNewMessageData& /*update*/) { }
    virtual void didMessageDeletedFromBroadcast(const MVBroadcastMessagesDeletedData& /*update*/) { }
    virtual void didNewReactionAddedToBroadcast(const MVReactionData& /*update*/) { }
    virtual void didBroadcastProductFeaturedUnfeatured(const MVProductsFeaturedUnfeaturedData& /*update*/) { }
    virtual void didWatchersCountUpdated(const MVWatchersUpdateData& /*update*/) { }
    virtual void didConnectionStatusUpdate(MVConnectionStatus /*newStatus*/) { }
    virtual void didMVErrorOccured(const MVError& /*error*/) { }
};

// What a screen hears about the host's live video. `channelName` is the broadcast's identifier. Called on the main thread.
class MVVideoStreamServiceDelegate {
public:
    virtual ~MVVideoStreamServiceDelegate() = default;
    virtual void didVideoChannelJoinedSuccessfully(const std::string& /*channelName*/) { }
    virtual void didVideoChannelLeftSuccessfully(const std::string& /*channelName*/) { }
    virtual void didHostStreamGotOffline(const std::string& /*channelName*/, std::uint32_t /*uid*/) { }
    virtual void didRecieveHostVideoStream(const std::string& /*channelName*/, std::uint32_t /*uid*/) { }
    virtual void didErrorOccuredInVideoService(const MVError& /*error*/) { }
};

} // namespace mv
