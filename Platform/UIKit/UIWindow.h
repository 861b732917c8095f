#pragma once

#include "Platform/UIKit/UITouch.h"
#include "Platform/UIKit/UIView.h"

#include <memory>

namespace platform {

class UIViewController;

// The root of what is shown: fills the screen, takes its safe area and traits, and hands touches to views. Hidden at first; who
// makes one keeps it.
class UIWindow : public UIView {
public:
    UIWindow(); // fills the screen
    explicit UIWindow(const CGRect& frame); // keeps this frame when the screen changes only if it did not fill it
    ~UIWindow() override;

    const std::shared_ptr<UIViewController>& rootViewController() const { return rootViewController_; }
    void setRootViewController(std::shared_ptr<UIViewController> controller); // its view fills the window
    void makeKeyAndVisible();

    // UIView
    void setHidden(bool hidden) override;
    UIResponder* nextResponder() const override; // the application

protected:
    // UIView
    UIEdgeInsets ownSafeAreaInsets() const override;

private:
    friend class UIApplication;
    friend class UIGestureRecognizer;
    friend class UIScreen;
    friend class UIView;

    struct TouchTarget;
    void screenChanged(const CGRect& previousScreen, double duration);
    bool beginTouch(int identifier, CGPoint point, double timestamp);
    bool changeTouch(int identifier, UITouchPhase phase, CGPoint point, double timestamp);
    void cancelAllTouches(double timestamp);
    void deliver(const std::shared_ptr<UITouch>& touch);
    void takeTouchFromView(const std::shared_ptr<UITouch>& touch);

    std::shared_ptr<UIViewController> rootViewController_;
    UITouches touches;
    struct { // of the last touch that ended, for the tap count
        CGPoint point;
        double timestamp = -1;
        int tapCount = 0;
    } lastTap;
};

} // namespace platform
