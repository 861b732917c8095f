#pragma once

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/PopoverPlacement.h"
#include "Platform/UIKit/UIColor.h"
#include "Platform/UIKit/UIGeometry.h"
#include "Platform/UIKit/UIPresentationController.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

class PopoverBubble;
class UIEvent;
class UIPopoverPresentationController;

// What a popover asks and tells. The answers here are those for a popover without a delegate.
class UIPopoverPresentationControllerDelegate {
public:
    virtual ~UIPopoverPresentationControllerDelegate() = default;
    // How it is presented there; none leaves it a popover. On a phone it covers the screen unless this says otherwise.
    virtual UIModalPresentationStyle adaptivePresentationStyle(
        const UIPopoverPresentationController& popover, const UITraitCollection& traits);
    virtual void prepareForPopoverPresentation(UIPopoverPresentationController& /*popover*/) { }
    // When the viewer would close it: a touch outside, or the escape key.
    virtual bool popoverPresentationControllerShouldDismissPopover(UIPopoverPresentationController& /*popover*/) { return true; }
    // After the viewer has closed it, or its source has left the window. Not after a dismiss.
    virtual void popoverPresentationControllerDidDismissPopover(UIPopoverPresentationController& /*popover*/) { }
};

// A bubble with an arrow to what it is about, clear of the safe area's edges and of the keyboard, which it leaves up. Where there
// is little room it is less high than its content would like, but lies over what it is about rather than be too low for it. While
// it stands, what is below gets no touches; one outside of it closes it. It follows its source and closes when that leaves the
// window. Get it from the controller that is to be presented, and fill it in before. Without a source it stands in the middle,
// after one console line.
class UIPopoverPresentationController final : public UIPresentationController {
public:
    UIPopoverPresentationController() = default;
    ~UIPopoverPresentationController() override;

    std::shared_ptr<UIView> sourceView() const { return source.lock(); } // null for none, or when it is gone
    void setSourceView(const std::shared_ptr<UIView>& view);
    const std::optional<CGRect>& sourceRect() const { return rect; }
    void setSourceRect(std::optional<CGRect> newRect); // in the source view's coordinates; absent for its bounds
    // Those that the arrow may point in; any at first. None shows no arrow, and the bubble over the middle of the source.
    UIPopoverArrowDirection permittedArrowDirections() const { return permitted; }
    void setPermittedArrowDirections(UIPopoverArrowDirection directions);
    UIPopoverArrowDirection arrowDirection() const { return placement.arrow; } // that it points in; none before it is presented
    const UIEdgeInsets& popoverLayoutMargins() const { return margins; } // points inside the safe area; 10 at first
    void setPopoverLayoutMargins(const UIEdgeInsets& insets);
    const std::optional<UIColor>& backgroundColor() const { return background; } // of body and arrow; absent: the usual one
    void setBackgroundColor(std::optional<UIColor> color);
    // Views in the same window that get their touches as if it were not there.
    void setPassthroughViews(const std::vector<std::shared_ptr<UIView>>& views);
    void setDelegate(std::weak_ptr<UIPopoverPresentationControllerDelegate> newDelegate) { delegate = std::move(newDelegate); }

protected:
    // UIPresentationController
    UIModalPresentationStyle styleToPresentIn() const override;
    std::shared_ptr<UIView> makeContainerView() override;
    double transitionDuration(bool presenting) const override;
    void placePresentedView() override;
    void showAway(bool leaving) override;
    void showHere() override;
    void preferredContentSizeDidChange() override { placeBubble(); }
    void layoutDidSettle() override;

private:
    class Container;

    bool isBubble() const { return presentationStyle() == UIModalPresentationStyle::popover; }
    void placeBubble();
    PopoverPlacement wantedPlacement() const;
    CGRect area(CGFloat leastHeight) const;
    CGFloat leastContentHeight(CGFloat width) const;
    std::shared_ptr<UIView> passedThrough(CGPoint point, const UIEvent* event) const; // in the container's coordinates
    void viewerWantsToClose();
    void closeItself();
    void keyboardMoves(double duration);

    WeakRef<UIView> source;
    std::optional<CGRect> rect;
    UIPopoverArrowDirection permitted = UIPopoverArrowDirection::any;
    UIEdgeInsets margins { 10, 10, 10, 10 };
    std::optional<UIColor> background;
    std::vector<WeakRef<UIView>> passthroughViews;
    std::weak_ptr<UIPopoverPresentationControllerDelegate> delegate;
    std::shared_ptr<PopoverBubble> bubble; // null before it is presented, and when it was adapted to another style
    PopoverPlacement placement;
    bool pointsAtNothing = false; // it had no source from the start
    NotificationToken keyboardToken;
};

} // namespace platform
