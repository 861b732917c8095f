#pragma once

#include "Platform/UIKit/UIResponder.h"
#include "Platform/UIKit/UITraitCollection.h"

#include "Platform/CoreGraphics/CGGeometry.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UINavigationController;
class UIPopoverPresentationController;
class UIPresentationController;
class UITabBarController;
class UIView;

// Full screen covers the presenter, which disappears; the others lie over it and leave it where it is. Over current context lies
// over the nearest ancestor that defines a presentation context, a popover beside what it points at. None is only an answer: no
// other style than the present one.
enum class UIModalPresentationStyle : unsigned char { fullScreen, overFullScreen, overCurrentContext, popover, none };
enum class UIModalTransitionStyle : unsigned char { coverVertical, crossDissolve };

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

// Owns a tree of views and what they show. A parent keeps its children, a presenter what it presents. Main thread.
class UIViewController : public UIResponder {
public:
    UIViewController() = default;
    ~UIViewController() override;

    const std::shared_ptr<UIView>& view(); // loaded at the first call
    void setView(std::shared_ptr<UIView> view);
    bool isViewLoaded() const { return view_ != nullptr; }
    void loadViewIfNeeded() { view(); }
    const std::string& title() const { return title_; } // what bars of containers show
    void setTitle(std::string title);
    const UITraitCollection& traitCollection() const; // its view's, or the screen's before there is one
    // Light or dark in its view and what its presentation puts around that; unspecified follows what is around.
    UIUserInterfaceStyle overrideUserInterfaceStyle() const { return overrideStyle; }
    void setOverrideUserInterfaceStyle(UIUserInterfaceStyle style);

    // Containment. The caller adds and removes the views, and tells the child with didMoveToParent when it is done.
    UIViewController* parent() const { return parent_; }
    const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
    void addChild(const std::shared_ptr<UIViewController>& child);
    void removeFromParent();
    virtual void willMoveToParent(UIViewController* /*parent*/) { }
    virtual void didMoveToParent(UIViewController* /*parent*/) { }

    // Containers that this one or an ancestor sits in; null for none.
    UINavigationController* navigationController() const;
    UITabBarController* tabBarController() const;

    // Presentation. The outermost ancestor presents, over everything in its window, or for the style over current context the
    // nearest one that defines a context, over its view; one that already presents something, or is not in a window, does not
    // (one console line). While what it presented is still leaving, the next one waits for that. The
    // completion runs when the controller has come to rest; a presentation that is refused drops it.
    void present(const std::shared_ptr<UIViewController>& controller, bool animated, std::function<void()> completion = {});
    // Takes away what this one or an ancestor presents, with all that lies above; else itself, when it was presented. Does
    // nothing, and drops the completion, when there is neither.
    void dismiss(bool animated, std::function<void()> completion = {});
    // Of this one or the nearest ancestor that has one; null for none. One that is on its way out still counts.
    std::shared_ptr<UIViewController> presentedViewController() const;
    UIViewController* presentingViewController() const;
    UIModalPresentationStyle modalPresentationStyle() const { return presentationStyle; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { presentationStyle = style; }
    UIModalTransitionStyle modalTransitionStyle() const { return transitionStyle; }
    void setModalTransitionStyle(UIModalTransitionStyle style) { transitionStyle = style; }
    bool definesPresentationContext() const { return definesContext; }
    void setDefinesPresentationContext(bool defines) { definesContext = defines; }
    // While its style is popover: what its present or next presentation as one is told; null for other styles. A new one after
    // every dismissal.
    std::shared_ptr<UIPopoverPresentationController> popoverPresentationController();
    // Points that a popover gives it; empty for the popover's own default.
    CGSize preferredContentSize() const { return preferredSize; }
    void setPreferredContentSize(CGSize size);
    // Why it appears or disappears; true only between the will and the did of that.
    bool isBeingPresented() const { return passage == Passage::presented; }
    bool isBeingDismissed() const { return passage == Passage::dismissed || (parent_ && parent_->isBeingDismissed()); }
    bool isMovingToParent() const { return passage == Passage::movedIn; }
    bool isMovingFromParent() const { return passage == Passage::movedOut; }

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
    // How this one is put over its presenter.
    virtual std::shared_ptr<UIPresentationController> makePresentationController(UIViewController& presenter);
    virtual void titleDidChange(UIViewController& /*child*/) { } // of a child's, for containers
    // Whether that child appears and disappears with this one. One whose view is in the tree does, unless a container hides it.
    virtual bool showsChild(const UIViewController& child) const;
    bool isShown() const { return appearance == Appearance::appearing || appearance == Appearance::appeared; }
    // Why the present appearance or disappearance happens; containers say so before they begin it.
    enum class Passage : unsigned char { none, presented, dismissed, movedIn, movedOut };
    static void setPassage(UIViewController& controller, Passage passage) { controller.passage = passage; }

private:
    friend class UIApplication;
    friend class UIPresentationController;
    friend class UIView;
    friend class UIWindow;

    void viewMoved(bool toWindow);
    UIViewController& outermostAncestor();
    // What lies over this one's view only, and so comes and goes with it; null for none, or when it leaves already.
    std::shared_ptr<UIViewController> presentedInContext() const;
    UIViewController& presenterOf(const UIViewController& controller);
    // What this one and its descendants present, and what is presented above that, lowest first.
    void appendPresentations(std::vector<std::shared_ptr<UIPresentationController>>& list) const;

    enum class Appearance : unsigned char { disappeared, appearing, appeared, disappearing };

    std::shared_ptr<UIView> view_;
    std::string title_;
    std::vector<std::shared_ptr<UIViewController>> children_;
    Appearance appearance = Appearance::disappeared;
    bool appearanceAnimated = false;
    Passage passage = Passage::none;
    UIModalPresentationStyle presentationStyle = UIModalPresentationStyle::fullScreen;
    UIModalTransitionStyle transitionStyle = UIModalTransitionStyle::coverVertical;
    UIUserInterfaceStyle overrideStyle = UIUserInterfaceStyle::unspecified;
    bool definesContext = false;
    CGSize preferredSize; // points
    std::shared_ptr<UIPresentationController> presentation; // of what this one presents
    std::shared_ptr<UIPopoverPresentationController> nextPopover; // until it is presented

    UIPresentationController* ownPresentation = nullptr; // that presents this one and clears it
    UIViewController* parent_ = nullptr; // which clears it
};

} // namespace platform
