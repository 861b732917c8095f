#include "Showroom/Service/CannedService.h"

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/NSLog.h"

#include <gtest/gtest.h>

namespace showroom {
namespace {

using namespace mv;

constexpr const char* small = R"({
    "store": "shop.example", "role": "anonymous",
    "users": [ { "id": "h", "name": "Host" }, { "id": "u", "name": "Una" } ],
    "products": [ { "id": "lamp", "title": "Lamp", "thumbnail": "lamp.jpg", "url": "https://shop.example/lamp" } ],
    "broadcasts": [
        { "id": "a", "status": "live", "startsIn": -60, "hosts": [ "h" ], "conversation": "talk", "products": [ { "id": "lamp" } ],
          "messages": [ { "id": "1", "user": "u", "text": "first" }, { "id": "2", "user": "h", "text": "second" } ] },
        { "id": "b", "status": "upcoming", "startsIn": 7200 },
        { "id": "c", "status": "upcoming", "startsIn": 3600 }
    ],
    "operations": { "sendMessage": { "latency": 0.2, "echo": 0.1 } },
    "timeline": [
        { "at": 2, "event": "watchers", "broadcast": "a", "count": 5 },
        { "at": 1, "event": "message", "broadcast": "a", "user": "u", "text": "hello" },
        { "at": 0.5, "since": "launch", "event": "started", "broadcast": "b" }
    ]
})";

class CannedServiceTest : public testing::Test, public MivoraDelegate {
protected:
    CannedServiceTest() { Clock::setCurrent(&clock); }
    ~CannedServiceTest() override
    {
        if (service)
            service->stop();
        Mivora::install(nullptr);
        MVVideoStreamService::install(nullptr);
    }

    void start(const char* scenario = small)
    {
        std::vector<std::string> faults;
        service = std::make_shared<CannedService>(Scenario::parse(scenario, "https://media.example/", faults));
        ASSERT_EQ(faults, std::vector<std::string> {});
        service->install();
        service->addDelegate(listener, "test");
    }
    void advance(double seconds) { MainQueue::shared().advance(clock, seconds); }
    std::shared_ptr<MVBroadcast> broadcast(const std::string& id)
    {
        std::shared_ptr<MVBroadcast> found;
        Mivora::getBroadcast(id, [&](auto show, auto) { found = show; });
        advance(1);
        return found;
    }
    void script(const char* operation, CannedAnswer answer, double latency = 0.1, int times = -1)
    {
        OperationScript script;
        script.answer = answer;
        script.latency = latency;
        script.times = times;
        service->setScript(operation, script);
    }

    // MivoraDelegate
    void didBroadcastStarted(const MVBroadcastLiveUpdate& update) override { events.push_back("started " + *update.broadcastId); }
    void didWatchersCountUpdated(const MVWatchersUpdateData& update) override
    {
        events.push_back("watchers " + std::to_string(*update.newWatchersCount));
    }
    void didRecievedNewMessageInBroadcast(const MVBroadcastNewMessageData& update) override
    {
        events.push_back("message " + *update.message->body);
    }
    void didMessageDeletedFromBroadcast(const MVBroadcastMessagesDeletedData& update) override
    {
        events.push_back("deleted " + std::to_string(update.deletedMessages->size()));
    }

    ManualClock clock;
    std::shared_ptr<CannedService> service;
    std::vector<std::string> events;
    const std::shared_ptr<MivoraDelegate> listener { this, [](MivoraDelegate*) {} }; // not owned
};

TEST_F(CannedServiceTest, answersListsByStatusOrderAndPage)
{
    start();
    std::vector<std::string> found;
    const auto ask = [&](MVBroadCastsListQueryBuilder query) {
        found.clear();
        Mivora::getBroadcasts(query, [&](auto shows, auto error) {
            EXPECT_FALSE(error);
            for (const auto& show : *shows)
                found.push_back(*show->id);
        });
        EXPECT_TRUE(found.empty()) << "an answer takes its time";
        advance(0.2);
        return found;
    };
    using Ids = std::vector<std::string>;
    EXPECT_EQ(ask({ .limit = 30, .skip = 0, .status = MVBroadcastStatus::upcoming, .sort = MVBroadCastListSortOrder::ASC }),
        (Ids { "c", "b" }));
    EXPECT_EQ(ask({ .limit = 30, .skip = 0, .status = MVBroadcastStatus::upcoming, .sort = MVBroadCastListSortOrder::DESC }),
        (Ids { "b", "c" }));
    EXPECT_EQ(ask({ .limit = 1, .skip = 1, .status = {}, .sort = {} }), (Ids { "b" }));
    EXPECT_EQ(ask({ .limit = 5, .skip = 9, .status = {}, .sort = {} }), (Ids {}));
    EXPECT_EQ(service->callLog().front(), "getBroadcasts upcoming 30 0");
}

TEST_F(CannedServiceTest, answersEachOperationAsItsScriptSays)
{
    start();
    const std::pair<CannedAnswer, const char*> cases[]
        = { { CannedAnswer::success, "a" }, { CannedAnswer::failure, "canned_failure" }, { CannedAnswer::absent, "nothing" },
              { CannedAnswer::twice, "a" }, { CannedAnswer::never, "" }, { CannedAnswer::offMainThread, "a" } };
    for (const auto& [answer, expected] : cases) {
        SCOPED_TRACE(int(answer));
        const LogCapture console;
        script("getBroadcast", answer);
        std::string heard;
        Mivora::getBroadcast("a", [&](auto show, auto error) {
            heard += show ? *show->id : error ? *error->errorCode : "nothing";
        });
        advance(0.05);
        EXPECT_EQ(heard, "");
        advance(0.06);
        EXPECT_EQ(heard, expected);
    }
    script("getBroadcast", CannedAnswer::failure, 0, 1);
    EXPECT_FALSE(broadcast("a"));
    EXPECT_TRUE(broadcast("a")) << "the script held for one call";
    EXPECT_FALSE(broadcast("unknown"));
}

TEST_F(CannedServiceTest, echoesASentMessageOnceAndOnlyAfterASuccess)
{
    start();
    const auto show = broadcast("a");
    std::optional<std::string> answered;
    show->sendMessage("mine", [&](auto message, auto) { answered = message->id; });
    advance(0.25);
    EXPECT_TRUE(answered);
    EXPECT_EQ(std::count(events.begin(), events.end(), "message mine"), 0);
    advance(0.1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "message mine"), 1);

    const LogCapture console;
    script("sendMessage", CannedAnswer::twice);
    show->sendMessage("double", nullptr);
    script("sendMessage", CannedAnswer::failure);
    show->sendMessage("failed", nullptr);
    advance(1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "message double"), 1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "message failed"), 0);

    std::vector<std::string> bodies;
    show->loadChatMessages({ .limit = 3, .skip = 0 }, [&](auto messages, auto) {
        for (const auto& message : *messages)
            bodies.push_back(*message->body);
    });
    advance(1);
    EXPECT_EQ(bodies, (std::vector<std::string> { "double", "mine", "second" })) << "newest first";
}

TEST_F(CannedServiceTest, playsItsTimelineFromTheLaunchAndFromTheWatching)
{
    start();
    const auto show = broadcast("a");
    EXPECT_EQ(events, std::vector<std::string> { "started b" });
    events.clear();
    show->startWatching(nullptr);
    advance(0.15 + 1);
    EXPECT_EQ(events, std::vector<std::string> { "message hello" });
    advance(1);
    EXPECT_EQ(events.back(), "watchers 5");
    EXPECT_EQ(show->watchersCount, 5);
    service->play({ .at = 0,
        .sinceWatching = true,
        .kind = "deletion",
        .broadcast = "a",
        .detail = *JSONValue::parse(R"({ "message": "1" })") });
    EXPECT_EQ(events.back(), "deleted 1");
}

TEST_F(CannedServiceTest, makesTheViewerAGuest)
{
    start();
    EXPECT_EQ(Mivora::getCurrentUserRole(), MVCurrentUserType::anonymous);
    Mivora::createGuestUser("Ana", [](auto user, auto) { EXPECT_EQ(user->displayName, "Ana"); });
    advance(1);
    EXPECT_EQ(Mivora::getCurrentUserRole(), MVCurrentUserType::guest);
    std::optional<std::string> author;
    broadcast("a")->sendMessage("hi", [&](auto message, auto) { author = message->owner->displayName; });
    advance(1);
    EXPECT_EQ(author, "Ana");
}

TEST_F(CannedServiceTest, saysNothingMoreOnceItIsStoppedOrGone)
{
    start();
    const auto show = broadcast("a");
    int answers = 0;
    show->startWatching([&](bool, auto) { ++answers; });
    service->stop();
    advance(5);
    EXPECT_EQ(answers, 0);
    const std::weak_ptr<CannedService> watched = service;
    service = nullptr;
    Mivora::install(nullptr);
    EXPECT_TRUE(watched.expired());
    show->startWatching([&](bool, auto) { ++answers; });
    advance(5);
    EXPECT_EQ(answers, 0);
}

TEST(Scenario, namesEveryFaultAndKeepsTheRest)
{
    std::vector<std::string> faults;
    const auto scenario = Scenario::parse(R"({
        "store": 7, "users": [ { "id": "u" }, { "name": "nobody" }, 3 ],
        "broadcasts": [ { "id": "a", "status": "soon", "title": 5, "hosts": [ "ghost", "u" ], "products": [ { "id": "no" } ] }, {} ],
        "operations": { "fly": {}, "sendMessage": { "answer": "maybe" } },
        "timeline": [ { "event": "rain" } ] })",
        "file:///media/", faults);
    EXPECT_EQ(faults,
        (std::vector<std::string> { "scenario.store: is not a text", "scenario.users[1]: has no \"id\"",
            "scenario.users[2]: is not an object", "scenario.broadcasts[0].title: is not a text",
            "scenario.broadcasts[0].status: \"soon\" is none of live, upcoming, completed",
            "scenario.broadcasts[0].hosts: nobody is \"ghost\"", "scenario.broadcasts[0].products[0]: there is no product \"no\"",
            "scenario.broadcasts[1]: has no \"id\"", "scenario.operations.fly: is no operation of the service",
            "scenario.operations.sendMessage.answer: \"maybe\" is none of success, failure, absent, twice, never, offMainThread",
            "scenario.timeline[0].event: \"rain\" is no event of the service" }));
    ASSERT_EQ(scenario.broadcasts.size(), 1u);
    EXPECT_EQ(scenario.broadcasts[0].hosts, std::vector<std::string> { "u" });

    faults.clear();
    Scenario::parse("{ \"store\": ", "", faults);
    EXPECT_EQ(faults.size(), 1u);
    const LogCapture console;
    EXPECT_TRUE(Scenario::load("no such file", "").broadcasts.empty());
    EXPECT_EQ(console.lines().size(), 1u);
}

TEST(Scenario, theShopsOwnHasNoFaultsAndAllItsPictures)
{
    const LogCapture console;
    const auto bundle = Folders::executable() + "/Showroom.bundle/";
    const auto scenario = Scenario::load(bundle + "Scenarios/shop.json", URL::fileURL(bundle).absoluteString() + "/");
    EXPECT_EQ(console.lines(), std::vector<std::string> {});
    EXPECT_EQ(scenario.broadcasts.size(), 12u);
    for (const auto& show : scenario.broadcasts)
        EXPECT_TRUE(FileSystem::real().exists(URL::parse(*show.banner)->filePath())) << *show.banner;
    for (const auto& [id, product] : scenario.products)
        EXPECT_TRUE(FileSystem::real().exists(product.thumbnailUrl->filePath())) << id;
}

} // namespace
} // namespace showroom
