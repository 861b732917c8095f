#pragma once

#include "Platform/UIKit/UITouch.h"
#include "Platform/UIKit/UIView.h"

#include <memory>

namespace platform {

class UIPresentationController;
class UIViewController;

// Windows of a level lie above all of the levels before it.
enum class UIWindowLevel : unsigned char { normal, keyboard };

// The root of what is shown: fills the screen, takes its safe area and traits, and hands touches to views. Hidden at first; who
// makes one keeps it.
class UIWindow : public UIView {
public:
    UIWindow(); // fills the screen
    explicit UIWindow(const CGRect& frame); // stays filling the screen if it does, else keeps this frame
    ~UIWindow() override;

    const std::shared_ptr<UIViewController>& rootViewController() const { return rootViewController_; }
    void setRootViewController(std::shared_ptr<UIViewController> controller); // its view fills the window
    void makeKeyAndVisible();
    UIWindowLevel windowLevel() const { return windowLevel_; }
    void setWindowLevel(UIWindowLevel level) { windowLevel_ = level; } // takes effect when it is shown
    std::shared_ptr<UIViewController> topmostController() const; // the root or the last one presented above it; null for none

    // UIView
    void setHidden(bool hidden) override;
    UIResponder* nextResponder() const override; // the application

protected:
    // UIView
    UIEdgeInsets inheritedSafeAreaInsets() const override;

private:
    friend class UIApplication;
    friend class UIGestureRecognizer;
    friend class UIScreen;
    friend class UIView;

    std::vector<std::shared_ptr<UIPresentationController>> presentations() const; // above the root, lowest first
    // Of the root and what is presented above it, those that nothing covers, lowest first.
    std::vector<std::shared_ptr<UIViewController>> uncoveredControllers() const;
    void screenChanged(const CGRect& previousScreen, double duration);
    bool beginTouch(int identifier, UITouchType type, CGPoint point, double timestamp);
    bool changeTouch(int identifier, UITouchPhase phase, CGPoint point, double timestamp);
    void cancelAllTouches(double timestamp);
    void cancelTouchesIn(const UIView& subtree); // which has left the window
    void collectRecognizers(UITouch& touch);
    void deliver(const std::shared_ptr<UITouch>& touch);
    void deliverToView(const std::shared_ptr<UITouch>& touch, UITouchPhase phase);
    void withholdIfItMayScroll(const std::shared_ptr<UITouch>& touch);
    void handOver(const std::shared_ptr<UITouch>& touch);
    void takeFromView(const std::shared_ptr<UITouch>& touch); // for a recogniser
    UIEvent event() const;

    std::shared_ptr<UIViewController> rootViewController_;
    UITouches touches; // that are down
    UIWindowLevel windowLevel_ = UIWindowLevel::normal;
    bool filledScreen = false; // when it was hidden
    double lastTimestamp = 0; // seconds, of the last touch event
};

} // namespace platform
