#include "Showroom/Service/CannedBroadcast.h"

#include "Showroom/Service/CannedService.h"

#include <algorithm>

namespace showroom {

using namespace mv;

CannedBroadcast::CannedBroadcast(
    const std::shared_ptr<CannedService>& service, const ScenarioBroadcast& show, const Scenario& scenario, Date launch)
    : service(service)
{
    const auto url = [](const std::optional<std::string>& address) { return address ? URL::parse(*address) : std::nullopt; };
    const auto date = [&](std::optional<double> offset) { return offset ? std::optional(launch + *offset) : std::nullopt; };
    id = show.id;
    title = show.title;
    description = show.description;
    status = show.status;
    startTime = date(show.startsIn);
    endTime = date(show.endsIn);
    watchersCount = show.watchers;
    bannerImageUrl = url(show.banner);
    bannerVideoUrl = url(show.bannerVideo);
    recordingUrl = url(show.recording);
    streamFilm = url(show.stream);
    isRecordingAllowed = show.recordingAllowed;
    conversationId = show.conversation;
    isGuestUserAllowedToChat = show.guestsMayChat;
    isAnonymousAllowedToWatch = show.anonymousMayWatch;
    hosts.emplace();
    for (const auto& host : show.hosts)
        hosts->push_back(std::make_shared<MVHost>(MVHost { .userId = host, .rtcUserId = {}, .user = scenario.users.at(host) }));
    for (const auto& entry : show.products) {
        auto product = std::make_shared<MVProduct>(scenario.products.at(entry.id));
        product->isFeatured = entry.featured;
        products.push_back(std::move(product));
    }
    for (const auto& entry : show.messages) {
        messages.insert(messages.begin(),
            std::make_shared<MVMessage>(MVMessage { .id = entry.id,
                .body = entry.text,
                .owner = scenario.users.at(entry.user),
                .ownerId = entry.user,
                .createdAt = launch - entry.ago,
                .conversationId = conversationId,
                .isDeleted = entry.deleted }));
    }
}

void CannedBroadcast::playVideoStream(const std::shared_ptr<MVVideoStreamConfig>& streamConfig)
{
    const auto owner = noted("playVideoStream");
    if (!owner)
        return;
    stream.reset();
    const int call = ++streamCalls;
    const auto ifWanted = [self = weak(this), call](auto action) {
        return [self, call, action] {
            const auto show = self.lock();
            if (show && show->streamCalls == call)
                action(*show);
        };
    };
    owner->answer(
        "playVideoStream",
        ifWanted([config = streamConfig ? *streamConfig : MVVideoStreamConfig(), video = owner->video, channel = name()](
                     CannedBroadcast& show) {
            video->publish("channel joined", [channel](auto& d) { d.didVideoChannelJoinedSuccessfully(channel); });
            show.startStream(config);
        }),
        [self = weak(this)](const MVApiError& error) {
            if (const auto show = self.lock())
                show->tellStreamError(error.errorMessage.value_or(""));
        },
        [] {});
}

void CannedBroadcast::stopVideoStream()
{
    ++streamCalls;
    stream.reset();
    if (const auto owner = noted("stopVideoStream"))
        owner->video->publish("channel left", [channel = name()](auto& d) { d.didVideoChannelLeftSuccessfully(channel); });
}

void CannedBroadcast::dropStream()
{
    if (stream)
        stream->drop();
    if (const auto owner = service.lock())
        owner->video->publish(
            "host offline", [channel = name(), uid = hostUid()](auto& d) { d.didHostStreamGotOffline(channel, uid); });
}

void CannedBroadcast::resumeStream()
{
    if (stream)
        stream->resume();
    tellHostVideo();
}

void CannedBroadcast::subscribeEvents() { noted("subscribeEvents"); }

void CannedBroadcast::unSubscribeEvents() { noted("unSubscribeEvents"); }

std::vector<std::shared_ptr<MVProduct>> CannedBroadcast::getProducts()
{
    noted("getProducts");
    return products;
}

std::shared_ptr<const MVMessage> CannedBroadcast::addMessage(const MVUser& author, const std::string& text, std::string messageId)
{
    if (messageId.empty())
        messageId = name() + "-new-" + std::to_string(nextMessage++);
    auto message = std::make_shared<MVMessage>(MVMessage { .id = std::move(messageId),
        .body = text,
        .owner = author,
        .ownerId = author.id,
        .createdAt = Date::now(),
        .conversationId = conversationId,
        .isDeleted = false });
    messages.insert(messages.begin(), message);
    return message;
}

std::shared_ptr<const MVMessage> CannedBroadcast::deleteMessage(const std::string& messageId)
{
    const auto found = std::find_if(messages.begin(), messages.end(), [&](const auto& m) { return m->id == messageId; });
    if (found == messages.end())
        return nullptr;
    auto deleted = std::make_shared<MVMessage>(**found);
    deleted->isDeleted = true;
    *found = deleted;
    return deleted;
}

void CannedBroadcast::countReaction(const std::string& reaction)
{
    if (!reactionsCountInfo)
        reactionsCountInfo.emplace();
    ++(*reactionsCountInfo)[reaction];
}

bool CannedBroadcast::setFeatured(const std::string& productId, bool featured)
{
    const auto found
        = std::find_if(products.begin(), products.end(), [&](const auto& product) { return product->id == productId; });
    if (found == products.end())
        return false;
    (*found)->isFeatured = featured;
    return true;
}

void CannedBroadcast::performStartWatching(SuccessCompletion completion)
{
    answerPlainly("startWatching", "startWatching", std::move(completion),
        [show = name()](CannedService& owner) { owner.beganWatching(show); });
}

void CannedBroadcast::performStopWatching(SuccessCompletion completion)
{
    answerPlainly("stopWatching", "stopWatching", std::move(completion));
}

void CannedBroadcast::performStartWatchingConversation(SuccessCompletion completion)
{
    answerPlainly("startWatchingBroadcastConversation", "startWatchingBroadcastConversation", std::move(completion));
}

void CannedBroadcast::performStopWatchingConversation(SuccessCompletion completion)
{
    answerPlainly("stopWatchingBroadcastConversation", "stopWatchingBroadcastConversation", std::move(completion));
}

void CannedBroadcast::performLoadChatMessages(const MVGetMessagesQueryBuilder& queryBuilder, MessagesCompletion completion)
{
    const auto skip = std::size_t(std::max(queryBuilder.skip.value_or(0), 0));
    const auto limit = std::size_t(std::max(queryBuilder.limit.value_or(50), 0));
    const auto owner = noted("loadChatMessages " + std::to_string(limit) + " " + std::to_string(skip));
    if (!owner)
        return;
    owner->answer(
        "loadChatMessages",
        [self = weak(this), skip, limit, completion] {
            const auto show = self.lock();
            if (!show)
                return completion(MessageList {}, std::nullopt);
            const auto& all = show->messages;
            const auto from = all.begin() + std::ptrdiff_t(std::min(skip, all.size()));
            completion(MessageList(from, from + std::min<std::ptrdiff_t>(std::ptrdiff_t(limit), all.end() - from)), std::nullopt);
        },
        [completion](const MVApiError& error) { completion(std::nullopt, error); },
        [completion] { completion(std::nullopt, {}); });
}

void CannedBroadcast::performSendMessage(const std::string& text, MessageCompletion completion)
{
    const auto owner = noted("sendMessage " + text);
    if (!owner)
        return;
    // The message exists from its first success on: a service that answers twice still has it once.
    auto sent = std::make_shared<std::shared_ptr<const MVMessage>>();
    owner->answer(
        "sendMessage",
        [self = weak(this), owner = service, text, sent, completion] {
            const auto show = self.lock();
            const auto teller = owner.lock();
            if (!show || !teller)
                return;
            if (!*sent) {
                *sent = show->addMessage(teller->viewer(), text);
                teller->tellMessage(*sent, teller->echoDelay("sendMessage"));
            }
            completion(*sent, std::nullopt);
        },
        [completion](const MVApiError& error) { completion(nullptr, error); }, [completion] { completion(nullptr, {}); });
}

void CannedBroadcast::performAddReaction(const std::string& reaction, SuccessCompletion completion)
{
    answerPlainly(
        "addReaction " + reaction, "addReaction", std::move(completion), [self = weak(this), reaction](CannedService& owner) {
            if (const auto show = self.lock())
                owner.tellReaction(show, reaction, owner.echoDelay("addReaction"));
        });
}

std::uint32_t CannedBroadcast::hostUid() const { return hosts && !hosts->empty() ? hosts->front()->rtcUserId.value_or(1) : 1; }

void CannedBroadcast::startStream(const MVVideoStreamConfig& streamConfig)
{
    if (!streamFilm)
        return tellHostVideo();
    stream = std::make_unique<CannedStream>(
        *streamFilm, streamConfig,
        [self = weak(this)] {
            if (const auto show = self.lock())
                show->tellHostVideo();
        },
        [self = weak(this)](const std::string& problem) {
            if (const auto show = self.lock())
                show->tellStreamError(problem);
        });
}

void CannedBroadcast::tellHostVideo()
{
    if (const auto owner = service.lock())
        owner->video->publish(
            "host video", [channel = name(), uid = hostUid()](auto& d) { d.didRecieveHostVideoStream(channel, uid); });
}

void CannedBroadcast::tellStreamError(const std::string& message)
{
    if (const auto owner = service.lock())
        owner->video->publish("stream error", [told = MVError { message }](auto& d) { d.didErrorOccuredInVideoService(told); });
}

std::shared_ptr<CannedService> CannedBroadcast::noted(const std::string& call) const
{
    const auto owner = service.lock();
    if (owner)
        owner->note(name() + " " + call);
    return owner;
}

void CannedBroadcast::answerPlainly(const std::string& call, const std::string& operation, SuccessCompletion completion,
    std::function<void(CannedService&)> onSuccess)
{
    const auto owner = noted(call);
    if (!owner)
        return;
    auto once = std::make_shared<std::function<void(CannedService&)>>(std::move(onSuccess));
    owner->answer(
        operation,
        [owner = service, once, completion] {
            const auto teller = owner.lock();
            if (const auto effect = std::exchange(*once, nullptr); effect && teller)
                effect(*teller);
            completion(true, std::nullopt);
        },
        [completion](const MVApiError& error) { completion(false, error); }, [completion] { completion(false, std::nullopt); });
}

} // namespace showroom
