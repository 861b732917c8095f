#include "Screens.h"

#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UINavigationBar.h"
#include "Platform/UIKit/UINavigationController.h"

namespace platform {
namespace {

class UINavigationControllerTest : public ScreensTest {
protected:
    UINavigationControllerTest()
    {
        navigation = make<UINavigationController>(first);
        navigation->setNavigationBarHidden(true, false);
        window->setRootViewController(navigation);
        makeFrame();
    }
    void push()
    {
        navigation->pushViewController(second, true);
        advanceFar();
        taken();
    }
    // A finger that comes down at the first place, steps to the others and leaves.
    void swipe(std::initializer_list<double> places, double secondsAStep)
    {
        touch(UITouchPhase::began, { *places.begin(), 240 });
        for (const double x : places) {
            advance(secondsAStep);
            touch(UITouchPhase::moved, { x, 240 });
        }
        touch(UITouchPhase::ended, { *(places.end() - 1), 240 });
    }

    std::shared_ptr<NamedScreen> first = screen("first"), second = screen("second");
    std::shared_ptr<UINavigationController> navigation;
};

TEST_F(UINavigationControllerTest, pushesAndPopsWithASlide)
{
    EXPECT_EQ(taken(), (Heard { "first will join", "first joined", "first will appear", "first appeared" }));
    navigation->pushViewController(second, true);
    EXPECT_EQ(taken(), (Heard { "second will join", "first will disappear", "second will appear, moved in" }));
    EXPECT_EQ(navigation->topViewController(), second);
    makeFrame();
    advance(0.1);
    const CGRect coming = shownFrame(*second->view()), going = shownFrame(*first->view());
    EXPECT_GT(coming.x, 0);
    EXPECT_LT(coming.x, 320);
    EXPECT_NEAR(going.x, (coming.x - 320) * 0.3, 1);
    advanceFar();
    EXPECT_EQ(taken(), (Heard { "first disappeared", "second appeared, moved in", "second joined" }));
    EXPECT_EQ(shownFrame(*second->view()), (CGRect { 0, 0, 320, 480 }));

    EXPECT_EQ(navigation->popViewController(true), second);
    EXPECT_EQ(navigation->viewControllers().size(), 2u);
    advanceFar();
    EXPECT_EQ(taken(),
        (Heard { "second will leave", "second will disappear, moved out", "first will appear", "second disappeared, moved out",
            "second left", "first appeared" }));
    EXPECT_FALSE(second->view()->window());
    EXPECT_EQ(navigation->popViewController(true), nullptr); // the lowest stays
    EXPECT_EQ(shownFrame(*first->view()), (CGRect { 0, 0, 320, 480 }));
}

TEST_F(UINavigationControllerTest, slidesFromTheTrailingSide)
{
    setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    makeFrame();
    navigation->pushViewController(second, true);
    makeFrame();
    advance(0.1);
    EXPECT_LT(shownFrame(*second->view()).x, 0);
    EXPECT_GT(shownFrame(*first->view()).x, 0);
    advanceFar();
    taken();
    swipe({ 315, 280, 200, 20 }, 0.02); // from the right edge, in this direction
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), first);
}

TEST_F(UINavigationControllerTest, whatLiesBelowFollowsATurn)
{
    push();
    UIScreen::main().setGeometry({ 480, 320 }, {});
    makeFrame();
    EXPECT_EQ(first->view()->frame(), (CGRect { 0, 0, 480, 320 }));
    EXPECT_TRUE(first->view()->superview()->isHidden());
    navigation->popViewController(true);
    advance(0.1);
    UIScreen::main().setGeometry({ 320, 480 }, {}, 0.25); // during the slide
    advanceFar();
    EXPECT_EQ(shownFrame(*first->view()), (CGRect { 0, 0, 320, 480 }));
    EXPECT_EQ(navigation->viewControllers().size(), 1u);
}

TEST_F(UINavigationControllerTest, aFingerFromTheEdgeDragsThePageOut)
{
    push();
    touch(UITouchPhase::began, { 5, 240 });
    for (const double x : { 40.0, 100.0, 140.0 }) {
        advance(0.1);
        touch(UITouchPhase::moved, { x, 242 });
    }
    makeFrame();
    EXPECT_EQ(second->view()->convertTo(CGPoint {}, nullptr).x, 100); // not by the way that it took to be told from a tap
    EXPECT_EQ(taken(), Heard {}); // it may yet come back
    advance(0.3);
    touch(UITouchPhase::ended, { 140, 242 });
    advanceFar();
    EXPECT_EQ(taken(), Heard {});
    EXPECT_EQ(navigation->topViewController(), second);
    EXPECT_EQ(shownFrame(*second->view()).x, 0);
    EXPECT_TRUE(first->view()->superview()->isHidden());

    swipe({ 5, 60, 150, 290 }, 0.2); // slow, beyond the middle
    EXPECT_EQ(taken(), (Heard { "second will leave", "second will disappear, moved out", "first will appear" }));
    advanceFar();
    EXPECT_EQ(taken(), (Heard { "second disappeared, moved out", "second left", "first appeared" }));

    navigation->pushViewController(second, false);
    taken();
    swipe({ 5, 30, 60, 90 }, 0.016); // short, but thrown
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), first);
    swipe({ 5, 60, 150, 290 }, 0.02); // nothing to go back to
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), first);
}

TEST_F(UINavigationControllerTest, otherDragsDoNotGoBack)
{
    push();
    swipe({ 60, 120, 200, 300 }, 0.02); // not from the edge
    touch(UITouchPhase::began, { 5, 100 });
    for (const double y : { 150.0, 200.0, 300.0 }) { // along the edge
        advance(0.02);
        touch(UITouchPhase::moved, { 9, y });
    }
    touch(UITouchPhase::ended, { 9, 300 });
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), second);
    EXPECT_EQ(taken(), Heard {});
}

TEST_F(UINavigationControllerTest, changesOfMindInTheMiddle)
{
    navigation->pushViewController(second, true);
    makeFrame();
    advance(0.1);
    navigation->popViewController(true); // completes the push first
    advance(0.1);
    const auto third = screen("third");
    navigation->pushViewController(third, true);
    advanceFar();
    EXPECT_EQ(navigation->viewControllers().size(), 2u);
    EXPECT_EQ(navigation->topViewController(), third);
    EXPECT_EQ(shownFrame(*third->view()), (CGRect { 0, 0, 320, 480 }));
    EXPECT_FALSE(second->view()->window());

    taken();
    navigation->pushViewController(third, true);
    EXPECT_EQ(takeLines(), (std::vector<std::string> { "NamedScreen not pushed: it is in the stack already" }));
    EXPECT_EQ(taken(), Heard {});
}

TEST_F(UINavigationControllerTest, takesNoTouchesWhileItSlides)
{
    int taps = 0;
    const auto button = make<UIControl>(CGRect { 0, 0, 320, 480 });
    button->addAction(UIControlEvent::touchUpInside, [&] { ++taps; });
    first->view()->addSubview(button);
    navigation->pushViewController(second, true);
    makeFrame();
    advance(0.05);
    tap({ 20, 240 });
    EXPECT_EQ(taps, 0);
    advanceFar();
    navigation->popViewController(false);
    tap({ 20, 240 });
    EXPECT_EQ(taps, 1);
}

TEST_F(UINavigationControllerTest, theBarLeavesRoomAndLeadsBack)
{
    UIScreen::main().setGeometry({ 320, 480 }, { 20, 0, 0, 0 });
    second->setTitle("Second");
    push();
    EXPECT_EQ(second->view()->safeAreaInsets().top, 20);
    navigation->setNavigationBarHidden(false, false);
    makeFrame();
    EXPECT_EQ(second->view()->safeAreaInsets().top, 64);
    EXPECT_EQ(navigation->navigationBar()->frame(), (CGRect { 0, 0, 320, 64 }));
    tap({ 20, 44 });
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), first);
    tap({ 20, 44 }); // no way back from the lowest
    advanceFar();
    EXPECT_EQ(navigation->topViewController(), first);
}

TEST_F(UINavigationControllerTest, aStackThatIsNotShownTellsNobody)
{
    taken();
    const auto hidden = make<UINavigationController>(screen("a"));
    hidden->pushViewController(screen("b"), true);
    hidden->view();
    hidden->popViewController(true);
    for (const auto& line : taken())
        EXPECT_EQ(line.find("appear"), std::string::npos) << line;
    EXPECT_EQ(hidden->viewControllers().size(), 1u);
}

TEST_F(UINavigationControllerTest, mayEndInTheMiddleOfASlide)
{
    WeakRef<NamedScreen> watched = weak(second);
    navigation->pushViewController(std::exchange(second, nullptr), true);
    makeFrame();
    advance(0.1);
    navigation = nullptr;
    window->setRootViewController(nullptr);
    advanceFar();
    EXPECT_FALSE(watched.lock());
}

} // namespace
} // namespace platform
