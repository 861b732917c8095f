#include "Platform/UIKit/PopoverBubble.h"

namespace platform {

namespace {

constexpr double shadowOpacity = 0.18;
constexpr CGFloat shadowRadius = 12; // points
constexpr CGFloat shadowDrop = 4;

// Opaque: nothing of a picture below would show through, and one that moves would have to be blurred anew for every frame.
UIColor usualFill(const UITraitCollection& traits) { return UIColor::white(traits.isDark() ? 0.145 : 0.97, 1); }

} // namespace

PopoverBubble::PopoverBubble(std::shared_ptr<CAShapeLayer> shape)
    : UIView({}, shape)
    , shapeLayer(std::move(shape))
{
    setAccessibilityIdentifier("popover");
    contentView_->setAccessibilityIdentifier("contentView");
    contentView_->setClipsToBounds(true);
    addSubview(contentView_);
    shapeLayer->setShadowColor(UIColor::black().cgColor());
    shapeLayer->setShadowOpacity(shadowOpacity);
    shapeLayer->setShadowRadius(shadowRadius);
    shapeLayer->setShadowOffset({ 0, shadowDrop });
    showFill();
}

void PopoverBubble::place(const PopoverPlacement& placement)
{
    const CGRect box = placement.bounds();
    const auto share = [](CGFloat offset, CGFloat length) { return length > 0 ? offset / length : 0.5; };
    setBounds({ 0, 0, box.width, box.height });
    layer()->setAnchorPoint({ share(placement.tip.x - box.x, box.width), share(placement.tip.y - box.y, box.height) });
    setCenter(placement.tip);
    contentView_->setFrame(placement.body.offsetBy(-box.x, -box.y));
    contentView_->layer()->setCornerRadius(placement.cornerRadius);
    const auto outline = placement.outline();
    shapeLayer->setPath(outline);
    shapeLayer->setShadowPath(outline);
}

void PopoverBubble::setFill(const std::optional<UIColor>& color)
{
    fill = color;
    showFill();
}

bool PopoverBubble::pointInside(CGPoint point, const UIEvent* /*event*/) const
{
    return shapeLayer->path() && shapeLayer->path()->contains(point);
}

void PopoverBubble::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    showFill();
}

void PopoverBubble::showFill()
{
    const UITraitCollection& traits = traitCollection();
    shapeLayer->setFillColor((fill ? *fill : usualFill(traits)).cgColor(traits));
}

} // namespace platform
