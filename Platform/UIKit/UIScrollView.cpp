#include "Platform/UIKit/UIScrollView.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIPanGestureRecognizer.h"
#include "Platform/UIKit/UITouch.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double animationDuration = 0.3; // seconds

double usable(double length) { return std::isfinite(length) ? std::max(length, 0.0) : 0; }

double& along(CGPoint& point, std::size_t axis) { return axis == 0 ? point.x : point.y; }
double along(const CGPoint& point, std::size_t axis) { return axis == 0 ? point.x : point.y; }
double along(const CGSize& size, std::size_t axis) { return axis == 0 ? size.width : size.height; }

} // namespace

// Begins along an axis that can scroll; at once when it catches a moving content.
class UIScrollView::Pan final : public UIPanGestureRecognizer {
public:
    explicit Pan(UIScrollView& owner)
        : scrollView(weak(&owner))
    {
    }

protected:
    bool mayBegin(CGPoint way) const override
    {
        const auto view = scrollView.lock();
        return view && view->panMayBegin(way);
    }
    void touchesBegan(const UITouches& touches, const UIEvent& event) override
    {
        UIPanGestureRecognizer::touchesBegan(touches, event);
        const auto view = scrollView.lock();
        if (view && view->scrollEnabled && state() == UIGestureRecognizerState::possible && view->catchMotion())
            setState(UIGestureRecognizerState::began);
    }

private:
    const WeakRef<UIScrollView> scrollView;
};

UIScrollView::UIScrollView(const CGRect& frame)
    : UIView(frame)
    , contentGuide(make<UILayoutGuide>())
    , pan(make<Pan>(*this))
    , link(make<CADisplayLink>([self = weak(this)](double time) {
        if (const auto view = self.lock())
            view->step(time);
    }))
{
    setClipsToBounds(true);
    addLayoutGuide(contentGuide);
    addGestureRecognizer(pan);
    pan->addAction([self = weak(this)](UIGestureRecognizer& recognizer) {
        if (const auto view = self.lock())
            view->panned(static_cast<UIPanGestureRecognizer&>(recognizer));
    });
}

UIScrollView::~UIScrollView() { link->stop(); }

void UIScrollView::setContentOffset(CGPoint offset, bool animated)
{
    if (!std::isfinite(offset.x) || !std::isfinite(offset.y)) {
        NSLog("scroll view " + layoutName() + " not moved: its new offset is not a number");
        return;
    }
    stopMotion();
    if (!animated || !window() || offset == contentOffset()) {
        place(offset);
        return;
    }
    animation = Glide { contentOffset(), offset, Clock::current().now() };
    link->start();
}

void UIScrollView::setContentSize(CGSize size)
{
    const CGSize wanted { usable(size.width), usable(size.height) };
    if (wanted == contentSize_)
        return;
    contentSize_ = wanted;
    updateSafeAreaOfSubviews();
    clampOffset();
}

void UIScrollView::setContentInset(const UIEdgeInsets& inset)
{
    if (inset == contentInset_)
        return;
    const CGPoint before = minimumContentOffset();
    const bool atStart = contentOffset() == before;
    contentInset_ = inset;
    if (atStart)
        place(minimumContentOffset());
    clampOffset();
}

void UIScrollView::setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior)
{
    insetBehavior = behavior;
    safeAreaInsetsDidChange();
}

UIEdgeInsets UIScrollView::adjustedContentInset() const
{
    UIEdgeInsets inset = contentInset_;
    if (insetBehavior == UIScrollViewContentInsetAdjustmentBehavior::automatic
        && (alwaysBounce[1] || contentSize_.height > bounds().height)) {
        inset.top += safeAreaInsets().top;
        inset.bottom += safeAreaInsets().bottom;
    }
    return inset;
}

UIEdgeInsets UIScrollView::safeAreaInsetsForSubviews() const
{
    const UIEdgeInsets own = safeAreaInsets(), adjusted = adjustedContentInset();
    return { own.top - (adjusted.top - contentInset_.top), own.left, own.bottom - (adjusted.bottom - contentInset_.bottom),
        own.right };
}

void UIScrollView::setScrollEnabled(bool enabled)
{
    scrollEnabled = enabled;
    pan->setEnabled(enabled);
}

CGPoint UIScrollView::minimumContentOffset() const
{
    const UIEdgeInsets inset = adjustedContentInset();
    return { -inset.left, -inset.top };
}

CGPoint UIScrollView::maximumContentOffset() const
{
    const UIEdgeInsets inset = adjustedContentInset();
    const CGPoint low = minimumContentOffset();
    return { std::max(low.x, contentSize_.width + inset.right - bounds().width),
        std::max(low.y, contentSize_.height + inset.bottom - bounds().height) };
}

void UIScrollView::scrollRectToVisible(const CGRect& rect, bool animated)
{
    CGPoint offset = contentOffset();
    const CGRect seen = adjustedContentInset().inset(bounds());
    if (rect.minX() < seen.minX() || rect.width > seen.width)
        offset.x += rect.minX() - seen.minX();
    else if (rect.maxX() > seen.maxX())
        offset.x += rect.maxX() - seen.maxX();
    if (rect.minY() < seen.minY() || rect.height > seen.height)
        offset.y += rect.minY() - seen.minY();
    else if (rect.maxY() > seen.maxY())
        offset.y += rect.maxY() - seen.maxY();
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset();
    setContentOffset({ std::clamp(offset.x, low.x, high.x), std::clamp(offset.y, low.y, high.y) }, animated);
}

bool UIScrollView::scrollBy(double dx, double dy)
{
    if (!scrollEnabled || !std::isfinite(dx) || !std::isfinite(dy))
        return false;
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset(), now = contentOffset();
    const CGPoint next { std::clamp(now.x + dx, low.x, high.x), std::clamp(now.y + dy, low.y, high.y) };
    if (next == now)
        return false;
    const auto keep = weak(this).lock();
    stopMotion();
    place(next);
    showIndicators();
    hideIndicatorsSoon();
    return true;
}

void UIScrollView::layoutSubviews()
{
    UIView::layoutSubviews();
    const CGSize laidOut = contentGuide->layoutFrame().size();
    if (!contentGuide->constraintsNaming().empty() || laidOut.width > 0 || laidOut.height > 0)
        setContentSize(laidOut);
}

void UIScrollView::boundsDidChange(const CGRect& previous)
{
    UIView::boundsDidChange(previous);
    if (bounds().size() != previous.size())
        clampOffset();
    else
        contentOffsetDidChange();
}

void UIScrollView::safeAreaInsetsDidChange()
{
    UIView::safeAreaInsetsDidChange();
    if (!dragging && !isDecelerating() && !animation)
        clampOffset();
}

void UIScrollView::didMoveToWindow()
{
    if (window())
        return;
    stopMotion();
    for (auto& indicator : indicators)
        indicator.hide();
}

void UIScrollView::shiftContentOffset(CGPoint by)
{
    dragStart = { dragStart.x + by.x, dragStart.y + by.y };
    for (std::size_t axis = 0; axis < 2; ++axis)
        if (motion[axis])
            motion[axis]->shift(along(by, axis));
    if (animation) {
        animation->from = { animation->from.x + by.x, animation->from.y + by.y };
        animation->to = { animation->to.x + by.x, animation->to.y + by.y };
    }
    place({ contentOffset().x + by.x, contentOffset().y + by.y });
}

bool UIScrollView::canScroll(std::size_t axis) const
{
    return scrollEnabled
        && (along(maximumContentOffset(), axis) > along(minimumContentOffset(), axis) || (bounces_ && alwaysBounce[axis]));
}

bool UIScrollView::panMayBegin(CGPoint way) const
{
    const CGPoint zero = convertFrom(CGPoint {}, nullptr), end = convertFrom(way, nullptr);
    return canScroll(std::abs(end.y - zero.y) >= std::abs(end.x - zero.x) ? 1 : 0);
}

void UIScrollView::panned(UIPanGestureRecognizer& recognizer)
{
    const auto keep = weak(this).lock();
    const auto delegate = delegate_.lock();
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset();
    switch (recognizer.state()) {
    case UIGestureRecognizerState::began: {
        stopMotion();
        dragging = true;
        dragAxes = { canScroll(0), canScroll(1) };
        const CGPoint now = contentOffset();
        dragStart
            = { rubberUnbanded(now.x, low.x, high.x, bounds().width), rubberUnbanded(now.y, low.y, high.y, bounds().height) };
        if (delegate)
            delegate->scrollViewWillBeginDragging(*this);
        break;
    }
    case UIGestureRecognizerState::changed: {
        const CGPoint way = recognizer.translation(this);
        CGPoint next = contentOffset();
        for (std::size_t axis = 0; axis < 2; ++axis) {
            if (!dragAxes[axis])
                continue;
            const double pulled = along(dragStart, axis) - along(way, axis);
            const bool gives = bounces_ && canScroll(axis);
            const double bottom = along(low, axis), top = along(high, axis);
            along(next, axis)
                = gives ? rubberBanded(pulled, bottom, top, along(bounds().size(), axis)) : std::clamp(pulled, bottom, top);
        }
        place(next);
        showIndicators();
        break;
    }
    case UIGestureRecognizerState::ended:
        endDragging(recognizer.velocity(this));
        break;
    default:
        endDragging({});
        break;
    }
}

void UIScrollView::endDragging(CGPoint velocity)
{
    if (!std::exchange(dragging, false))
        return;
    const double now = Clock::current().now();
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset(), here = contentOffset();
    for (std::size_t axis = 0; axis < 2; ++axis) {
        const double value = along(here, axis), bottom = along(low, axis), top = along(high, axis);
        const double speed = dragAxes[axis] ? -along(velocity, axis) : 0;
        if (value < bottom || value > top) {
            const double end = std::clamp(value, bottom, top);
            motion[axis] = ScrollMotion::spring(value, speed, end, now);
        } else if (std::abs(speed) > ScrollMotion::restingVelocity * 4) {
            motion[axis] = ScrollMotion::glide(value, speed, now);
        }
    }
    if (isDecelerating())
        link->start();
    else
        hideIndicatorsSoon();
    if (const auto delegate = delegate_.lock())
        delegate->scrollViewDidEndDragging(*this, isDecelerating());
}

bool UIScrollView::catchMotion()
{
    const bool moved = isDecelerating() || animation;
    stopMotion();
    return moved;
}

void UIScrollView::stopMotion()
{
    if (isDecelerating())
        hideIndicatorsSoon();
    motion = {};
    animation.reset();
    link->stop();
}

void UIScrollView::step(double time)
{
    const auto keep = weak(this).lock();
    if (animation) {
        const double part = std::clamp((time - animation->start) / animationDuration, 0.0, 1.0);
        const double eased = part * part * (3 - 2 * part);
        const CGPoint from = animation->from, to = animation->to;
        if (part >= 1)
            stopMotion();
        place(part >= 1 ? to : CGPoint { from.x + (to.x - from.x) * eased, from.y + (to.y - from.y) * eased });
        const auto delegate = part >= 1 ? delegate_.lock() : nullptr;
        if (delegate)
            delegate->scrollViewDidEndScrollingAnimation(*this);
        return;
    }
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset();
    CGPoint next = contentOffset();
    for (std::size_t axis = 0; axis < 2; ++axis)
        if (motion[axis] && !motion[axis]->step(time, along(low, axis), along(high, axis), bounces_, along(next, axis)))
            motion[axis].reset();
    const bool ended = !isDecelerating();
    place(next);
    if (ended) {
        link->stop();
        hideIndicatorsSoon();
    } else {
        showIndicators();
    }
    const auto delegate = ended ? delegate_.lock() : nullptr;
    if (delegate)
        delegate->scrollViewDidEndDecelerating(*this);
}

void UIScrollView::place(CGPoint offset)
{
    const auto snapped = [pixels = scale()](double value) { return std::round(value * pixels) / pixels; };
    const CGPoint next { snapped(offset.x), snapped(offset.y) };
    if (next == contentOffset())
        return;
    const auto keep = weak(this).lock();
    setBounds({ next.x, next.y, bounds().width, bounds().height });
    if (const auto delegate = delegate_.lock())
        delegate->scrollViewDidScroll(*this);
}

// Content that has become shorter does not leave the view beyond its end.
void UIScrollView::clampOffset()
{
    if (dragging || isDecelerating())
        return;
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset(), now = contentOffset();
    place({ std::clamp(now.x, low.x, high.x), std::clamp(now.y, low.y, high.y) });
}

void UIScrollView::showIndicators()
{
    if (!window())
        return;
    const CGPoint low = minimumContentOffset(), high = maximumContentOffset(), now = contentOffset();
    UIEdgeInsets around = adjustedContentInset();
    around.left = std::max(around.left, safeAreaInsets().left);
    around.right = std::max(around.right, safeAreaInsets().right);
    const CGRect track = around.inset(bounds());
    for (std::size_t axis = 0; axis < 2; ++axis)
        if (showsIndicator[axis] && along(high, axis) > along(low, axis))
            indicators[axis].show(*this, track, { along(low, axis), along(high, axis), along(now, axis) });
}

void UIScrollView::hideIndicatorsSoon()
{
    for (auto& indicator : indicators)
        indicator.hideSoon();
}

double UIScrollView::scale() const { return std::max(1.0, double(traitCollection().displayScale)); }

} // namespace platform
