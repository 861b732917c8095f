#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/UIKit/UIViewController.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// Puts one controller's view over another's and takes it away again, in a container view of its own: it fills the window above
// the presenter, or the presenter's view when that is a child which defines a presentation context. This one covers the
// presenter, or fades in over it, as the presented controller's styles say; a presentation with a look of its own derives from
// it. Main thread.
class UIPresentationController : public NSObject {
public:
    UIPresentationController(UIViewController& presenting, std::shared_ptr<UIViewController> presented);
    ~UIPresentationController() override;

    UIViewController* presentingViewController() const { return presenting; } // null once that is gone
    // Null before a presentation that is made ahead begins.
    const std::shared_ptr<UIViewController>& presentedViewController() const { return presented; }
    // The presented controller's style, or the one it was adapted to.
    UIModalPresentationStyle presentationStyle() const { return style; }
    const std::shared_ptr<UIView>& containerView() const { return containerView_; } // null before the presentation

protected:
    UIPresentationController() = default; // made ahead; whoever presents it connects it

    // Asked when the presentation begins; the base takes the presented controller's.
    virtual UIModalPresentationStyle styleToPresentIn() const;
    virtual std::shared_ptr<UIView> makeContainerView();
    // Seconds that the coming and the leaving take when they are animated.
    virtual double transitionDuration(bool presenting) const;
    // Puts the presented view into the container; the base lets it fill the container and follow its size.
    virtual void placePresentedView();
    // The looks of being away, before it comes and after it has left, and those of being there. The change is animated.
    virtual void showAway(bool leaving);
    virtual void showHere();
    // Whether the presenter cannot be seen any more once the transition has ended.
    virtual bool coversPresenter() const;
    virtual void preferredContentSizeDidChange() { } // of the presented controller
    // After a frame's layout, until it leaves: for what has to follow other views.
    virtual void layoutDidSettle() { }
    // As the presented controller's own: with what lies above it.
    void dismiss(bool animated, std::function<void()> completion);
    bool isComingOrThere() const { return phase == Phase::coming || phase == Phase::there; }

private:
    friend class UIApplication;
    friend class UIViewController;
    friend class UIWindow;

    struct WaitingPresentation {
        std::shared_ptr<UIViewController> controller;
        bool animated;
        std::function<void()> completion;
    };

    void connect(UIViewController& presentingController, std::shared_ptr<UIViewController> next);
    void present(bool animated, std::function<void()> completion);
    void finishPresenting();
    void finishDismissing();
    void presentAfterDismissal(WaitingPresentation next) { waiting = std::move(next); }
    bool isDismissing() const { return phase == Phase::leaving; }
    void runCompletions();

    enum class Phase : unsigned char { coming, there, leaving, gone };

    std::shared_ptr<UIViewController> presented;
    std::shared_ptr<UIView> containerView_;
    std::vector<std::function<void()>> completions;
    std::optional<WaitingPresentation> waiting;
    Phase phase = Phase::coming;
    UIModalPresentationStyle style = UIModalPresentationStyle::fullScreen;

    UIViewController* presenting = nullptr; // which clears it
};

} // namespace platform
