#include "Platform/UIKit/UITabBarController.h"
#include "Tests/UI/Screens/RouterStage.h"
#include "UI/Extensions/MVViewControllers.h"

namespace mv {
namespace {

using Status = MVBroadcastStatus;
using Role = MVCurrentUserType;
using Lines = std::vector<std::string>;

const Lines loginAlert { "Error", "Please Login to watch the Live Broadcast", "Ok" };
const Lines endAlert { "Broadcast Ended", "This broadcast has been ended by host. Thanks for watching.", "Ok" };

class RouterLoadingTest : public RouterStage { };

TEST_F(RouterLoadingTest, asksForItsBroadcastAndShowsNothingMeanwhile)
{
    const auto router = makeRouter("autumn");
    EXPECT_TRUE(service->asked.empty()) << "not before it is shown";
    EXPECT_TRUE(hasLeft());
    navigation->pushViewController(router, true);
    host.advance(1);
    EXPECT_EQ(service->asked, Lines { "autumn" });
    EXPECT_EQ(shown(*router), "");
    EXPECT_TRUE(isThere());
}

TEST_F(RouterLoadingTest, stacksTheVariantsOverTheWholeScreen)
{
    const auto router = pushRouter();
    ASSERT_EQ(router->children().size(), 3u);
    EXPECT_EQ(router->children()[0], child<MVBroadcastPreviewScreenController>(*router));
    EXPECT_EQ(router->children()[1], child<MVPastBroadcastViewController>(*router));
    EXPECT_EQ(router->children()[2], child<MVMivoraScreenViewController>(*router));
    const auto cover = [&] {
        for (std::size_t i = 0; i < 3; ++i) {
            const auto& view = router->children()[i]->view();
            EXPECT_EQ(router->view()->subviews()[i], view);
            EXPECT_EQ(onScreen(*view), window->bounds());
        }
    };
    cover();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(1);
    EXPECT_GT(window->bounds().width, window->bounds().height);
    cover();
}

TEST_F(RouterLoadingTest, showsTheVariantOfTheStatus)
{
    const std::pair<std::optional<Status>, std::string> cases[] { { Status::upcoming, "preview" }, { Status::live, "live" },
        { Status::completed, "past" }, { std::nullopt, "" }, { static_cast<Status>(7), "" } };
    for (const auto& [status, variant] : cases) {
        const auto router = pushRouter();
        const auto broadcast = answer(status);
        EXPECT_EQ(shown(*router), variant);
        EXPECT_EQ(broadcast->subscriptions, 1) << variant;
        EXPECT_EQ(child<MVBroadcastPreviewScreenController>(*router)->broadcast() == broadcast, variant == "preview");
        EXPECT_EQ(child<MVMivoraScreenViewController>(*router)->broadcast() == broadcast, variant == "live");
        EXPECT_EQ(child<MVPastBroadcastViewController>(*router)->broadcast() == broadcast, variant == "past");
        navigation->popViewController(true);
        host.advance(1);
    }
}

TEST_F(RouterLoadingTest, staysBlankWithoutABroadcast)
{
    const auto router = pushRouter();
    service->answer(nullptr);
    service->start({});
    service->complete({});
    EXPECT_EQ(shown(*router), "");
    EXPECT_FALSE(alert()) << "no broadcast has begun or ended";
    EXPECT_TRUE(isThere());
}

TEST_F(RouterLoadingTest, tellsTheConsoleOfAnErrorAndStaysBlank)
{
    const auto router = pushRouter();
    service->fail({ .errorCode = "E7", .errorMessage = "No such show", .statusCode = 404 });
    EXPECT_EQ(takeLines(), (Lines { "E7", "404", "No such show" }));
    EXPECT_EQ(shown(*router), "");
    EXPECT_TRUE(isThere()) << "until it leaves";
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_TRUE(hasLeft());
    const auto other = pushRouter();
    service->completions.back()(makeBroadcast(Status::live), MVApiError {});
    EXPECT_EQ(takeLines().size(), 3u) << "a line for each, absent ones too";
    EXPECT_EQ(shown(*other), "") << "an error counts more than a broadcast";
}

TEST_F(RouterLoadingTest, saysThatThereIsNoService)
{
    Mivora::install(nullptr);
    const auto router = pushRouter();
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines.back(), "No broadcast service is installed.");
    EXPECT_EQ(shown(*router), "");
    navigation->popViewController(false);
    EXPECT_FALSE(isAwake());
}

TEST_F(RouterLoadingTest, takesTheFirstAnswerOnly)
{
    const auto router = pushRouter();
    const auto first = answer(Status::upcoming);
    const auto second = answer(Status::live);
    EXPECT_EQ(takeLines().size(), 1u) << "about the second answer";
    EXPECT_EQ(shown(*router), "preview");
    EXPECT_EQ(second->subscriptions, 0);
}

TEST_F(RouterLoadingTest, ignoresAnAnswerAfterItsEnd)
{
    const auto broadcast = makeBroadcast(Status::live);
    pushRouter();
    navigation->popViewController(true);
    host.advance(1);
    service->answer(broadcast);
    pushRouter();
    navigation->popViewController(true);
    host.advance(1);
    service->fail({});
    EXPECT_EQ(broadcast->subscriptions, 0);
}

TEST_F(RouterLoadingTest, ignoresAnAnswerWhenItIsOnItsWayOut)
{
    const auto router = pushRouter();
    navigation->popViewController(true);
    host.advance(0.1);
    const auto broadcast = answer(Status::live);
    EXPECT_EQ(broadcast->subscriptions, 0) << "nobody would end them";
    EXPECT_EQ(shown(*router), "");
    host.advance(1);
    const auto kept = presentRouter();
    shop->dismiss(true);
    host.advance(1);
    service->fail({});
    EXPECT_EQ(takeLines(), Lines {});
}

class RouterEventTest : public RouterStage {
protected:
    static MVBroadcastLiveUpdate startOf(const std::optional<std::string>& id)
    {
        return { id, "Winter coats", Date { 1000 }, Status::live, "u1", "Ana", 77 };
    }
    static MVBroadcastCompletedUpdate endOf(const std::optional<std::string>& id)
    {
        return { id, "Coats, over", Date { 4600 }, 3600, Status::completed };
    }
    void start() { service->start(startOf("show")); }
    void complete() { service->complete(endOf("show")); }
    std::shared_ptr<UIViewController> presentOn(UIViewController& presenter)
    {
        auto editor = make<UIViewController>();
        presenter.present(editor, true);
        host.advance(1);
        return editor;
    }
};

TEST_F(RouterEventTest, goesLiveWhenItsBroadcastStarts)
{
    const auto router = pushRouter();
    const auto broadcast = answer(Status::upcoming);
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
    const auto router = pushRouter();
    const auto broadcast = answer(Status::upcoming);
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
            const auto router = pushRouter();
            const auto broadcast = answer(Status::upcoming);
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
    service->role = Role::anonymous;
    const auto router = pushRouter();
    answer(Status::upcoming);
    start();
    host.advance(1);
    EXPECT_EQ(alertTexts(), loginAlert);
    service->role = Role::user;
    start();
    host.advance(1);
    EXPECT_FALSE(alert());
    EXPECT_EQ(shown(*router), "live");
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
    const auto router = pushRouter();
    const auto broadcast = answer(Status::live);
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

TEST_F(RouterEventTest, announcesTheEndOfAnyVariant)
{
    for (const Status status : { Status::upcoming, Status::completed }) {
        const auto router = pushRouter();
        answer(status);
        complete();
        host.advance(1);
        EXPECT_EQ(alertTexts(), endAlert);
        EXPECT_EQ(shown(*router), "past");
        tapOk();
    }
}

TEST_F(RouterEventTest, closesTheWayItWasShown)
{
    service->role = Role::guest;
    presentRouter();
    answer(Status::upcoming);
    start();
    host.advance(1);
    EXPECT_EQ(alertTexts(), loginAlert);
    tapOk();
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_TRUE(hasLeft());
    presentRouter();
    answer(Status::live);
    complete();
    host.advance(1);
    tapOk();
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterEventTest, dismissesWhatItPresentsBeforeItSpeaks)
{
    for (const bool modally : { false, true }) {
        const auto router = modally ? presentRouter() : pushRouter();
        answer(Status::live);
        const auto editor = presentOn(*router);
        complete();
        host.advance(0.2);
        EXPECT_EQ(window->topmostController(), editor) << "on its way out";
        EXPECT_EQ(shown(*router), "past") << "behind it already";
        host.advance(0.3);
        EXPECT_EQ(alertTexts(), endAlert);
        host.advance(1);
        tapOk();
        EXPECT_TRUE(hasLeft());
    }
}

TEST_F(RouterEventTest, dismissesWhatAVariantPresents)
{
    const auto router = pushRouter();
    answer(Status::upcoming);
    presentOn(*child<MVBroadcastPreviewScreenController>(*router));
    start();
    EXPECT_EQ(shown(*router), "live") << "while the editor leaves";
    host.advance(1);
    EXPECT_EQ(window->topmostController(), navigation);
    EXPECT_TRUE(isThere()) << "the screen itself stays";
}

TEST_F(RouterEventTest, waitsForADismissalThatIsUnderWay)
{
    const auto router = pushRouter();
    answer(Status::live);
    presentOn(*router);
    router->dismiss(true);
    host.advance(0.1);
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
}

TEST_F(RouterEventTest, heardTwiceSaysTheSame)
{
    const auto router = pushRouter();
    answer(Status::upcoming);
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
    const auto router = pushRouter();
    answer(Status::upcoming);
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

TEST_F(RouterEventTest, takesADenialBackWhileAnEditorLeaves)
{
    service->role = Role::guest;
    const auto router = pushRouter();
    answer(Status::upcoming);
    presentOn(*router);
    start();
    host.advance(0.1);
    service->role = Role::user;
    start();
    host.advance(2);
    EXPECT_FALSE(alert());
    EXPECT_EQ(shown(*router), "live");
}

TEST_F(RouterEventTest, leavesNoAlertBehind)
{
    const auto router = pushRouter();
    answer(Status::live);
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
    pushRouter();
    answer(Status::live);
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
    const auto router = pushRouter();
    answer(Status::upcoming);
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

TEST_F(RouterEventTest, keepsItsAlertThroughTurnAndMirroring)
{
    const auto router = pushRouter();
    answer(Status::live);
    complete();
    host.advance(1);
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.rotate(UIDeviceOrientation::landscapeRight);
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    const CGRect card = onScreen(*alert()->view());
    EXPECT_NEAR(card.midX(), window->bounds().midX(), 1);
    EXPECT_EQ(onScreen(*router->view()), window->bounds());
    tapOk();
    EXPECT_TRUE(hasLeft());
}

class RouterLeavingTest : public RouterEventTest { };

TEST_F(RouterLeavingTest, closesByTheButtonOfEachVariant)
{
    for (const bool modally : { false, true }) {
        for (const Status status : { Status::upcoming, Status::live, Status::completed }) {
            const auto router = modally ? presentRouter() : pushRouter();
            answer(status);
            status == Status::upcoming   ? child<MVBroadcastPreviewScreenController>(*router)->onPressCloseButton()
                : status == Status::live ? child<MVMivoraScreenViewController>(*router)->onPressCloseButton()
                                         : child<MVPastBroadcastViewController>(*router)->onPressCloseButton();
            EXPECT_TRUE(hasLeft()) << "at once";
            EXPECT_TRUE(router->view()->window()) << "while it is still sliding out";
            host.advance(1);
            EXPECT_FALSE(router->view()->window());
            EXPECT_EQ(window->topmostController(), navigation);
            EXPECT_EQ(navigation->topViewController(), shop);
        }
    }
}

TEST_F(RouterLeavingTest, closesByATap)
{
    auto router = pushRouter();
    answer(Status::upcoming);
    const std::weak_ptr<Router> gone = router;
    const auto at = middle(*find(child<MVBroadcastPreviewScreenController>(*router)->view(), "closeScreenButton"));
    router = nullptr;
    host.tap(at);
    host.advance(1);
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, closesOnce)
{
    navigation->pushViewController(make<UIViewController>(), false);
    const auto router = pushRouter();
    answer(Status::live);
    const auto close = child<MVMivoraScreenViewController>(*router)->onPressCloseButton;
    close();
    host.advance(0.1);
    close();
    host.advance(1);
    close();
    host.advance(1);
    EXPECT_EQ(navigation->viewControllers().size(), 2u) << "what lies below stays";
}

TEST_F(RouterLeavingTest, mayCloseWhileItComes)
{
    for (const bool modally : { false, true }) {
        const auto router = makeRouter();
        modally ? shop->present(router, true) : navigation->pushViewController(router, true);
        host.advance(0.1);
        answer(Status::live);
        EXPECT_TRUE(isThere());
        child<MVMivoraScreenViewController>(*router)->onPressCloseButton();
        EXPECT_TRUE(hasLeft());
        host.advance(1);
        EXPECT_EQ(window->topmostController(), navigation);
        EXPECT_EQ(navigation->topViewController(), shop);
        EXPECT_FALSE(router->view()->window());
    }
}

TEST_F(RouterLeavingTest, hasNoWayBackAsTheLowestOfTheStack)
{
    const auto router = makeRouter();
    window->setRootViewController(make<UINavigationController>(router));
    host.advance(1);
    answer(Status::live);
    child<MVMivoraScreenViewController>(*router)->onPressCloseButton();
    host.advance(1);
    EXPECT_TRUE(isThere());
    EXPECT_TRUE(router->view()->window());
}

TEST_F(RouterLeavingTest, staysUnderAnotherScreen)
{
    pushRouter();
    const auto broadcast = answer(Status::upcoming);
    const auto above = make<UIViewController>();
    navigation->pushViewController(above, true);
    host.advance(1);
    EXPECT_TRUE(isThere());
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_TRUE(isThere());
    presentOn(*navigation);
    EXPECT_TRUE(isThere()) << "covered";
    window->setHidden(true);
    EXPECT_TRUE(isThere()) << "out of sight";
    window->makeKeyAndVisible();
    navigation->dismiss(true);
    host.advance(1);
    EXPECT_TRUE(isThere());
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, leavesByTheSwipeThatIsCarriedThrough)
{
    for (const auto direction : { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
        host.setDirection(direction);
        const auto router = pushRouter();
        answer(Status::live);
        swipeBack(60);
        EXPECT_TRUE(isThere()) << "given up";
        EXPECT_EQ(navigation->topViewController(), router);
        start();
        EXPECT_EQ(shown(*router), "live");
        swipeBack(300);
        EXPECT_TRUE(hasLeft());
        EXPECT_EQ(navigation->topViewController(), shop);
    }
}

TEST_F(RouterLeavingTest, hearsOfTheEndInTheMiddleOfASwipe)
{
    const auto router = pushRouter();
    answer(Status::live);
    host.touchDown({ 2, 500 });
    for (const double x : { 20, 60, 120 }) {
        host.advance(1.0 / 60);
        host.touchMove({ x, 500 });
    }
    complete();
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    EXPECT_TRUE(isThere()) << "it has not been let go";
    host.touchMove({ 2, 500 });
    host.touchUp({ 2, 500 });
    host.advance(1);
    EXPECT_EQ(navigation->topViewController(), router);
    tapOk();
    EXPECT_EQ(navigation->topViewController(), shop);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, leavesWithTheStackItSitsIn)
{
    auto router = makeRouter();
    const auto stack = make<UINavigationController>(make<UIViewController>());
    shop->present(stack, true);
    host.advance(1);
    stack->pushViewController(router, true);
    host.advance(1);
    EXPECT_TRUE(isThere());
    shop->dismiss(true);
    host.advance(0.1);
    EXPECT_TRUE(hasLeft()) << "as soon as it goes";
    host.advance(1);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, leavesWithTheStackEvenFromUnderAnotherScreen)
{
    {
        const auto stack = make<UINavigationController>(make<UIViewController>());
        shop->present(stack, true);
        host.advance(1);
        stack->pushViewController(makeRouter(), true);
        host.advance(1);
        stack->pushViewController(make<UIViewController>(), true);
        host.advance(1);
        EXPECT_TRUE(isThere());
        shop->dismiss(true);
    }
    host.advance(1);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, leavesWhenTheRootIsReplacedOrTheWindowEnds)
{
    window->setRootViewController(make<UINavigationController>(makeRouter()));
    host.advance(1);
    answer(Status::live);
    EXPECT_TRUE(isThere());
    window->setRootViewController(make<UIViewController>());
    host.advance(1);
    EXPECT_TRUE(hasLeft());
    window->setRootViewController(makeRouter());
    host.advance(1);
    EXPECT_TRUE(isThere());
    window = make<UIWindow>();
    EXPECT_TRUE(hasLeft());
    auto unseen = makeRouter();
    unseen->loadViewIfNeeded();
    EXPECT_TRUE(isThere());
    unseen = nullptr;
    EXPECT_TRUE(hasLeft()) << "without ever having been on the screen";
}

TEST_F(RouterLeavingTest, leavesWithItsContainerOrWithoutIt)
{
    const auto router = makeRouter();
    add(*shop, router);
    host.advance(1);
    EXPECT_TRUE(isThere());
    remove(*router);
    EXPECT_TRUE(hasLeft());
    const auto container = make<UIViewController>();
    const auto inner = makeRouter();
    add(*container, inner);
    navigation->pushViewController(container, true);
    host.advance(1);
    answer(Status::live);
    EXPECT_TRUE(isThere());
    child<MVMivoraScreenViewController>(*inner)->onPressCloseButton();
    EXPECT_TRUE(hasLeft());
    host.advance(1);
    EXPECT_EQ(navigation->topViewController(), shop);
}

TEST_F(RouterLeavingTest, staysInATabThatIsNotSelected)
{
    const auto router = makeRouter();
    const auto stack = make<UINavigationController>(make<UIViewController>());
    const auto tabs = make<UITabBarController>();
    tabs->setViewControllers({ stack, make<UIViewController>() });
    window->setRootViewController(tabs);
    host.advance(1);
    stack->pushViewController(router, true);
    host.advance(1);
    answer(Status::upcoming);
    tabs->setSelectedIndex(1);
    host.advance(1);
    EXPECT_TRUE(isThere()) << "it is still in its stack";
    start();
    tabs->setSelectedIndex(0);
    host.advance(1);
    EXPECT_EQ(shown(*router), "live");
    EXPECT_TRUE(isThere());
    stack->popViewController(true);
    host.advance(1);
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, restoresTheIdleTimerThatItFound)
{
    UIApplication::shared().setIdleTimerDisabled(true);
    for (const bool modally : { false, true }) {
        const auto router = modally ? presentRouter() : pushRouter();
        answer(Status::live);
        EXPECT_TRUE(isAwake());
        child<MVMivoraScreenViewController>(*router)->onPressCloseButton();
        host.advance(1);
        EXPECT_TRUE(isAwake()) << "it was disabled before";
        EXPECT_FALSE(isListening());
    }
}

TEST_F(RouterLeavingTest, nestsInAnotherOne)
{
    const auto outer = pushRouter();
    const auto outerShow = answer(Status::live);
    const auto inner = pushRouter();
    service->answer(makeBroadcast(Status::upcoming, "other"));
    service->complete(endOf("other"));
    host.advance(1);
    EXPECT_EQ(alertTexts(), endAlert);
    EXPECT_EQ(outerShow->status, Status::live);
    tapOk();
    EXPECT_EQ(navigation->topViewController(), outer);
    EXPECT_TRUE(isThere()) << "the outer one's";
    complete();
    host.advance(1);
    tapOk();
    EXPECT_TRUE(hasLeft());
}

TEST_F(RouterLeavingTest, leavesNothingBehind)
{
    std::vector<std::weak_ptr<NSObject>> left;
    for (int round = 0; round < 200; ++round) {
        const bool modally = round % 2;
        auto router = modally ? presentRouter() : pushRouter();
        const auto status = round % 4 < 2 ? Status::upcoming : Status::live;
        left.push_back(answer(status));
        left.push_back(router);
        for (const auto& controller : router->children()) {
            left.push_back(controller);
            left.push_back(controller->view());
        }
        if (round % 4 == 0)
            start();
        if (round % 3 == 0) {
            complete();
            host.advance(0.5);
            left.push_back(alert());
            tapOk();
        } else {
            child<MVMivoraScreenViewController>(*router)->onPressCloseButton();
        }
        host.advance(1);
        service->completions.clear();
    }
    EXPECT_EQ(std::ranges::count_if(left, [](const auto& object) { return !object.expired(); }), 0);
    EXPECT_EQ(service->delegateCount(), 0u);
    EXPECT_EQ(shop->view()->subviews().size(), 0u);
    EXPECT_EQ(window->subviews().size(), 1u);
    EXPECT_FALSE(isAwake());
}

} // namespace
} // namespace mv
