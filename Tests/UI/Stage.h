#pragma once

#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIWindow.h"
#include "Service/MVPlatform.h"
#include "Tests/Support/ViewSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace platform {

inline void PrintTo(const CGRect& r, std::ostream* out)
{
    *out << "(" << r.x << ", " << r.y << ", " << r.width << ", " << r.height << ")";
}
inline void PrintTo(const CGPoint& p, std::ostream* out) { *out << "(" << p.x << ", " << p.y << ")"; }

} // namespace platform

namespace mv {

// A device with a window, driven as a viewer would. A console line that no test took fails it.
class Stage : public testing::Test {
protected:
    Stage()
        : window(make<UIWindow>())
    {
        window->makeKeyAndVisible();
        host.advance(0);
    }
    ~Stage() override
    {
        window = nullptr;
        host.advance(0);
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }

    // The first view of that name in the tree, depth first; null for none.
    static std::shared_ptr<UIView> find(const std::shared_ptr<UIView>& root, const std::string& name)
    {
        return test::findView(root, name);
    }
    template <typename View> static std::shared_ptr<View> find(const std::shared_ptr<UIView>& root, const std::string& name)
    {
        auto found = std::dynamic_pointer_cast<View>(find(root, name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    static CGRect onScreen(const UIView& view) { return view.convertTo(view.bounds(), nullptr); }
    static CGPoint middle(const UIView& view) { return { onScreen(view).midX(), onScreen(view).midY() }; }

    // By default the same to within what floating point makes of thirds of a point.
    static testing::AssertionResult isNear(const CGRect& shown, const CGRect& expected, double tolerance = 1e-6)
    {
        const double off = std::max({ std::abs(shown.x - expected.x), std::abs(shown.y - expected.y),
            std::abs(shown.width - expected.width), std::abs(shown.height - expected.height) });
        if (off <= tolerance)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << testing::PrintToString(shown) << " is not " << testing::PrintToString(expected);
    }

    void turn(UIDeviceOrientation orientation)
    {
        host.rotate(orientation);
        host.advance(1);
    }
    // What the screen shows at that point, as 0xRRGGBB.
    std::uint32_t pixel(CGPoint point)
    {
        const double scale = host.device().model().scale;
        return host.pixels().row(int(point.y * scale))[int(point.x * scale)] & 0xffffff;
    }
    // Of the console, since the last call.
    std::vector<std::string> takeLines()
    {
        auto lines = console.lines();
        console.clear();
        return lines;
    }

    LogCapture console;
    HeadlessHost host;
    std::shared_ptr<UIWindow> window;
};

} // namespace mv
