#include "Showroom/Service/CannedService.h"

#include "Platform/Foundation/NSLog.h"
#include "Showroom/Service/CannedBroadcast.h"

#include <algorithm>
#include <thread>

namespace showroom {

using namespace mv;

namespace {

std::optional<int> wholeNumber(const JSONValue& json)
{
    const auto number = json.integer();
    return number ? std::optional<int>(int(std::clamp<std::int64_t>(*number, INT32_MIN, INT32_MAX))) : std::nullopt;
}

const char* statusName(std::optional<MVBroadcastStatus> status)
{
    if (!status)
        return "any";
    return *status == MVBroadcastStatus::live ? "live" : *status == MVBroadcastStatus::upcoming ? "upcoming" : "completed";
}

} // namespace

CannedService::CannedService(Scenario scenario)
    : scenario(std::move(scenario))
    , launch(Date::now())
{
    if (const auto user = this->scenario.users.find(this->scenario.viewer); user != this->scenario.users.end())
        viewer_ = user->second;
}

CannedService::~CannedService() { stop(); }

void CannedService::install()
{
    shows.clear();
    launch = Date::now();
    for (const auto& show : scenario.broadcasts)
        shows.push_back(make<CannedBroadcast>(shared_from_this(), show, scenario, launch));
    Mivora::install(shared_from_this());
    MVVideoStreamService::install(video);
    for (const auto& event : scenario.timeline) {
        if (!event.sinceWatching)
            after(event.at, [this, event] { play(event); });
    }
}

void CannedService::stop()
{
    for (const auto& [id, ticket] : waiting)
        MainQueue::shared().cancel(ticket);
    waiting.clear();
}

void CannedService::performGetBroadcast(const std::string& identifier, BroadcastCompletion completion)
{
    note("getBroadcast " + identifier);
    answer(
        "getBroadcast",
        [this, identifier, completion] {
            const auto show = find(identifier);
            const MVApiError missing { "not_found", "There is no broadcast \"" + identifier + "\".", 404 };
            completion(show, show ? std::nullopt : std::optional(missing));
        },
        [completion](const MVApiError& error) { completion(nullptr, error); }, [completion] { completion(nullptr, {}); });
}

void CannedService::performGetBroadcasts(const MVBroadCastsListQueryBuilder& query, BroadcastsCompletion completion)
{
    note("getBroadcasts " + std::string(statusName(query.status)) + " " + std::to_string(query.limit) + " "
        + std::to_string(query.skip));
    answer(
        "getBroadcasts",
        [this, query, completion] {
            BroadcastList found;
            std::copy_if(shows.begin(), shows.end(), std::back_inserter(found),
                [&](const auto& show) { return !query.status || show->status == query.status; });
            if (query.sort) {
                const bool rising = query.sort == MVBroadCastListSortOrder::ASC;
                std::stable_sort(found.begin(), found.end(), [rising](const auto& a, const auto& b) {
                    return rising ? a->startTime < b->startTime : b->startTime < a->startTime;
                });
            }
            found.erase(found.begin(), found.begin() + std::clamp<std::ptrdiff_t>(query.skip, 0, std::ssize(found)));
            found.resize(std::min(found.size(), std::size_t(std::max(query.limit, 0))));
            completion(std::move(found), std::nullopt);
        },
        [completion](const MVApiError& error) { completion(std::nullopt, error); },
        [completion] { completion(std::nullopt, {}); });
}

void CannedService::performCreateGuestUser(const std::string& displayName, UserCompletion completion)
{
    note("createGuestUser " + displayName);
    answer(
        "createGuestUser",
        [this, displayName, completion] {
            viewer_ = { .id = "guest-viewer", .displayName = displayName };
            scenario.role = MVCurrentUserType::guest;
            completion(viewer_, std::nullopt);
        },
        [completion](const MVApiError& error) { completion(std::nullopt, error); },
        [completion] { completion(std::nullopt, {}); });
}

void CannedService::note(std::string call)
{
    calls.push_back(std::move(call));
    if (onCall)
        onCall(calls.back());
}

double CannedService::takeAudioPeak()
{
    double peak = 0;
    for (const auto& show : shows)
        peak = std::max(peak, show->takeAudioPeak());
    return peak;
}

void CannedService::answer(
    const std::string& operation, Answer success, std::function<void(const MVApiError&)> failure, Answer absent)
{
    const auto script = nextScript(operation);
    switch (script.answer) {
    case CannedAnswer::success:
        return after(script.latency, std::move(success));
    case CannedAnswer::failure:
        return after(script.latency, [failure = std::move(failure), error = script.error] { failure(error); });
    case CannedAnswer::absent:
        return after(script.latency, std::move(absent));
    case CannedAnswer::twice:
        return after(script.latency, [success = std::move(success)] {
            success();
            success();
        });
    case CannedAnswer::offMainThread:
        return after(script.latency, [success = std::move(success)] { std::thread(success).join(); });
    case CannedAnswer::never:
        return;
    }
}

void CannedService::after(double seconds, Answer block)
{
    const auto id = nextWait++;
    waiting[id] = MainQueue::shared().asyncAfter(seconds, [self = weak_from_this(), id, block = std::move(block)] {
        if (const auto service = self.lock()) {
            service->waiting.erase(id);
            block();
        }
    });
}

OperationScript CannedService::nextScript(const std::string& operation)
{
    const auto found = scenario.operations.find(operation);
    if (found == scenario.operations.end())
        return {};
    auto script = found->second;
    if (script.times == 0)
        script.answer = CannedAnswer::success;
    else if (script.times > 0)
        --found->second.times;
    return script;
}

double CannedService::echoDelay(const std::string& operation) const
{
    const auto found = scenario.operations.find(operation);
    return found == scenario.operations.end() ? 0 : found->second.echo.value_or(0);
}

void CannedService::beganWatching(const std::string& broadcast)
{
    for (const auto& event : scenario.timeline) {
        if (event.sinceWatching && event.broadcast == broadcast)
            after(event.at, [this, event] { play(event); });
    }
}

void CannedService::tellMessage(const std::shared_ptr<const MVMessage>& message, double delay)
{
    after(delay, [this, message] {
        publish("new message", [message](auto& d) { d.didRecievedNewMessageInBroadcast({ .message = message }); });
    });
}

void CannedService::tellReaction(const std::shared_ptr<CannedBroadcast>& show, const std::string& reaction, double delay)
{
    after(delay, [this, show, reaction] {
        show->countReaction(reaction);
        const MVReactionData data { show->id, reaction, show->reactionsCountInfo };
        publish("new reaction", [data](auto& d) { d.didNewReactionAddedToBroadcast(data); });
    });
}

std::shared_ptr<CannedBroadcast> CannedService::find(const std::string& identifier) const
{
    const auto found = std::find_if(shows.begin(), shows.end(), [&](const auto& show) { return show->id == identifier; });
    return found == shows.end() ? nullptr : *found;
}

const MVProduct* CannedService::findProduct(const std::string& productId) const
{
    const auto found = scenario.products.find(productId);
    return found == scenario.products.end() ? nullptr : &found->second;
}

void CannedService::play(const ScenarioEvent& event)
{
    const auto text = [&](const char* key) { return event.detail[key].text(); };
    if (event.kind == "error")
        return publish("error", [told = MVError { text("message").value_or("") }](auto& d) { d.didMVErrorOccured(told); });

    const auto show = find(event.broadcast);
    if (!show)
        return NSLog("scenario event \"" + event.kind + "\" not played: there is no broadcast \"" + event.broadcast + "\"");
    if (event.kind == "message")
        return playMessage(event, *show);
    if (event.kind == "deletion")
        return playDeletion(event, *show);
    if (event.kind == "feature" || event.kind == "unfeature")
        return playFeature(event, *show, event.kind == "feature");
    if (event.kind == "started")
        return playStarted(event, *show);
    if (event.kind == "completed")
        return playCompleted(event, *show);
    if (event.kind.starts_with("stream"))
        return playStream(event, *show);
    if (event.kind == "reaction")
        return tellReaction(show, text("reaction").value_or(""), 0);
    if (event.kind == "watchers") {
        show->watchersCount = wholeNumber(event.detail["count"]);
        const MVWatchersUpdateData data { show->id, show->watchersCount };
        publish("watchers", [data](auto& d) { d.didWatchersCountUpdated(data); });
    }
}

void CannedService::playMessage(const ScenarioEvent& event, CannedBroadcast& show)
{
    const auto author = scenario.users.find(event.detail["user"].text().value_or(""));
    if (author == scenario.users.end())
        return NSLog("scenario message not played: nobody is \"" + event.detail["user"].text().value_or("") + "\"");
    const auto message
        = show.addMessage(author->second, event.detail["text"].text().value_or(""), event.detail["id"].text().value_or(""));
    publish("new message", [message](auto& d) { d.didRecievedNewMessageInBroadcast({ .message = message }); });
}

void CannedService::playDeletion(const ScenarioEvent& event, CannedBroadcast& show)
{
    MVBroadcast::MessageList deleted;
    if (const auto message = show.deleteMessage(event.detail["message"].text().value_or("")))
        deleted.push_back(message);
    publish("deletion", [deleted](auto& d) { d.didMessageDeletedFromBroadcast({ .deletedMessages = deleted }); });
}

void CannedService::playFeature(const ScenarioEvent& event, CannedBroadcast& show, bool featured)
{
    const auto product = event.detail["product"].text().value_or("");
    if (!show.setFeatured(product, featured))
        return NSLog("scenario event \"" + event.kind + "\" not played: the show has no product \"" + product + "\"");
    using Type = MVProductsFeaturedUpdateType;
    const MVProductsFeaturedUnfeaturedData data { show.id, featured ? Type::featured : Type::unfeatured,
        std::vector<std::string> { product } };
    publish("featured products", [data](auto& d) { d.didBroadcastProductFeaturedUnfeatured(data); });
}

void CannedService::playStarted(const ScenarioEvent& event, CannedBroadcast& show)
{
    MVBroadcastLiveUpdate update { show.id, event.detail["title"].text(), Date::now(), MVBroadcastStatus::live, {}, {}, {} };
    if (show.hosts && !show.hosts->empty()) {
        const auto& host = *show.hosts->front();
        update.liveUserId = host.userId;
        update.liveUserDisplayName = host.user ? host.user->displayName : std::nullopt;
        update.liveUserWebRtcId = host.rtcUserId.value_or(1);
    }
    if (!update.broadcastTitle)
        update.broadcastTitle = show.title;
    show.status = MVBroadcastStatus::live;
    publish("started", [update](auto& d) { d.didBroadcastStarted(update); });
}

void CannedService::playCompleted(const ScenarioEvent& event, CannedBroadcast& show)
{
    const MVBroadcastCompletedUpdate update { show.id, show.title, Date::now(), wholeNumber(event.detail["duration"]),
        MVBroadcastStatus::completed };
    show.status = MVBroadcastStatus::completed;
    publish("completed", [update](auto& d) { d.didBroadcastCompleted(update); });
}

void CannedService::playStream(const ScenarioEvent& event, CannedBroadcast& show)
{
    if (event.kind == "streamOffline")
        show.dropStream();
    else if (event.kind == "streamOnline")
        show.resumeStream();
    else
        video->publish("stream error",
            [told = MVError { event.detail["message"].text().value_or("") }](auto& d) { d.didErrorOccuredInVideoService(told); });
}

} // namespace showroom
