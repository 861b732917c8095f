#pragma once

#include "Platform/Foundation/MainQueue.h"
#include "Service/MVVideoStreamService.h"
#include "Service/Mivora.h"
#include "Showroom/Service/Scenario.h"

#include <map>
#include <string>
#include <vector>

namespace showroom {

class CannedBroadcast;

// A broadcast service that plays a scenario: it answers as the scenario says, keeps what the viewer did, and tells the timeline's
// events. A show's video is a film that begins anew at its end. Main thread.
class CannedService final : public mv::Mivora, public std::enable_shared_from_this<CannedService> {
public:
    explicit CannedService(Scenario scenario); // through std::make_shared
    ~CannedService() override;

    // Makes it the kit's service and starts the timeline of the launch.
    void install();
    // Cancels every answer and event that is still to come.
    void stop();

    std::string getStoreUrl() override { return scenario.store; }

    // Every call of the kit in its order, for example "getBroadcasts live 30 0", "b1 startWatching".
    const std::vector<std::string>& callLog() const { return calls; }
    std::function<void(const std::string& call)> onCall; // as it is noted
    // The loudest sample of the videos that play now since the last call, 0 to 1.
    double takeAudioPeak();
    const mv::MVProduct* findProduct(const std::string& productId) const; // null for none
    // From now on an operation answers by this script.
    void setScript(const std::string& operation, OperationScript script) { scenario.operations[operation] = std::move(script); }
    // Makes something happen now, as the timeline would.
    void play(const ScenarioEvent& event);

private:
    friend class CannedBroadcast;
    using Answer = std::function<void()>;

    void performGetBroadcast(const std::string& identifier, BroadcastCompletion completion) override;
    void performGetBroadcasts(const mv::MVBroadCastsListQueryBuilder& queryBuilder, BroadcastsCompletion completion) override;
    void performCreateGuestUser(const std::string& displayName, UserCompletion completion) override;
    mv::MVCurrentUserType currentUserRole() override { return scenario.role; }

    void note(std::string call);
    // Answers a call of the operation by its script: one of the three functions is called, after the latency.
    void answer(const std::string& operation, Answer success, std::function<void(const mv::MVApiError&)> failure, Answer absent);
    void after(double seconds, Answer block);
    OperationScript nextScript(const std::string& operation);
    double echoDelay(const std::string& operation) const; // seconds
    void beganWatching(const std::string& broadcast);
    void tellMessage(const std::shared_ptr<const mv::MVMessage>& message, double delay);
    void tellReaction(const std::shared_ptr<CannedBroadcast>& show, const std::string& reaction, double delay);
    std::shared_ptr<CannedBroadcast> find(const std::string& identifier) const;
    const mv::MVUser& viewer() const { return viewer_; }

    // The events that change the show which they tell of.
    void playMessage(const ScenarioEvent& event, CannedBroadcast& show);
    void playDeletion(const ScenarioEvent& event, CannedBroadcast& show);
    void playFeature(const ScenarioEvent& event, CannedBroadcast& show, bool featured);
    void playStarted(const ScenarioEvent& event, CannedBroadcast& show);
    void playCompleted(const ScenarioEvent& event, CannedBroadcast& show);
    void playStream(const ScenarioEvent& event, CannedBroadcast& show);

    Scenario scenario;
    mv::MVUser viewer_;
    std::vector<std::shared_ptr<CannedBroadcast>> shows;
    std::shared_ptr<mv::MVVideoStreamService> video = std::make_shared<mv::MVVideoStreamService>();
    std::vector<std::string> calls;
    std::map<std::uint64_t, platform::MainQueue::Ticket> waiting; // answers and events that are still to come
    std::uint64_t nextWait = 0;
    platform::Date launch;
};

} // namespace showroom
