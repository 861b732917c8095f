#pragma once

#include "Platform/QuartzCore/CADisplayLink.h"
#include "Platform/UIKit/ScrollIndicator.h"
#include "Platform/UIKit/ScrollMotion.h"
#include "Platform/UIKit/UIView.h"

#include <array>

namespace platform {

class UIPanGestureRecognizer;
class UIScrollView;

// Told what the viewer does to a scroll view. Every call may end the scroll view.
class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView& /*scrollView*/) { }
    virtual void scrollViewWillBeginDragging(UIScrollView& /*scrollView*/) { }
    virtual void scrollViewDidEndDragging(UIScrollView& /*scrollView*/, bool /*willDecelerate*/) { }
    virtual void scrollViewDidEndDecelerating(UIScrollView& /*scrollView*/) { }
    virtual void scrollViewDidEndScrollingAnimation(UIScrollView& /*scrollView*/) { }
};

enum class UIScrollViewContentInsetAdjustmentBehavior : unsigned char { automatic, never };

// Shows a part of a content that is larger than itself: contentOffset is the content's point at the upper left corner, and the
// origin of the bounds. Follows a finger, glides on when it is let go, gives way like rubber beyond the ends. Constraints between
// its edges and what is inside it give the content's size. At rest it costs nothing. Points; main thread.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(const CGRect& frame = {});
    ~UIScrollView() override;

    virtual CGPoint contentOffset() const { return bounds().origin(); }
    // Anywhere, also beyond the ends; ends a motion under way. Snaps to device pixels; what is not a number changes nothing,
    // after a console line. Animated it takes 0.3 s.
    virtual void setContentOffset(CGPoint offset, bool animated = false);
    CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size); // what is negative or not a number counts as 0; an offset beyond the end moves to it
    const UIEdgeInsets& contentInset() const { return contentInset_; }
    void setContentInset(const UIEdgeInsets& inset);
    // With the safe area above and below, if the content scrolls that way and the behaviour is automatic.
    UIEdgeInsets adjustedContentInset() const;
    void setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior);

    bool isScrollEnabled() const { return scrollEnabled; }
    virtual void setScrollEnabled(bool enabled); // of the finger and the wheel; the offset can still be set
    bool bounces() const { return bounces_; }
    void setBounces(bool bounces) { bounces_ = bounces; }
    // Along that axis also when the content fits.
    void setAlwaysBounceVertical(bool always) { alwaysBounce[1] = always; }
    void setAlwaysBounceHorizontal(bool always) { alwaysBounce[0] = always; }
    // A thin bar at the side while it moves, where the content is longer than the view.
    void setShowsVerticalScrollIndicator(bool shows) { showsIndicator[1] = shows; }
    void setShowsHorizontalScrollIndicator(bool shows) { showsIndicator[0] = shows; }
    bool delaysContentTouches() const { return delaysContentTouches_; }
    // What lies inside hears of a touch only when it is sure not to scroll: after 0.15 s, or when it goes up before.
    void setDelaysContentTouches(bool delays) { delaysContentTouches_ = delays; }
    bool isDragging() const { return dragging; }
    bool isDecelerating() const { return bool(motion[0]) || bool(motion[1]); }
    void setDelegate(std::weak_ptr<UIScrollViewDelegate> delegate) { delegate_ = std::move(delegate); }
    const std::shared_ptr<UIPanGestureRecognizer>& panGestureRecognizer() const { return pan; }

    void scrollRectToVisible(const CGRect& rect, bool animated); // by the shortest way
    // A wheel's or trackpad's step in points, as far as the ends. False when it cannot scroll that way, so that one around it
    // may.
    bool scrollBy(double dx, double dy);

    // The offsets between which the content fills the view.
    CGPoint minimumContentOffset() const;
    CGPoint maximumContentOffset() const;

protected:
    virtual void contentOffsetDidChange() { }
    // UIView
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void safeAreaInsetsDidChange() override;
    const UILayoutItem* contentLayoutItem() const override { return contentGuide.get(); }
    UIEdgeInsets safeAreaInsetsForSubviews() const override;
    void didMoveToWindow() override;
    // Moves what is shown by so much without ending a motion: for content that grows or shrinks before what is seen.
    void shiftContentOffset(CGPoint by);

private:
    class Pan;
    struct Glide {
        CGPoint from, to;
        double start = 0;
    };

    bool canScroll(std::size_t axis) const;
    bool panMayBegin(CGPoint way) const;
    void panned(UIPanGestureRecognizer& recognizer);
    void endDragging(CGPoint velocity);
    bool catchMotion(); // at the touch of a finger; false when nothing moved
    void stopMotion();
    void step(double time);
    void place(CGPoint offset);
    void clampOffset();
    void showIndicators();
    void hideIndicatorsSoon();
    double scale() const;

    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    std::weak_ptr<UIScrollViewDelegate> delegate_;
    std::shared_ptr<UILayoutGuide> contentGuide;
    std::shared_ptr<UIPanGestureRecognizer> pan;
    std::shared_ptr<CADisplayLink> link;
    std::array<std::optional<ScrollMotion>, 2> motion;
    std::optional<Glide> animation;
    CGPoint dragStart; // the offset, without the rubber's give, at the beginning of the drag
    std::array<ScrollIndicator, 2> indicators { ScrollIndicator(false), ScrollIndicator(true) };
    std::array<bool, 2> showsIndicator { true, true };
    std::array<bool, 2> alwaysBounce { false, false };
    std::array<bool, 2> dragAxes { false, false };
    UIScrollViewContentInsetAdjustmentBehavior insetBehavior = UIScrollViewContentInsetAdjustmentBehavior::automatic;
    bool scrollEnabled = true;
    bool bounces_ = true;
    bool delaysContentTouches_ = true;
    bool dragging = false;
};

} // namespace platform
