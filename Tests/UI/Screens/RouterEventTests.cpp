#include "Tests/UI/Screens/RouterStage.h"

namespace mv {
namespace {

class RouterEventTest : public RouterStage { };

TEST_F(RouterEventTest, goesLiveWhenItsBroadcastStarts)
{
    const auto router = open(Status::upcoming);
    broadcast->hosts = std::vector { std::make_shared<MVHost>(), std::make_shared<MVHost>() };
    start();
    EXPECT_EQ(shown(*router), "live");
    EXPECT_EQ(child<MVMivoraScreenViewController>(*router)->broadcast(), broadcast);
    EXPECT_FALSE(child<MVBroadcastPreviewScreenController>(*router));
    EXPECT_EQ(router->view()->subviews().size(), 2u);
    EXPECT_EQ(broadcast->status, Status::live);
    EXPECT_EQ(broadcast->actualStartTime, Date { 1000 });
    EXPECT_EQ(broadcast->title, "Winter coats");
    ASSERT_TRUE(broadcast->hosts && broadcast->hosts->size() == 1);
    const MVHost& presenter = *broadcast->hosts->front();
    EXPECT_EQ(presenter.rtcUserId, 77u);
    EXPECT_EQ(presenter.userId, "u1");
    EXPECT_EQ(presenter.user, (MVUser { "u1", "Ana" }));
    EXPECT_FALSE(alert());
    EXPECT_TRUE(isThere());
}

TEST_F(RouterEventTest, takesAbsentFieldsOver)
{
    const auto router = open(Status::upcoming);
    broadcast->actualStartTime = Date { 5 };
    MVBroadcastLiveUpdate begun;
    begun.broadcastId = "show";
    service->start(begun);
    EXPECT_EQ(shown(*router), "live");
    EXPECT_FALSE(broadcast->title);
    EXPECT_FALSE(broadcast->actualStartTime);
    ASSERT_EQ(broadcast->hosts->size(), 1u);
    EXPECT_FALSE(broadcast->hosts->front()->userId);
    EXPECT_EQ(broadcast->hosts->front()->user, MVUser {});
    MVBroadcastCompletedUpdate ended;
    ended.broadcastId = "show";
    service->complete(ended);
    EXPECT_EQ(broadcast->status, Status::completed);
    EXPECT_FALSE(broadcast->duration);
}

TEST_F(RouterEventTest, ignoresOtherBroadcasts)
{
    const auto router = pushRouter();
    start();
    complete();
    EXPECT_FALSE(alert()) << "nothing is loaded yet";
    const auto broadcast = answer(Status::upcoming);
    for (const std::optional<std::string>& id : { std::optional<std::string>("other"), std::optional<std::string>() }) {
        service->start(startOf(id));
        service->complete(endOf(id));
    }
    EXPECT_EQ(shown(*router), "preview");
    EXPECT_EQ(broadcast->status, Status::upcoming);
    EXPECT_EQ(broadcast->title, "Autumn coats");
    EXPECT_FALSE(alert());
}

TEST_F(RouterEventTest, takesTwoAbsentIdentifiersForEqual)
{
    const auto router = pushRouter();
    const auto broadcast = makeBroadcast(Status::upcoming, std::nullopt);
    service->answer(broadcast);
    service->start(startOf("show"));
    EXPECT_EQ(shown(*router), "preview");
    service->start(startOf(std::nullopt));
    EXPECT_EQ(shown(*router), "live");
    service->complete(endOf(std::nullopt));
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
}

TEST_F(RouterEventTest, letsWatchWhoMay)
{
    for (const Role role : { Role::user, Role::guest, Role::anonymous }) {
        for (const bool anonymousMayWatch : { false, true }) {
            const bool mayWatch = role == Role::user || anonymousMayWatch;
            service->role = role;
            const auto router = open(Status::upcoming);
            broadcast->isAnonymousAllowedToWatch = anonymousMayWatch;
            start();
            host.advance(1);
            EXPECT_EQ(shown(*router), mayWatch ? "live" : "preview") << int(role) << anonymousMayWatch;
            EXPECT_EQ(alertTexts(), mayWatch ? Lines {} : loginAlert);
            EXPECT_EQ(child<MVMivoraScreenViewController>(*router)->broadcast() == broadcast, mayWatch);
            EXPECT_EQ(broadcast->status, Status::live) << "known to all all the same";
            EXPECT_EQ(broadcast->hosts->size(), 1u);
            if (mayWatch) {
                navigation->popViewController(false);
                continue;
            }
            tapOk();
            EXPECT_EQ(navigation->topViewController(), shop);
            EXPECT_FALSE(alert());
            EXPECT_TRUE(hasLeft());
        }
    }
}

TEST_F(RouterEventTest, letsInWhoHasLoggedInMeanwhile)
{
    for (const bool editing : { false, true }) {
        service->role = Role::guest;
        const auto router = open(Status::upcoming);
        if (editing)
            presentOn(*router);
        start();
        host.advance(editing ? 0.1 : 1);
        EXPECT_EQ(alertTexts(), editing ? Lines {} : loginAlert) << "which waits until an editor has left";
        service->role = Role::user;
        start();
        host.advance(2);
        EXPECT_FALSE(alert());
        EXPECT_EQ(shown(*router), "live");
        navigation->popViewController(false);
    }
}

TEST_F(RouterEventTest, mayComeWithTheSubscription)
{
    for (const Role role : { Role::user, Role::guest }) {
        service->role = role;
        const auto router = pushRouter();
        const auto broadcast = makeBroadcast(Status::upcoming);
        broadcast->onSubscribe = [this] { start(); };
        service->answer(broadcast);
        host.advance(1);
        EXPECT_EQ(shown(*router), role == Role::user ? "live" : "") << "nothing that the viewer may not watch";
        EXPECT_EQ(alertTexts(), role == Role::user ? Lines {} : loginAlert);
        role == Role::user ? void(navigation->popViewController(false)) : tapOk();
    }
}

TEST_F(RouterEventTest, announcesTheEndOverThePastScreen)
{
    const auto router = open(Status::live);
    complete();
    EXPECT_EQ(shown(*router), "past");
    EXPECT_TRUE(child<MVPastBroadcastViewController>(*router)) << "it stays, behind the alert";
    EXPECT_FALSE(child<MVBroadcastPreviewScreenController>(*router));
    EXPECT_EQ(broadcast->status, Status::completed);
    EXPECT_EQ(broadcast->actualEndTime, Date { 4600 });
    EXPECT_EQ(broadcast->duration, 3600);
    EXPECT_EQ(broadcast->title, "Coats, over");
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    EXPECT_EQ(alert()->actions().front().style, UIAlertActionStyle::normal);
    EXPECT_TRUE(isThere()) << "until Ok";
    tapOk();
    EXPECT_EQ(navigation->viewControllers(), std::vector { shop });
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterEventTest, dismissesWhatItPresentsBeforeItSpeaks)
{
    for (const Status status : { Status::live, Status::upcoming, Status::completed }) {
        for (const bool modally : { false, true }) {
            const auto router = open(status, modally);
            const auto editor = presentOn(*router);
            complete();
            host.advance(0.2);
            EXPECT_EQ(window->topmostController(), editor) << "on its way out";
            EXPECT_EQ(shown(*router), "past") << "behind it already";
            host.advance(0.3);
            EXPECT_EQ(alertTexts(), endAlert);
            host.advance(1);
            tapOk();
            EXPECT_EQ(window->topmostController(), navigation);
            EXPECT_EQ(navigation->topViewController(), shop) << "closed the way it was shown";
            EXPECT_TRUE(hasLeft());
        }
    }
}

TEST_F(RouterEventTest, dismissesWhatAVariantPresents)
{
    const auto router = open(Status::upcoming);
    presentOn(*child<MVBroadcastPreviewScreenController>(*router));
    start();
    EXPECT_EQ(shown(*router), "live") << "while the editor leaves";
    host.advance(1);
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_TRUE(isThere()) << "the screen itself stays";
}

TEST_F(RouterEventTest, waitsForADismissalThatIsUnderWay)
{
    const auto router = open(Status::live);
    presentOn(*router);
    router->dismiss(true);
    host.advance(0.1);
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
}

TEST_F(RouterEventTest, heardTwiceSaysTheSame)
{
    const auto router = open(Status::upcoming);
    start();
    start();
    EXPECT_EQ(shown(*router), "live");
    complete();
    host.advance(0.1);
    complete();
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    EXPECT_EQ(shown(*router), "past");
    tapOk();
    EXPECT_FALSE(alert()) << "one of them at a time";
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterEventTest, lastWordCountsWhileAnEditorLeaves)
{
    service->role = Role::guest;
    const auto router = open(Status::upcoming);
    presentOn(*router);
    start();
    host.advance(0.1);
    complete();
    host.advance(2);
    EXPECT_EQ(alertTexts(), endAlert);
    tapOk();
    EXPECT_FALSE(alert());
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterEventTest, leavesNoAlertBehind)
{
    const auto router = open(Status::live);
    presentOn(*router);
    complete();
    host.advance(0.1);
    navigation->popViewController(true);
    host.advance(2);
    EXPECT_FALSE(alert()) << "the screen that it spoke for has left";
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterEventTest, saysNothingOnceTheViewerHasPressedOk)
{
    open(Status::live);
    complete();
    host.advance(1);
    host.tap(middle(*find(alert()->view(), "actionButton")));
    host.advance(0.05);
    complete();
    host.advance(2);
    EXPECT_FALSE(alert());
    EXPECT_EQ(navigation->topViewController(), shop);
}

TEST_F(RouterEventTest, isHeardUnderAnotherScreen)
{
    const auto router = open(Status::upcoming);
    navigation->pushViewController(make<UIViewController>(), true);
    host.advance(1);
    start();
    EXPECT_EQ(shown(*router), "live");
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    tapOk();
    EXPECT_EQ(navigation->viewControllers(), std::vector { shop }) << "it goes, and not what happens to lie on top";
    EXPECT_TRUE(hasLeft());
}

} // namespace
} // namespace mv
