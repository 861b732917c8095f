#pragma once

#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// A turning circle whose visible arc grows and shrinks. Hidden and still until it is started. Lengths are points.
class MVLoader : public UIView {
public:
    explicit MVLoader(const CGRect& frame = {}); // light grey
    explicit MVLoader(CGFloat radius, const UIColor& color = UIColor::gray());

    bool isAnimating() const { return animating; }
    CGFloat radius() const { return radius_; } // half a stroke beyond the drawn ring's outer edge
    void setRadius(CGFloat radius) { radius_ = radius; } // drawn from the next layout on
    const UIColor& color() const { return color_; }
    void setColor(const UIColor& color);
    CGFloat lineWidth() const { return lineWidth_; }
    void setLineWidth(CGFloat width);
    const std::shared_ptr<CAShapeLayer>& drawableLayer() const { return drawableLayer_; }

    void startAnimating(); // from the beginning of the cycle; nothing while it runs
    void stopAnimating();
    // Replaces whatever runs on that layer by the loader's endless turn and stroke. The size plays no part.
    void setupAnimation(CALayer& layer, CGSize size);

protected:
    // UIView
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void setUp();
    void updatePath();

    bool animating = false;
    CGFloat radius_ = 18;
    const std::shared_ptr<CAShapeLayer> drawableLayer_;
    UIColor color_;
    CGFloat lineWidth_ = 3;
};

} // namespace mv
