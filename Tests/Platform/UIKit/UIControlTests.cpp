#include "Platform/UIKit/UIControl.h"

#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

#include <utility>

namespace platform {
namespace {

// A control of 100 by 40 points at (100, 100), whose events are written down.
class UIControlInWindow : public ScreenTest {
protected:
    UIControlInWindow()
    {
        control->setFrame({ 100, 100, 100, 40 });
        window->addSubview(control);
        using enum UIControlEvent;
        const std::pair<UIControlEvent, const char*> events[]
            = { { touchDown, "down " }, { touchDragEnter, "enter " }, { touchDragExit, "exit " }, { touchUpInside, "up inside" },
                  { touchUpOutside, "up outside" }, { touchCancel, "cancel" } };
        for (const auto& [event, word] : events)
            control->addAction(event, [this, word = word] { heard += word; });
    }

    const CGPoint middle { 150, 120 };
    std::shared_ptr<UIControl> control = make<UIControl>();
    std::string heard;
};

TEST_F(UIControlInWindow, followsTheFinger)
{
    struct Case {
        const char* why;
        std::vector<double> way; // heights that it goes through
        bool pressed; // at its end
        const char* heard;
    };
    const Case cases[] = {
        { "pressed by a touch inside", {}, true, "down up inside" },
        { "forgives a finger that strays up to seventy points", { 209 }, true, "down up inside" },
        { "lets a finger leave", { 211 }, false, "down exit up outside" },
        { "out and back", { 211, 300, 130 }, true, "down exit enter up inside" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        touch(UITouchPhase::began, middle);
        CGPoint place = middle;
        for (const double y : c.way)
            touch(UITouchPhase::moved, place = { 150, y });
        EXPECT_EQ(control->isHighlighted(), c.pressed);
        EXPECT_EQ(control->isTouchInside(), c.pressed);
        EXPECT_TRUE(control->isTracking());
        touch(UITouchPhase::ended, place);
        EXPECT_FALSE(control->isHighlighted());
        EXPECT_FALSE(control->isTracking());
        EXPECT_EQ(std::exchange(heard, ""), c.heard);
    }
}

TEST_F(UIControlInWindow, endsAPressThatIsTakenAway)
{
    touch(UITouchPhase::began, middle);
    UIApplication::shared().cancelTouches(clock.now());
    EXPECT_EQ(heard, "down cancel");
    EXPECT_FALSE(control->isHighlighted());
}

TEST_F(UIControlInWindow, saysNothingWhileDisabledNorOnceDisabledUnderTheFinger)
{
    touch(UITouchPhase::began, middle);
    control->setEnabled(false);
    EXPECT_EQ(control->state(), UIControlState::disabled);
    touch(UITouchPhase::ended, middle);
    tap(middle);
    EXPECT_EQ(heard, "down ");
    EXPECT_FALSE(control->isHighlighted());
}

TEST_F(UIControlInWindow, followsOneFingerOnly)
{
    touch(UITouchPhase::began, middle);
    touch(UITouchPhase::began, { 120, 120 }, 2);
    touch(UITouchPhase::ended, { 120, 120 }, 2);
    EXPECT_TRUE(control->isHighlighted());
    touch(UITouchPhase::ended, middle);
    EXPECT_EQ(heard, "down up inside");
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
    tap(middle);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(watcher.expired());
}

TEST_F(UIControlInWindow, keepsTapsFromTheViewsAroundIt)
{
    int tapsAround = 0, tapsOfItsOwn = 0;
    window->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++tapsAround; }));
    tap(middle);
    EXPECT_EQ(tapsAround, 0);
    EXPECT_EQ(heard, "down up inside");
    tap({ 20, 20 });
    EXPECT_EQ(tapsAround, 1);
    control->addGestureRecognizer(make<UITapGestureRecognizer>([&](UIGestureRecognizer&) { ++tapsOfItsOwn; }));
    tap(middle);
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
