#include "Platform/UIKit/UITabBarController.h"
#include "Tests/UI/Screens/RouterStage.h"
#include "UI/Extensions/MVViewControllers.h"

namespace mv {
namespace {

class RouterLeavingTest : public RouterStage { };

TEST_F(RouterLeavingTest, closesByTheButtonOfEachVariant)
{
    for (const bool modally : { false, true }) {
        for (const Status status : { Status::upcoming, Status::live, Status::completed }) {
            const auto router = open(status, modally);
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
    auto router = open(Status::upcoming);
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
    const auto router = open(Status::live);
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
        close(*router);
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
    close(*router);
    host.advance(1);
    EXPECT_TRUE(isThere());
    EXPECT_TRUE(router->view()->window());
}

TEST_F(RouterLeavingTest, staysUnderAnotherScreen)
{
    open(Status::upcoming);
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
        const auto router = open(Status::live);
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
    const auto router = open(Status::live);
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
    for (const bool covered : { false, true }) {
        {
            const auto stack = make<UINavigationController>(make<UIViewController>());
            shop->present(stack, true);
            host.advance(1);
            stack->pushViewController(makeRouter(), true);
            host.advance(1);
            if (covered)
                stack->pushViewController(make<UIViewController>(), true);
            host.advance(1);
            EXPECT_TRUE(isThere());
            shop->dismiss(true);
        }
        host.advance(0.1);
        EXPECT_TRUE(covered || hasLeft()) << "as soon as it goes";
        host.advance(1);
        EXPECT_TRUE(hasLeft());
    }
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
    close(*inner);
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
        const auto router = open(Status::live, modally);
        EXPECT_TRUE(isAwake());
        close(*router);
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
            close(*router);
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
