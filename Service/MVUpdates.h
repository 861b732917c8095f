#pragma once

#include "Service/MVRecords.h"

#include <map>
#include <vector>

namespace mv {

// What the service's events carry. Every field may be absent.

struct MVBroadcastLiveUpdate {
    std::optional<std::string> broadcastId;
    std::optional<std::string> broadcastTitle;
    std::optional<Date> broadcastActualStartTime;
    std::optional<MVBroadcastStatus> newStatus;
    std::optional<std::string> liveUserId;
    std::optional<std::string> liveUserDisplayName;
    std::optional<std::uint32_t> liveUserWebRtcId;
};

struct MVBroadcastCompletedUpdate {
    std::optional<std::string> broadcastId;
    std::optional<std::string> broadcastTitle;
    std::optional<Date> broadcastActualEndTime;
    std::optional<int> totalDuration; // seconds
    std::optional<MVBroadcastStatus> newStatus;
};

struct MVWatchersUpdateData {
    std::optional<std::string> broadcastId;
    std::optional<int> newWatchersCount;
};

struct MVReactionData {
    std::optional<std::string> broadcastId;
    std::optional<std::string> reactionType; // a key of the kit's reaction table
    std::optional<std::map<std::string, int>> newReactionsCountInfo;
};

struct MVBroadcastNewMessageData {
    std::shared_ptr<const MVMessage> message; // null: absent
};

struct MVBroadcastMessagesDeletedData {
    std::optional<std::vector<std::shared_ptr<const MVMessage>>> deletedMessages;
};

struct MVProductsFeaturedUnfeaturedData {
    std::optional<std::string> broadcastId;
    std::optional<MVProductsFeaturedUpdateType> updateType;
    std::optional<std::vector<std::string>> productIds;
};

} // namespace mv
