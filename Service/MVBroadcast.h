#pragma once

#include "Platform/Foundation/NSObject.h"
#include "Service/MVRecords.h"
#include "Service/MVVideoStreamConfig.h"

#include <functional>
#include <map>
#include <vector>

namespace mv {

// One show. The kit shares the one object between its screens, so that a field written by one is seen by the others. A service
// derives from it and overrides the protected operations; a plain one answers every call with an error. Main thread.
class MVBroadcast : public NSObject {
public:
    using SuccessCompletion = std::function<void(bool success, std::optional<MVApiError> error)>;
    using MessageCompletion = std::function<void(std::shared_ptr<const MVMessage> message, std::optional<MVApiError> error)>;
    using MessageList = std::vector<std::shared_ptr<const MVMessage>>;
    using MessagesCompletion = std::function<void(std::optional<MessageList> messages, std::optional<MVApiError> error)>;

    std::optional<std::string> id;
    std::optional<std::string> title;
    std::optional<std::string> description;
    std::optional<MVBroadcastStatus> status;
    std::optional<Date> startTime; // as scheduled
    std::optional<Date> endTime; // as scheduled
    std::optional<Date> actualStartTime;
    std::optional<Date> actualEndTime;
    std::optional<int> duration; // seconds, of a completed show
    std::optional<int> watchersCount;
    std::optional<URL> bannerImageUrl;
    std::optional<URL> bannerVideoUrl; // the preview video
    std::optional<URL> recordingUrl;
    std::optional<bool> isRecordingAllowed;
    std::optional<std::string> conversationId;
    std::optional<std::vector<std::shared_ptr<MVHost>>> hosts; // the first one presents
    std::optional<std::map<std::string, int>> reactionsCountInfo;
    bool isGuestUserAllowedToChat = false;
    bool isAnonymousAllowedToWatch = false;

    // Each completion is called at most once, on the main thread.
    void startWatching(SuccessCompletion completion);
    void stopWatching(SuccessCompletion completion);
    void startWatchingBroadcastConversation(SuccessCompletion completion);
    void stopWatchingBroadcastConversation(SuccessCompletion completion);
    void loadChatMessages(const MVGetMessagesQueryBuilder& queryBuilder, MessagesCompletion completion);
    void sendMessage(const std::string& message, MessageCompletion completion);
    void addReaction(const std::string& reaction, SuccessCompletion completion); // a key of the kit's reaction table

    virtual void playVideoStream(const std::shared_ptr<MVVideoStreamConfig>& /*streamConfig*/) { }
    virtual void stopVideoStream() { }
    virtual void subscribeEvents() { }
    virtual void unSubscribeEvents() { }
    virtual std::vector<std::shared_ptr<MVProduct>> getProducts() { return {}; }

protected:
    // The service's side of the operations above. It may answer on any thread; the kit hears on the main one.
    virtual void performStartWatching(SuccessCompletion completion);
    virtual void performStopWatching(SuccessCompletion completion);
    virtual void performStartWatchingConversation(SuccessCompletion completion);
    virtual void performStopWatchingConversation(SuccessCompletion completion);
    virtual void performLoadChatMessages(const MVGetMessagesQueryBuilder& queryBuilder, MessagesCompletion completion);
    virtual void performSendMessage(const std::string& message, MessageCompletion completion);
    virtual void performAddReaction(const std::string& reaction, SuccessCompletion completion);
};

} // namespace mv
