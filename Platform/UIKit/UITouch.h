#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIResponder.h"

#include <memory>
#include <vector>

namespace platform {

class UIGestureRecognizer;
class UIView;
class UIWindow;

enum class UITouchPhase : unsigned char { began, moved, ended, cancelled };

enum class UITouchType : unsigned char {
    direct, // a finger
    pointer, // the pressed mouse button
};

// One finger (or the pressed mouse button) from its coming down to its going up. The same object all the while.
class UITouch final : public NSObject {
public:
    UITouchType type() const { return type_; }
    UITouchPhase phase() const { return phase_; }
    double timestamp() const { return timestamp_; } // seconds, the host's clock
    // Where it is, in that view's coordinates; null is the window's.
    CGPoint location(const UIView* view) const;
    CGPoint previousLocation(const UIView* view) const;
    std::shared_ptr<UIView> view() const { return view_; } // where it came down
    std::shared_ptr<UIWindow> window() const { return window_.lock(); } // null once it has ended

private:
    friend class UIGestureRecognizer;
    friend class UIWindow;

    UITouchType type_ = UITouchType::direct;
    UITouchPhase phase_ = UITouchPhase::began;
    double timestamp_ = 0;
    CGPoint point; // window coordinates
    CGPoint previousPoint;
    std::shared_ptr<UIView> view_; // kept to the end of the touch, so that it hears of it
    WeakRef<UIWindow> window_;
    std::vector<WeakRef<UIGestureRecognizer>> recognizers; // that received it, innermost view's first
    bool viewCancelled = false; // a recogniser took it over
    bool withheld = false; // from its view, while it may yet become a scroll
    int identifier = 0; // the host's
};

// All touches that are down at a moment.
class UIEvent final {
public:
    const UITouches& allTouches() const { return touches; }
    double timestamp() const { return timestamp_; } // seconds, the host's clock

private:
    friend class UIWindow;

    UITouches touches;
    double timestamp_ = 0;
};

} // namespace platform
