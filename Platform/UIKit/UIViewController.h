#pragma once

#include "Platform/UIKit/UIResponder.h"
#include "Platform/UIKit/UITraitCollection.h"

#include "Platform/CoreGraphics/CGGeometry.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class UIView;

// A change of size under way, as a controller sees it.
class UIViewControllerTransitionCoordinator final {
public:
    explicit UIViewControllerTransitionCoordinator(double seconds)
        : duration(seconds)
    {
    }
    double transitionDuration() const { return duration; } // seconds, 0 when not animated
    // Runs in the animation of the transition; the completion when that has ended.
    void animateAlongside(std::function<void()> animation, std::function<void()> completion = {});

private:
    friend class UIWindow;

    double duration;
    std::vector<std::function<void()>> animations;
    std::vector<std::function<void()>> completions;
};

// Owns a tree of views and what they show. A parent keeps its children.
class UIViewController : public UIResponder {
public:
    UIViewController() = default;
    ~UIViewController() override;

    const std::shared_ptr<UIView>& view(); // loaded at the first call
    void setView(std::shared_ptr<UIView> view);
    bool isViewLoaded() const { return view_ != nullptr; }
    void loadViewIfNeeded() { view(); }
    const UITraitCollection& traitCollection() const; // its view's, or the screen's before there is one

    // Containment. The caller adds and removes the views, and tells the child with didMoveToParent when it is done.
    UIViewController* parent() const { return parent_; }
    const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
    void addChild(const std::shared_ptr<UIViewController>& child);
    void removeFromParent();
    virtual void willMoveToParent(UIViewController* /*parent*/) { }
    virtual void didMoveToParent(UIViewController* /*parent*/) { }

    // Called by the window or the container that shows and hides this one; goes on to the children on the screen.
    void beginAppearanceTransition(bool appearing, bool animated);
    void endAppearanceTransition();
    // Before the view gets a new size; the base hands it on to the children.
    virtual void viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator);

    // UIResponder
    UIResponder* nextResponder() const override; // its view's superview

protected:
    virtual void loadView(); // sets a plain view
    virtual void viewDidLoad() { }
    virtual void viewWillAppear(bool /*animated*/) { }
    virtual void viewDidAppear(bool /*animated*/) { }
    virtual void viewWillDisappear(bool /*animated*/) { }
    virtual void viewDidDisappear(bool /*animated*/) { }
    // Around the layoutSubviews of its view.
    virtual void viewWillLayoutSubviews() { }
    virtual void viewDidLayoutSubviews() { }
    virtual void viewSafeAreaInsetsDidChange() { }
    virtual void traitCollectionDidChange(const UITraitCollection& /*previous*/) { }

private:
    friend class UIView;

    void viewMoved(bool toWindow);

    enum class Appearance : unsigned char { disappeared, appearing, appeared, disappearing };

    std::shared_ptr<UIView> view_;
    std::vector<std::shared_ptr<UIViewController>> children_;
    Appearance appearance = Appearance::disappeared;
    bool appearanceAnimated = false;

    UIViewController* parent_ = nullptr; // which clears it
};

} // namespace platform
