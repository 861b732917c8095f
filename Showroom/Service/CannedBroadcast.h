#pragma once

#include "Service/MVBroadcast.h"
#include "Showroom/Service/CannedStream.h"
#include "Showroom/Service/Scenario.h"

namespace showroom {

class CannedService;

// A show of the scenario with its chat and products. Its service outlives it or is gone, then nothing is answered any more.
class CannedBroadcast final : public mv::MVBroadcast {
public:
    CannedBroadcast(const std::shared_ptr<CannedService>& service, const ScenarioBroadcast& show, const Scenario& scenario,
        platform::Date launch);

    void playVideoStream(const std::shared_ptr<mv::MVVideoStreamConfig>& streamConfig) override;
    void stopVideoStream() override;
    void subscribeEvents() override;
    void unSubscribeEvents() override;
    std::vector<std::shared_ptr<mv::MVProduct>> getProducts() override;

    // For the service.
    std::shared_ptr<const mv::MVMessage> addMessage(
        const mv::MVUser& author, const std::string& text, std::string messageId = {});
    // The message as it is told after its deletion; null when there is none of that identifier.
    std::shared_ptr<const mv::MVMessage> deleteMessage(const std::string& messageId);
    void countReaction(const std::string& reaction);
    bool setFeatured(const std::string& productId, bool featured); // false: no such product
    void dropStream(); // the host goes away; nothing happens when nobody watches the video
    void resumeStream();
    double takeAudioPeak() { return stream ? stream->player()->takeAudioPeak() : 0; } // since the last call, 0 to 1

private:
    void performStartWatching(SuccessCompletion completion) override;
    void performStopWatching(SuccessCompletion completion) override;
    void performStartWatchingConversation(SuccessCompletion completion) override;
    void performStopWatchingConversation(SuccessCompletion completion) override;
    void performLoadChatMessages(const mv::MVGetMessagesQueryBuilder& queryBuilder, MessagesCompletion completion) override;
    void performSendMessage(const std::string& message, MessageCompletion completion) override;
    void performAddReaction(const std::string& reaction, SuccessCompletion completion) override;

    std::shared_ptr<CannedService> noted(const std::string& call) const; // the service, which has noted the call; null: gone
    // Answers a call that yields no value. What its success does, it does once, also when the script answers twice.
    void answerPlainly(const std::string& call, const std::string& operation, SuccessCompletion completion,
        std::function<void(CannedService&)> onSuccess = {});
    std::string name() const { return id.value_or(""); }
    std::uint32_t hostUid() const;
    void startStream(const mv::MVVideoStreamConfig& streamConfig);
    void tellHostVideo();
    void tellStreamError(const std::string& message);

    std::weak_ptr<CannedService> service;
    std::vector<std::shared_ptr<mv::MVProduct>> products;
    MessageList messages; // newest first, deleted ones stay as such
    int nextMessage = 0;
    std::optional<platform::URL> streamFilm; // what the host's video shows; absent: the events come without a picture
    std::unique_ptr<CannedStream> stream; // null while nobody watches
    int streamCalls = 0; // tells an answer from one to a call that was taken back
};

} // namespace showroom
