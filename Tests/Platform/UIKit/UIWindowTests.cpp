#include "ScreenTest.h"

#include "Platform/UIKit/UITapGestureRecognizer.h"

#include <functional>

namespace platform {
namespace {

using UIWindowTest = ScreenTest;

TEST_F(UIWindowTest, hitsTheUppermostViewThatTakesTouches)
{
    const auto below = add({ 0, 0, 100, 100 }), above = add({ 50, 50, 100, 100 });
    const auto at = [&](double x, double y) { return window->hitTest({ x, y }, nullptr); };
    EXPECT_EQ(at(60, 60), above);
    EXPECT_EQ(at(100, 60), above) << "its right neighbour begins at 100";
    EXPECT_EQ(at(150, 60), window);
    above->setHidden(true);
    EXPECT_EQ(at(60, 60), below);
    above->setHidden(false);
    above->setAlpha(0.009);
    EXPECT_EQ(at(60, 60), below);
    above->setAlpha(0.01);
    EXPECT_EQ(at(60, 60), above);
    above->setUserInteractionEnabled(false);
    EXPECT_EQ(at(60, 60), below);
    EXPECT_EQ(at(-1, 60), nullptr);
}

TEST_F(UIWindowTest, hitsThroughTransformsOnlyInsideTheSuperview)
{
    const auto parent = add({ 100, 100, 100, 50 });
    const auto outside = add({ 90, 0, 50, 50 }, parent); // sticks out, and is seen
    const auto at = [&](double x, double y) { return window->hitTest({ x, y }, nullptr); };
    EXPECT_EQ(at(195, 110), outside);
    EXPECT_EQ(at(210, 110), window);
    parent->setTransform(CGAffineTransform::rotation(std::acos(-1) / 2)); // covers x 125...175, y 75...175
    EXPECT_EQ(at(150, 80), parent);
    EXPECT_EQ(at(110, 120), window);
    EXPECT_EQ(at(150, 170), outside);
    parent->setTransform(CGAffineTransform::scale(2, 0));
    EXPECT_EQ(at(150, 125), window) << "shrunk to nothing";
}

// Writes down what its touches do.
class Touched : public UIView {
public:
    using UIView::UIView;
    std::string log;
    std::function<void()> onBegan;

    void touchesBegan(const UITouches&, const UIEvent&) override
    {
        log += "b";
        if (const auto call = onBegan)
            call();
    }
    void touchesMoved(const UITouches&, const UIEvent&) override { log += "m"; }
    void touchesEnded(const UITouches&, const UIEvent&) override { log += "e"; }
    void touchesCancelled(const UITouches&, const UIEvent&) override { log += "c"; }
};

TEST_F(UIWindowTest, staysWithTheViewWhereTheTouchBegan)
{
    const auto view = make<Touched>(CGRect { 0, 0, 100, 100 });
    window->addSubview(view);
    const auto plain = add({ 10, 10, 10, 10 }, view); // handles nothing: its superview is next in the chain
    touch(UITouchPhase::began, { 15, 15 });
    touch(UITouchPhase::moved, { 15, 15 });
    touch(UITouchPhase::moved, { 300, 300 });
    touch(UITouchPhase::ended, { 300, 300 });
    touch(UITouchPhase::moved, { 15, 15 });
    EXPECT_EQ(view->log, "bme");
}

TEST_F(UIWindowTest, cancelsTheTouchesOfWhatLeaves)
{
    auto view = make<Touched>(CGRect { 0, 0, 100, 100 });
    const auto parent = add({ 0, 0, 100, 100 });
    parent->addSubview(view);
    touch(UITouchPhase::began, { 15, 15 });
    parent->removeFromSuperview();
    EXPECT_EQ(view->log, "bc");
    touch(UITouchPhase::ended, { 15, 15 });
    EXPECT_EQ(view->log, "bc");
    window->addSubview(parent);
    view->onBegan = [&] { parent->removeFromSuperview(); };
    touch(UITouchPhase::began, { 15, 15 });
    EXPECT_EQ(view->log, "bcbc");
    const std::weak_ptr<UIView> gone = view;
    view = nullptr;
    parent->subviews()[0]->removeFromSuperview();
    EXPECT_TRUE(gone.expired());
}

TEST_F(UIWindowTest, mayEndInsideItsOwnTouch)
{
    const auto view = make<Touched>(CGRect { 0, 0, 100, 100 });
    window->addSubview(view);
    view->onBegan = [&] { window = nullptr; };
    touch(UITouchPhase::began, { 15, 15 });
    EXPECT_EQ(view->log, "bc");
    EXPECT_TRUE(UIApplication::shared().windows().empty());
    window = make<UIWindow>();
}

TEST_F(UIWindowTest, touchesGoToTheUppermostWindowThatTakesThem)
{
    const auto view = make<Touched>(CGRect { 0, 0, 100, 100 });
    window->addSubview(view);
    const auto banner = make<UIWindow>(CGRect { 0, 0, 320, 50 });
    banner->setHidden(false);
    tap({ 10, 10 });
    EXPECT_EQ(view->log, "");
    tap({ 10, 60 });
    EXPECT_EQ(view->log, "be");
    banner->setHidden(true);
    tap({ 10, 10 });
    EXPECT_EQ(view->log, "bebe");
}

TEST_F(UIWindowTest, catchesUpWithTheScreenWhenItIsShownAgain)
{
    const auto view = add({});
    const auto banner = make<UIWindow>(CGRect { 0, 0, 320, 50 });
    window->setHidden(true);
    UIScreen::main().setGeometry({ 480, 320 }, { 0, 59, 21, 59 });
    setDark(true);
    window->makeKeyAndVisible();
    banner->setHidden(false);
    EXPECT_EQ(window->frame(), (CGRect { 0, 0, 480, 320 }));
    EXPECT_EQ(window->safeAreaInsets(), (UIEdgeInsets { 0, 59, 21, 59 }));
    EXPECT_TRUE(view->traitCollection().isDark());
    EXPECT_EQ(banner->frame(), (CGRect { 0, 0, 320, 50 }));
}

class TapTest : public ScreenTest {
protected:
    std::shared_ptr<UITapGestureRecognizer> addTap(UIView& view, int& count)
    {
        auto recognizer = make<UITapGestureRecognizer>([&count](UIGestureRecognizer&) { ++count; });
        view.addGestureRecognizer(recognizer);
        return recognizer;
    }
};

TEST_F(TapTest, toleratesALittleMovement)
{
    int taps = 0;
    const auto recognizer = addTap(*window, taps);
    touch(UITouchPhase::began, { 50, 50 });
    touch(UITouchPhase::moved, { 56, 58 });
    touch(UITouchPhase::ended, { 56, 58 });
    EXPECT_EQ(taps, 1);
    touch(UITouchPhase::began, { 50, 50 });
    touch(UITouchPhase::moved, { 57, 58 });
    touch(UITouchPhase::moved, { 50, 50 });
    touch(UITouchPhase::ended, { 50, 50 });
    EXPECT_EQ(taps, 1);
    tap({ 50, 50 });
    EXPECT_EQ(taps, 2) << "a failed one starts afresh";
    touch(UITouchPhase::began, { 50, 50 }, 1);
    touch(UITouchPhase::began, { 70, 50 }, 2);
    touch(UITouchPhase::ended, { 50, 50 }, 1);
    touch(UITouchPhase::ended, { 70, 50 }, 2);
    EXPECT_EQ(taps, 2) << "two fingers are no tap";
    touch(UITouchPhase::began, { 50, 50 });
    UIApplication::shared().cancelTouches(clock.now());
    EXPECT_EQ(taps, 2);
    EXPECT_EQ(recognizer->state(), UIGestureRecognizerState::possible);
}

TEST_F(TapTest, takesTheTouchFromItsViewUnlessToldNotTo)
{
    const auto view = make<Touched>(CGRect { 0, 0, 100, 100 });
    window->addSubview(view);
    int taps = 0;
    const auto recognizer = addTap(*window, taps);
    tap({ 10, 10 });
    EXPECT_EQ(view->log, "bc");
    recognizer->setCancelsTouchesInView(false);
    tap({ 10, 10 });
    EXPECT_EQ(view->log, "bcbe");
    recognizer->setEnabled(false);
    tap({ 10, 10 });
    EXPECT_EQ(taps, 2);
}

TEST_F(TapTest, theInnermostWins)
{
    const auto inner = add({ 0, 0, 100, 100 });
    int inside = 0, outside = 0;
    const auto outer = addTap(*window, outside);
    const auto innermost = addTap(*inner, inside);
    tap({ 10, 10 });
    EXPECT_EQ(inside, 1);
    EXPECT_EQ(outside, 0);

    struct Both : UIGestureRecognizerDelegate {
        bool receives = true;
        bool gestureRecognizerShouldReceive(UIGestureRecognizer&, UITouch&) override { return receives; }
        bool gestureRecognizerShouldRecognizeSimultaneously(UIGestureRecognizer&, UIGestureRecognizer&) override { return true; }
    };
    const auto both = std::make_shared<Both>();
    outer->setDelegate(both);
    tap({ 10, 10 });
    EXPECT_EQ(inside, 2);
    EXPECT_EQ(outside, 1);
    both->receives = false;
    tap({ 10, 10 });
    EXPECT_EQ(outside, 1);
}

TEST_F(TapTest, mayEndItsViewInsideTheAction)
{
    auto view = add({ 0, 0, 100, 100 });
    const std::weak_ptr<UIView> gone = view;
    view->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer& recognizer) {
        EXPECT_EQ(recognizer.location(recognizer.view()), (CGPoint { 10, 12 }));
        view->removeFromSuperview();
        view = nullptr;
    }));
    tap({ 10, 12 });
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(window->subviews().empty());
}

} // namespace
} // namespace platform
