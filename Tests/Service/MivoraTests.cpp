#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSLog.h"
#include "Service/MVVideoStreamService.h"
#include "Service/Mivora.h"

#include <gtest/gtest.h>

#include <thread>

namespace mv {
namespace {

// Answers as a faulty service would: as often as the test asks for, and on another thread.
class FaultyService final : public Mivora {
public:
    int answers = 1;

private:
    void performCreateGuestUser(const std::string& displayName, UserCompletion completion) override
    {
        for (int i = 0; i < answers; ++i)
            completion(MVUser { .id = std::to_string(i), .displayName = displayName }, std::nullopt);
    }
    void performGetBroadcast(const std::string&, BroadcastCompletion completion) override
    {
        std::thread([completion] { completion(nullptr, std::nullopt); }).join();
    }
};

class Listener final : public MivoraDelegate {
public:
    explicit Listener(std::vector<std::string>& heard, std::string name)
        : heard(heard)
        , name(std::move(name))
    {
    }
    void didWatchersCountUpdated(const MVWatchersUpdateData& update) override
    {
        heard.push_back(name + std::to_string(update.newWatchersCount.value_or(-1)));
        if (onHear)
            onHear();
    }
    std::function<void()> onHear;

private:
    std::vector<std::string>& heard;
    std::string name;
};

class MivoraTest : public testing::Test {
protected:
    ~MivoraTest() override { Mivora::install(nullptr); }

    std::shared_ptr<FaultyService> install()
    {
        auto service = std::make_shared<FaultyService>();
        Mivora::install(service);
        return service;
    }
    static void publishWatchers(int count)
    {
        Mivora::instance()->publish("watchers",
            [count](MivoraDelegate& d) { d.didWatchersCountUpdated({ .broadcastId = "b", .newWatchersCount = count }); });
    }
};

TEST_F(MivoraTest, saysThatThereIsNoServiceUntilOneIsInstalled)
{
    int answers = 0;
    const auto expectNoService = [&](const std::optional<MVApiError>& error) {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->errorMessage, "No broadcast service is installed.");
        ++answers;
    };
    const auto success = [&](bool succeeded, std::optional<MVApiError> error) {
        EXPECT_FALSE(succeeded);
        expectNoService(error);
    };
    Mivora::getBroadcast("b", [&](auto broadcast, auto error) {
        EXPECT_FALSE(broadcast);
        expectNoService(error);
    });
    Mivora::getBroadcasts({}, [&](auto, auto error) { expectNoService(error); });
    Mivora::createGuestUser("Ana", [&](auto, auto error) { expectNoService(error); });
    const auto broadcast = make<MVBroadcast>();
    broadcast->startWatching(success);
    broadcast->stopWatching(success);
    broadcast->startWatchingBroadcastConversation(success);
    broadcast->stopWatchingBroadcastConversation(success);
    broadcast->addReaction("heart", success);
    broadcast->loadChatMessages({}, [&](auto, auto error) { expectNoService(error); });
    broadcast->sendMessage("hello", [&](auto, auto error) { expectNoService(error); });
    EXPECT_EQ(answers, 10);
    EXPECT_EQ(Mivora::getCurrentUserRole(), MVCurrentUserType::anonymous);
    EXPECT_TRUE(broadcast->getProducts().empty());
}

TEST_F(MivoraTest, hearsOnlyTheFirstAnswerAndSaysOnceThatThereWereMore)
{
    const LogCapture console;
    install()->answers = 3;
    std::vector<std::string> ids;
    for (int call = 0; call < 2; ++call)
        Mivora::createGuestUser("Ana", [&](auto user, auto) { ids.push_back(*user->id); });
    EXPECT_EQ(ids, (std::vector<std::string> { "0", "0" }));
    EXPECT_EQ(console.lines(),
        std::vector<std::string> { "broadcast service: createGuestUser answered twice; only the first answer "
                                   "counts" });
}

TEST_F(MivoraTest, bringsAnAnswerFromAnotherThreadToTheMainOne)
{
    const LogCapture console;
    install();
    int answers = 0;
    for (int call = 0; call < 2; ++call) {
        Mivora::getBroadcast("b", [&](auto, auto) {
            EXPECT_TRUE(MainQueue::isMainThread());
            ++answers;
        });
    }
    EXPECT_EQ(answers, 0);
    MainQueue::shared().drain();
    EXPECT_EQ(answers, 2);
    EXPECT_EQ(console.lines(),
        std::vector<std::string> { "broadcast service: getBroadcast answered off the main thread; moved to the main queue" });
}

TEST_F(MivoraTest, acceptsAnEmptyCompletion)
{
    install();
    Mivora::createGuestUser("Ana", nullptr);
    make<MVBroadcast>()->startWatching(nullptr);
}

TEST_F(MivoraTest, tellsTheRegisteredInTheirOrder)
{
    std::vector<std::string> heard;
    const auto a = std::make_shared<Listener>(heard, "a"), b = std::make_shared<Listener>(heard, "b"),
               c = std::make_shared<Listener>(heard, "c");
    const auto service = install();
    service->addDelegate(a, "1");
    service->addDelegate(b, "2");
    publishWatchers(5);
    service->addDelegate(c, "1"); // takes the place of a
    publishWatchers(6);
    service->removeDelegate("2");
    publishWatchers(7);
    EXPECT_EQ(heard, (std::vector<std::string> { "a5", "b5", "b6", "c6", "c7" }));
    EXPECT_EQ(service->delegateCount(), 1u);
}

TEST_F(MivoraTest, deliversSafelyWhileListenersComeAndGo)
{
    std::vector<std::string> heard;
    const auto a = std::make_shared<Listener>(heard, "a"), late = std::make_shared<Listener>(heard, "late");
    auto b = std::make_shared<Listener>(heard, "b"), c = std::make_shared<Listener>(heard, "c");
    const auto service = install();
    service->addDelegate(a, "a");
    service->addDelegate(b, "b");
    service->addDelegate(c, "c");
    a->onHear = [&] {
        service->removeDelegate("b"); // leaves before its turn
        c = nullptr; // dies before its turn
        service->addDelegate(late, "late");
    };
    publishWatchers(1);
    EXPECT_EQ(heard, std::vector<std::string> { "a1" });
    a->onHear = nullptr;
    publishWatchers(2);
    EXPECT_EQ(heard, (std::vector<std::string> { "a1", "a2", "late2" }));
}

TEST_F(MivoraTest, keepsNoListenerAlive)
{
    std::vector<std::string> heard;
    auto listener = std::make_shared<Listener>(heard, "a");
    const std::weak_ptr<Listener> watched = listener;
    install()->addDelegate(listener, "a");
    listener = nullptr;
    EXPECT_TRUE(watched.expired());
    publishWatchers(1);
    EXPECT_TRUE(heard.empty());
}

} // namespace
} // namespace mv
