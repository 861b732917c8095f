#include "Platform/UIKit/UIView.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ClassName.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIGestureRecognizer.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIViewController.h"

#include <algorithm>

namespace platform {

namespace {

CALayerContentsGravity gravityOf(UIViewContentMode mode)
{
    using Mode = UIViewContentMode;
    using Gravity = CALayerContentsGravity;
    switch (mode) {
    case Mode::scaleAspectFit:
        return Gravity::resizeAspect;
    case Mode::scaleAspectFill:
        return Gravity::resizeAspectFill;
    case Mode::center:
        return Gravity::center;
    case Mode::top:
        return Gravity::top;
    case Mode::bottom:
        return Gravity::bottom;
    case Mode::left:
        return Gravity::left;
    case Mode::right:
        return Gravity::right;
    case Mode::topLeft:
        return Gravity::topLeft;
    case Mode::topRight:
        return Gravity::topRight;
    case Mode::bottomLeft:
        return Gravity::bottomLeft;
    case Mode::bottomRight:
        return Gravity::bottomRight;
    case Mode::scaleToFill:
    case Mode::redraw:
        break;
    }
    return Gravity::resize;
}

// The bounding box of a rectangle whose corners are moved by a function.
template <typename Move> CGRect boxOf(const CGRect& rect, const Move& move)
{
    const CGPoint corners[] = { move(CGPoint { rect.minX(), rect.minY() }), move(CGPoint { rect.maxX(), rect.minY() }),
        move(CGPoint { rect.minX(), rect.maxY() }), move(CGPoint { rect.maxX(), rect.maxY() }) };
    const auto [left, right] = std::ranges::minmax(corners, {}, &CGPoint::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &CGPoint::y);
    return { left.x, top.y, right.x - left.x, bottom.y - top.y };
}

} // namespace

UIView::UIView(const CGRect& frame, std::shared_ptr<CALayer> layer)
    : layer_(layer ? std::move(layer) : make<CALayer>())
    , traits(UIScreen::main().sharedTraits())
{
    layer_->setFrame(frame);
    layer_->setDelegate(this);
}

UIView::~UIView()
{
    layer_->setDelegate(nullptr);
    layer_->removeFromSuperlayer();
    for (const auto& recognizer : gestureRecognizers_)
        recognizer->view_ = nullptr;
    ownLayoutRoot.reset();
    ConstraintKeeper::holderEnds(*this);
    ConstraintKeeper::itemEnds(*this);
    for (const auto& guide : layoutGuides)
        guide->owner = nullptr;
    if (safeAreaGuide)
        safeAreaGuide->owner = nullptr;
    for (const auto& child : subviews_) {
        child->superview_ = nullptr;
        child->layer_->removeFromSuperlayer();
    }
}

void UIView::setFrame(const CGRect& frame)
{
    const CGRect previousBounds = bounds();
    const CGPoint previousCenter = center();
    layer_->setFrame(frame);
    geometryChanged(previousBounds, previousCenter);
}

void UIView::setBounds(const CGRect& bounds)
{
    const CGRect previousBounds = this->bounds();
    layer_->setBounds(bounds);
    geometryChanged(previousBounds, center());
}

void UIView::setCenter(CGPoint center)
{
    const CGPoint previousCenter = this->center();
    layer_->setPosition(center);
    geometryChanged(bounds(), previousCenter);
}

CGPoint UIView::convertTo(CGPoint point, const UIView* other) const
{
    return layer_->convertTo(point, other ? other->layer_.get() : nullptr);
}

CGPoint UIView::convertFrom(CGPoint point, const UIView* other) const
{
    if (other)
        return other->convertTo(point, this);
    const UIView* top = this;
    while (top->superview_)
        top = top->superview_;
    return top->convertTo(point, this);
}

CGRect UIView::convertTo(const CGRect& rect, const UIView* other) const
{
    return boxOf(rect, [&](CGPoint corner) { return convertTo(corner, other); });
}

CGRect UIView::convertFrom(const CGRect& rect, const UIView* other) const
{
    return boxOf(rect, [&](CGPoint corner) { return convertFrom(corner, other); });
}

void UIView::setAlpha(CGFloat alpha) { layer_->setOpacity(alpha); }

void UIView::setHidden(bool hidden)
{
    if (hidden == isHidden())
        return;
    layer_->setHidden(hidden);
    if (superview_)
        superview_->subviewHiddenDidChange(*this);
}

void UIView::setBackgroundColor(std::optional<UIColor> color)
{
    backgroundColor_ = std::move(color);
    resolveColors();
}

void UIView::setContentMode(UIViewContentMode mode)
{
    contentMode_ = mode;
    layer_->setContentsGravity(gravityOf(mode));
}

UIColor UIView::tintColor() const
{
    for (const UIView* view = this; view; view = view->superview_)
        if (view->tintColor_)
            return *view->tintColor_;
    return UIColor::systemBlue();
}

void UIView::setTintColor(std::optional<UIColor> color)
{
    const auto keep = weak(this).lock();
    const UIColor before = tintColor();
    tintColor_ = std::move(color);
    if (!(tintColor() == before))
        tintChangedInTree();
}

void UIView::tintChangedInTree()
{
    tintColorDidChange();
    const auto children = subviews_;
    for (const auto& child : children)
        if (!child->tintColor_ && child->superview_ == this)
            child->tintChangedInTree();
}

void UIView::setNeedsDisplay() { layer_->setNeedsDisplay(); }

UIResponder* UIView::nextResponder() const
{
    if (viewController_)
        return viewController_;
    return superview_;
}

std::string UIView::layoutName() const { return accessibilityIdentifier_.empty() ? className(*this) : accessibilityIdentifier_; }

void UIView::drawLayer(CALayer& /*layer*/, CGContext& context)
{
    traits->performAsCurrent([&] { draw(bounds(), context); });
}

void UIView::geometryChanged(const CGRect& previousBounds, CGPoint previousCenter)
{
    const CGRect now = bounds();
    const bool resized = now.size() != previousBounds.size();
    const bool scrolled = now.origin() != previousBounds.origin();
    if (!resized && !scrolled && center() == previousCenter)
        return;
    const auto keep = weak(this).lock();
    if (LayoutRoot* around = superview_ && translatesAutoresizingMask ? superview_->layoutRoot() : nullptr)
        around->frameChanged(*this);
    if (resized) {
        if (ownLayoutRoot)
            ownLayoutRoot->rootSizeChanged();
        setNeedsLayout();
        if (autoresizesSubviews_ && !subviews_.empty()) {
            const auto children = subviews_;
            for (const auto& child : children)
                if (child->translatesAutoresizingMask && child->superview_ == this)
                    child->autoresize(previousBounds.size(), now.size());
        }
    }
    updateSafeArea();
    if (resized || scrolled) {
        if (safeAreaInsetsForSubviews() != UIEdgeInsets {}) {
            const auto children = subviews_;
            for (const auto& child : children)
                child->updateSafeArea();
        }
        boundsDidChange(previousBounds);
    }
}

// The difference goes to the flexible parts in proportion to their sizes, evenly when they have none.
UIView::AutoresizingShare UIView::autoresizingShare(NSLayoutConstraintAxis axis, double origin, double size, double around) const
{
    const bool horizontal = axis == NSLayoutConstraintAxis::horizontal;
    const bool before = autoresizingMask_ & (horizontal ? flexibleLeftMargin : flexibleTopMargin);
    const bool inside = autoresizingMask_ & (horizontal ? flexibleWidth : flexibleHeight);
    const bool after = autoresizingMask_ & (horizontal ? flexibleRightMargin : flexibleBottomMargin);
    if (!before && !inside)
        return {};
    const double total = (before ? origin : 0) + (inside ? size : 0) + (after ? around - origin - size : 0);
    const double even = 1.0 / (before + inside + after);
    const auto part = [&](bool flexible, double length) { return !flexible ? 0 : total > 0 ? length / total : even; };
    return { part(before, origin), part(inside, size) };
}

void UIView::autoresize(const CGSize& before, const CGSize& after)
{
    CGRect frame = untransformedFrame();
    const auto x = autoresizingShare(NSLayoutConstraintAxis::horizontal, frame.x, frame.width, before.width);
    const auto y = autoresizingShare(NSLayoutConstraintAxis::vertical, frame.y, frame.height, before.height);
    const double wider = after.width - before.width, higher = after.height - before.height;
    frame = { frame.x + x.origin * wider, frame.y + y.origin * higher, std::max(0.0, frame.width + x.size * wider),
        std::max(0.0, frame.height + y.size * higher) };
    placeByLayout(frame);
}

std::shared_ptr<UILayoutGuide> UIView::safeAreaLayoutGuide()
{
    if (!safeAreaGuide) {
        safeAreaGuide = make<UILayoutGuide>(UILayoutGuide::Role::safeArea);
        safeAreaGuide->owner = this;
    }
    return safeAreaGuide;
}

UIEdgeInsets UIView::inheritedSafeAreaInsets() const
{
    const UIEdgeInsets around = superview_ ? superview_->safeAreaInsetsForSubviews() : UIEdgeInsets {};
    if (around == UIEdgeInsets {})
        return {};
    const CGRect own = frame();
    const CGRect safe = around.inset(superview_->bounds());
    const auto reach = [](double distance, double limit) { return std::clamp(distance, 0.0, std::max(limit, 0.0)); };
    UIEdgeInsets insets { reach(safe.minY() - own.minY(), own.height), reach(safe.minX() - own.minX(), own.width),
        reach(own.maxY() - safe.maxY(), own.height), reach(own.maxX() - safe.maxX(), own.width) };
    // A mirrored view has its own edges on the other side.
    if (transform().d < 0)
        std::swap(insets.top, insets.bottom);
    if (transform().a < 0)
        std::swap(insets.left, insets.right);
    return insets;
}

void UIView::updateSafeArea()
{
    const UIEdgeInsets insets = inheritedSafeAreaInsets();
    if (insets == safeAreaInsets_)
        return;
    const auto keep = weak(this).lock();
    safeAreaInsets_ = insets;
    if (LayoutRoot* root = safeAreaGuide ? layoutRoot() : nullptr)
        root->edgesChanged(*safeAreaGuide);
    setNeedsLayout();
    safeAreaInsetsDidChange();
    if (viewController_)
        viewController_->viewSafeAreaInsetsDidChange();
    updateSafeAreaOfSubviews();
}

void UIView::updateSafeAreaOfSubviews()
{
    const auto children = subviews_;
    for (const auto& child : children)
        child->updateSafeArea();
}

CGRect UIView::untransformedFrame() const
{
    const CGSize size = bounds().size();
    const CGPoint anchor = layer_->anchorPoint(), position = center();
    return { position.x - anchor.x * size.width, position.y - anchor.y * size.height, size.width, size.height };
}

void UIView::placeByLayout(const CGRect& frame)
{
    const CGRect previousBounds = bounds();
    const CGPoint previousCenter = center(), anchor = layer_->anchorPoint();
    layer_->setBounds({ previousBounds.x, previousBounds.y, frame.width, frame.height });
    layer_->setPosition({ frame.x + anchor.x * frame.width, frame.y + anchor.y * frame.height });
    geometryChanged(previousBounds, previousCenter);
}

} // namespace platform
