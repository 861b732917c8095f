#pragma once

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace platform {

inline void PrintTo(const CGRect& r, std::ostream* out)
{
    *out << "(" << r.x << ", " << r.y << ", " << r.width << ", " << r.height << ")";
}
inline void PrintTo(const CGPoint& p, std::ostream* out) { *out << "(" << p.x << ", " << p.y << ")"; }
inline void PrintTo(const CGSize& s, std::ostream* out) { *out << s.width << " x " << s.height; }
inline void PrintTo(const UIEdgeInsets& i, std::ostream* out)
{
    *out << "[" << i.top << ", " << i.left << ", " << i.bottom << ", " << i.right << "]";
}

// A window on a screen of 320 x 480 points at 2x without a safe area, frames made by hand. A console line that no test took
// fails it.
class ScreenTest : public ::testing::Test {
protected:
    ScreenTest()
    {
        Clock::setCurrent(&clock);
        UIScreen::main().setGeometry({ 320, 480 }, {});
        UIScreen::main().setTraitCollection(lightTraits());
        window = make<UIWindow>();
        window->makeKeyAndVisible();
        makeFrame();
    }

    ~ScreenTest() override
    {
        window = nullptr;
        makeFrame();
        UIScreen::main().setGeometry({ 320, 480 }, {});
        UIScreen::main().setTraitCollection(lightTraits());
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }

    static UITraitCollection lightTraits()
    {
        UITraitCollection traits;
        traits.userInterfaceStyle = UIUserInterfaceStyle::light;
        return traits;
    }

    static void setDirection(UIUserInterfaceLayoutDirection direction)
    {
        UITraitCollection traits = lightTraits();
        traits.layoutDirection = direction;
        UIScreen::main().setTraitCollection(traits);
    }
    static void setDark(bool isDark)
    {
        UITraitCollection traits = lightTraits();
        traits.userInterfaceStyle = isDark ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
        UIScreen::main().setTraitCollection(traits);
    }

    // The frame's steps, as a host takes them, without pixels.
    void makeFrame()
    {
        auto& application = UIApplication::shared();
        LayerCommitter::finishAnimations(clock.now());
        application.layoutWindows();
        LayerCommitter::commit(application.windowLayers(), clock.now(), 2, { 0, 0, 640, 960 });
    }

    void advance(double seconds)
    {
        clock.advance(seconds);
        makeFrame();
    }

    std::vector<std::string> takeLines()
    {
        auto lines = console.lines();
        console.clear();
        return lines;
    }

    void touch(UITouchPhase phase, CGPoint point, int finger = 1)
    {
        UIApplication::shared().sendTouch(finger, phase, point, clock.now());
    }
    void tap(CGPoint point)
    {
        touch(UITouchPhase::began, point);
        touch(UITouchPhase::ended, point);
    }

    static CGRect onScreen(const UIView& view) { return view.convertTo(view.bounds(), nullptr); }
    std::shared_ptr<UIView> add(const CGRect& frame, const std::shared_ptr<UIView>& parent = nullptr)
    {
        auto view = make<UIView>(frame);
        (parent ? parent : window)->addSubview(view);
        return view;
    }
    // Placed by constraints, called by that name on the console.
    std::shared_ptr<UIView> addConstrained(const std::string& name, const std::shared_ptr<UIView>& parent = nullptr)
    {
        auto view = add({}, parent);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        view->setAccessibilityIdentifier(name);
        return view;
    }

    LogCapture console;
    ManualClock clock;
    std::shared_ptr<UIWindow> window;
};

// A view with a content of its own.
class Content : public UIView {
public:
    explicit Content(CGSize size)
        : size(size)
    {
        setTranslatesAutoresizingMaskIntoConstraints(false);
    }
    CGSize intrinsicContentSize() const override { return size; }
    void setSize(CGSize newSize)
    {
        size = newSize;
        invalidateIntrinsicContentSize();
    }
    // As text flows: an area of so many points, whose height follows from its width.
    double area = 0;

protected:
    std::optional<CGFloat> intrinsicHeight(CGFloat width) const override
    {
        return area > 0 && width > 0 ? std::optional(std::ceil(area / width)) : std::nullopt;
    }
    CGFloat firstBaselineOffset() const override { return 8; }
    CGFloat lastBaselineOffset() const override { return 3; }

private:
    CGSize size;
};

// All four edges, with that much room in between.
inline void fill(UIView& view, UILayoutItem& around, CGFloat inset = 0)
{
    activate({
        view.leadingAnchor().equalTo(around.leadingAnchor(), inset),
        view.trailingAnchor().equalTo(around.trailingAnchor(), -inset),
        view.topAnchor().equalTo(around.topAnchor(), inset),
        view.bottomAnchor().equalTo(around.bottomAnchor(), -inset),
    });
}

} // namespace platform
