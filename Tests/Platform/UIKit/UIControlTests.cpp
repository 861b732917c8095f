#include "Platform/UIKit/UIControl.h"

#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Platform/UIKit/UIWindow.h"

#include <gtest/gtest.h>

#include <string>

namespace platform {
namespace {

// A window with one control of 100 by 40 points at (100, 100), whose events are written down.
class UIControlInWindow : public ::testing::Test {
protected:
    UIControlInWindow()
    {
        control->setFrame({ 100, 100, 100, 40 });
        window->addSubview(control);
        window->makeKeyAndVisible();
        record(UIControlEvent::touchDown, "down");
        record(UIControlEvent::touchDragEnter, "enter");
        record(UIControlEvent::touchDragExit, "exit");
        record(UIControlEvent::touchUpInside, "up inside");
        record(UIControlEvent::touchUpOutside, "up outside");
        record(UIControlEvent::touchCancel, "cancel");
    }
    ~UIControlInWindow() override
    {
        UIApplication::shared().cancelTouches(0);
        window->setHidden(true);
    }

    void record(UIControlEvent event, const char* word)
    {
        control->addAction(event, [this, word] { heard += (heard.empty() ? "" : ", ") + std::string(word); });
    }
    void touch(UITouchPhase phase, CGPoint point) { UIApplication::shared().sendTouch(1, phase, point, time += 0.01); }

    const CGPoint middle { 150, 120 };
    std::shared_ptr<UIWindow> window = make<UIWindow>(CGRect { 0, 0, 393, 852 });
    std::shared_ptr<UIControl> control = make<UIControl>();
    std::string heard;
    double time = 0;
};

TEST_F(UIControlInWindow, isPressedByATouchInside)
{
    touch(UITouchPhase::began, middle);
    EXPECT_TRUE(control->isHighlighted());
    EXPECT_TRUE(control->isTracking());
    touch(UITouchPhase::ended, middle);
    EXPECT_FALSE(control->isHighlighted());
    EXPECT_EQ(heard, "down, up inside");
}

TEST_F(UIControlInWindow, forgivesAFingerThatStraysUpToSeventyPoints)
{
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::moved, { 150, 209 });
    EXPECT_TRUE(control->isHighlighted());
    touch(UITouchPhase::ended, { 150, 209 });
    EXPECT_EQ(heard, "down, up inside");
}

TEST_F(UIControlInWindow, followsATouchOutAndBack)
{
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::moved, { 150, 211 });
    EXPECT_FALSE(control->isHighlighted());
    EXPECT_FALSE(control->isTouchInside());
    touch(UITouchPhase::moved, { 150, 300 });
    touch(UITouchPhase::moved, { 150, 130 });
    EXPECT_TRUE(control->isHighlighted());
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(heard, "down, exit, enter, up inside");
}

TEST_F(UIControlInWindow, letsAFingerLeave)
{
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::moved, { 300, 400 });
    touch(UITouchPhase::ended, { 300, 400 });
    EXPECT_EQ(heard, "down, exit, up outside");
    EXPECT_FALSE(control->isTracking());
}

TEST_F(UIControlInWindow, endsAPressThatIsTakenAway)
{
    touch(UITouchPhase::began, middle);
    UIApplication::shared().cancelTouches(1);
    EXPECT_EQ(heard, "down, cancel");
    EXPECT_FALSE(control->isHighlighted());
}

TEST_F(UIControlInWindow, doesNothingWhileDisabled)
{
    control->setEnabled(false);
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(heard, "");
    EXPECT_FALSE(control->isHighlighted());
}

TEST_F(UIControlInWindow, saysNothingMoreWhenDisabledUnderTheFinger)
{
    touch(UITouchPhase::began, middle);
    control->setEnabled(false);
    EXPECT_EQ(control->state(), UIControlState::disabled);
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(heard, "down");
}

TEST_F(UIControlInWindow, followsOneFingerOnly)
{
    touch(UITouchPhase::began, middle);
    UIApplication::shared().sendTouch(2, UITouchPhase::began, { 120, 120 }, 1);
    UIApplication::shared().sendTouch(2, UITouchPhase::ended, { 120, 120 }, 1.1);
    EXPECT_TRUE(control->isHighlighted());
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(heard, "down, up inside");
}

TEST_F(UIControlInWindow, mayEndInsideItsOwnAction)
{
    control->removeActions(UIControlEvent::touchUpInside);
    int calls = 0;
    control->addAction(UIControlEvent::touchUpInside, [&] {
        ++calls;
        control->removeFromSuperview();
        control.reset();
    });
    const std::weak_ptr<UIControl> watcher = control;
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(watcher.expired());
}

TEST_F(UIControlInWindow, keepsTapsFromTheViewsAroundIt)
{
    int tapsAround = 0, tapsOfItsOwn = 0;
    window->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++tapsAround; }));
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(tapsAround, 0);
    EXPECT_EQ(heard, "down, up inside");
    touch(UITouchPhase::began, { 20, 20 });
    touch(UITouchPhase::ended, { 20, 20 });
    EXPECT_EQ(tapsAround, 1);
    control->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++tapsOfItsOwn; }));
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(tapsOfItsOwn, 1);
}

TEST(UIControl, runsTheActionsOfAnEventInTheOrderOfAdding)
{
    const auto control = make<UIControl>();
    std::string heard;
    control->addAction(UIControlEvent::valueChanged, [&] { heard += 'a'; });
    const auto b = control->addAction(UIControlEvent::valueChanged, [&] { heard += 'b'; });
    control->addAction(UIControlEvent::valueChanged, [&] { heard += 'c'; });
    control->addAction(UIControlEvent::touchDown, [&] { heard += 'x'; });
    control->sendActions(UIControlEvent::valueChanged);
    control->removeAction(b);
    control->removeAction(b);
    control->sendActions(UIControlEvent::valueChanged);
    EXPECT_EQ(heard, "abcac");
}

TEST(UIControl, leavesOutAnActionThatAnEarlierOneRemoved)
{
    const auto control = make<UIControl>();
    std::string heard;
    UIControl::ActionToken second = 0;
    control->addAction(UIControlEvent::touchDown, [&] {
        heard += '1';
        control->removeAction(second);
        control->addAction(UIControlEvent::touchDown, [&] { heard += '3'; });
    });
    second = control->addAction(UIControlEvent::touchDown, [&] { heard += '2'; });
    control->sendActions(UIControlEvent::touchDown);
    EXPECT_EQ(heard, "1") << "an action added meanwhile waits for the next event";
}

TEST(UIControl, combinesItsStates)
{
    const auto control = make<UIControl>();
    control->setSelected(true);
    control->setHighlighted(true);
    EXPECT_EQ(control->state(), UIControlState::selected | UIControlState::highlighted);
    control->setEnabled(false);
    EXPECT_EQ(control->state(), UIControlState::selected | UIControlState::disabled) << "what is disabled is not pressed";
}

} // namespace
} // namespace platform
