#pragma once

#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/UIKit/PopoverPlacement.h"
#include "Platform/UIKit/UIView.h"

namespace platform {

// A popover's body and arrow with their shadow. What is shown lies in the content view, cut at the round corners.
class PopoverBubble final : public UIView {
public:
    explicit PopoverBubble(std::shared_ptr<CAShapeLayer> shape = make<CAShapeLayer>());

    void place(const PopoverPlacement& placement); // in the superview's points; it grows and shrinks around the arrow's tip
    void setFill(const std::optional<UIColor>& color); // absent for the usual one
    const std::shared_ptr<UIView>& contentView() const { return contentView_; }

    // UIView
    bool pointInside(CGPoint point, const UIEvent* event) const override; // the shape, not its box

protected:
    // UIView
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void showFill();

    std::shared_ptr<CAShapeLayer> shapeLayer;
    std::shared_ptr<UIView> contentView_ = make<UIView>();
    std::optional<UIColor> fill;
};

} // namespace platform
