#include "Platform/UIKit/UIPopoverPresentationController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ClassName.h"
#include "Platform/UIKit/PopoverBubble.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIWindow.h"

#include <cmath>

namespace platform {

namespace {

constexpr double comingDuration = 0.2; // seconds
constexpr double leavingDuration = 0.15;
constexpr double awayScale = 0.9; // of its size, that it comes from
constexpr CGSize usualContentSize { 320, 480 }; // points

} // namespace

// Takes the touches and keys around the bubble.
class UIPopoverPresentationController::Container final : public UIView {
public:
    explicit Container(UIPopoverPresentationController& owner)
        : popover(&owner)
    {
    }

    // UIView
    std::shared_ptr<UIView> hitTest(CGPoint point, const UIEvent* event) override
    {
        auto hit = UIView::hitTest(point, event);
        const auto owner = popover.lock();
        if (!owner || hit.get() != this)
            return hit;
        auto below = owner->passedThrough(point, event);
        return below ? below : hit;
    }

    // UIResponder
    void touchesBegan(const UITouches&, const UIEvent&) override { } // not for those below
    void touchesMoved(const UITouches&, const UIEvent&) override { }
    void touchesCancelled(const UITouches&, const UIEvent&) override { }
    void touchesEnded(const UITouches& touches, const UIEvent&) override
    {
        const auto owner = popover.lock();
        if (owner && touches.front()->view().get() == this)
            owner->viewerWantsToClose();
    }
    bool pressKey(UIKey key, UIKeyModifiers /*modifiers*/) override
    {
        const auto owner = key == UIKey::escape ? popover.lock() : nullptr;
        if (owner)
            owner->viewerWantsToClose();
        return owner != nullptr;
    }

protected:
    void layoutSubviews() override
    {
        UIView::layoutSubviews();
        if (const auto owner = popover.lock())
            owner->placeBubble();
    }

private:
    WeakRef<UIPopoverPresentationController> popover;
};

UIModalPresentationStyle UIPopoverPresentationControllerDelegate::adaptivePresentationStyle(
    const UIPopoverPresentationController& /*popover*/, const UITraitCollection& traits)
{
    return traits.userInterfaceIdiom == UIUserInterfaceIdiom::phone ? UIModalPresentationStyle::fullScreen
                                                                    : UIModalPresentationStyle::none;
}

UIPopoverPresentationController::~UIPopoverPresentationController() = default;

void UIPopoverPresentationController::setSourceView(const std::shared_ptr<UIView>& view)
{
    source = weak(view);
    placeBubble();
}

void UIPopoverPresentationController::setSourceRect(std::optional<CGRect> newRect)
{
    rect = newRect;
    placeBubble();
}

void UIPopoverPresentationController::setPermittedArrowDirections(UIPopoverArrowDirection directions)
{
    permitted = directions;
    placeBubble();
}

void UIPopoverPresentationController::setPopoverLayoutMargins(const UIEdgeInsets& insets)
{
    margins = insets;
    placeBubble();
}

void UIPopoverPresentationController::setBackgroundColor(std::optional<UIColor> color)
{
    background = std::move(color);
    if (bubble)
        bubble->setFill(background);
}

void UIPopoverPresentationController::setPassthroughViews(const std::vector<std::shared_ptr<UIView>>& views)
{
    passthroughViews.assign(views.begin(), views.end());
}

UIModalPresentationStyle UIPopoverPresentationController::styleToPresentIn() const
{
    UIPopoverPresentationControllerDelegate usual;
    const auto asked = delegate.lock();
    const UITraitCollection& traits = presentingViewController()->traitCollection();
    const auto style = (asked ? *asked : usual).adaptivePresentationStyle(*this, traits);
    return style == UIModalPresentationStyle::none ? UIModalPresentationStyle::popover : style;
}

std::shared_ptr<UIView> UIPopoverPresentationController::makeContainerView()
{
    return isBubble() ? make<Container>(*this) : UIPresentationController::makeContainerView();
}

double UIPopoverPresentationController::transitionDuration(bool presenting) const
{
    if (!isBubble())
        return UIPresentationController::transitionDuration(presenting);
    return presenting ? comingDuration : leavingDuration;
}

void UIPopoverPresentationController::placePresentedView()
{
    if (!isBubble())
        return UIPresentationController::placePresentedView();
    if (const auto told = delegate.lock())
        told->prepareForPopoverPresentation(*this);
    pointsAtNothing = !source.lock();
    if (pointsAtNothing)
        NSLog(className(*presentedViewController()) + " pops over in the middle of the screen: it was given no source view");
    bubble = make<PopoverBubble>();
    bubble->setFill(background);
    containerView()->addSubview(bubble);
    const auto& view = presentedViewController()->view();
    view->setFrame(bubble->contentView()->bounds());
    view->setAutoresizingMask(flexibleWidth | flexibleHeight);
    bubble->contentView()->addSubview(view);
    placeBubble();
    keyboardToken = NotificationCenter::defaultCenter().addObserver(
        UIKeyboard::willChangeFrameNotification, [self = weak(this)](const Notification& notification) {
            const auto* seconds = notification.value<double>(UIKeyboard::animationDurationUserInfoKey);
            if (const auto popover = self.lock())
                popover->keyboardMoves(seconds ? *seconds : 0);
        });
}

void UIPopoverPresentationController::showAway(bool leaving)
{
    if (!isBubble())
        return UIPresentationController::showAway(leaving);
    containerView()->setUserInteractionEnabled(!leaving); // the next touch is for what is below
    bubble->setAlpha(0);
    if (!leaving)
        bubble->setTransform(CGAffineTransform::scale(awayScale, awayScale));
}

void UIPopoverPresentationController::showHere()
{
    if (!isBubble())
        return UIPresentationController::showHere();
    bubble->setTransform({});
    bubble->setAlpha(1);
    containerView()->setUserInteractionEnabled(true);
}

void UIPopoverPresentationController::layoutDidSettle()
{
    if (!bubble)
        return;
    const auto view = source.lock();
    if (view ? view->window() == containerView()->window() : pointsAtNothing)
        placeBubble();
    else
        closeItself();
}

void UIPopoverPresentationController::placeBubble()
{
    if (!bubble || !isComingOrThere())
        return;
    const PopoverPlacement wanted = wantedPlacement();
    if (wanted == placement)
        return;
    placement = wanted;
    bubble->place(placement);
}

PopoverPlacement UIPopoverPresentationController::wantedPlacement() const
{
    const auto& container = containerView();
    const CGSize preferred = presentedViewController()->preferredContentSize();
    const CGSize content = preferred.isEmpty() ? usualContentSize : preferred;
    const auto view = source.lock();
    if (pointsAtNothing && !view)
        return placePopover(content, container->bounds(), area(0), UIPopoverArrowDirection::none);
    if (!view || view->window() != container->window())
        return placement; // it is about to close
    const CGRect pointedAt = view->convertTo(rect ? *rect : view->bounds(), container.get());
    PopoverPlacement wanted = placePopover(content, pointedAt, area(0), permitted);
    if (wanted.body.height < content.height) {
        const CGFloat least = std::min(content.height, leastContentHeight(wanted.body.width));
        wanted = placePopover(content, pointedAt, area(least), permitted, least);
    }
    const CGFloat scale = UIScreen::main().scale();
    const CGFloat dx = std::round(wanted.body.x * scale) / scale - wanted.body.x;
    const CGFloat dy = std::round(wanted.body.y * scale) / scale - wanted.body.y;
    wanted.body = wanted.body.offsetBy(dx, dy);
    wanted.tip = { wanted.tip.x + dx, wanted.tip.y + dy };
    return wanted;
}

// What the content's constraints ask for when it is that wide. 0 for one without any.
CGFloat UIPopoverPresentationController::leastContentHeight(CGFloat width) const
{
    const auto& view = presentedViewController()->view();
    return view->systemLayoutSizeFitting({ width, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel).height;
}

// Where the bubble may lie. The margins give way to a content that needs more.
CGRect UIPopoverPresentationController::area(CGFloat leastHeight) const
{
    const auto& container = containerView();
    CGRect free = container->safeAreaInsets().inset(container->bounds());
    const CGRect& keyboard = UIApplication::shared().keyboardFrame();
    if (!keyboard.isEmpty())
        free.height = std::min(free.height, std::max(0.0, keyboard.y - container->window()->frame().y - free.y));
    CGRect inside = margins.inset(free);
    if (inside.height < leastHeight) {
        inside.y = free.y;
        inside.height = free.height;
    }
    return inside;
}

std::shared_ptr<UIView> UIPopoverPresentationController::passedThrough(CGPoint point, const UIEvent* event) const
{
    for (const auto& reference : passthroughViews) {
        const auto view = reference.lock();
        if (!view || view->window() != containerView()->window())
            continue;
        if (auto hit = view->hitTest(view->convertFrom(point, containerView().get()), event))
            return hit;
    }
    return nullptr;
}

void UIPopoverPresentationController::viewerWantsToClose()
{
    if (!isComingOrThere())
        return;
    const auto asked = delegate.lock();
    if (!asked || asked->popoverPresentationControllerShouldDismissPopover(*this))
        closeItself();
}

void UIPopoverPresentationController::closeItself()
{
    if (!isComingOrThere()) // the delegate has closed it already
        return;
    dismiss(true, [self = weak(this)] {
        const auto popover = self.lock();
        const auto told = popover ? popover->delegate.lock() : nullptr;
        if (told)
            told->popoverPresentationControllerDidDismissPopover(*popover);
    });
}

// Other views give way to the keyboard in the same time.
void UIPopoverPresentationController::keyboardMoves(double duration)
{
    if (!bubble || !isComingOrThere())
        return;
    UIView::animate(duration, [this] {
        containerView()->window()->layoutIfNeeded();
        placeBubble();
    });
}

} // namespace platform
