#pragma once

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/QuartzCore/CALayer.h"

namespace platform {

// A path, filled and stroked in its bounds' coordinates.
class CAShapeLayer final : public CALayer {
public:
    const std::shared_ptr<const CGPath>& path() const { return path_; }
    void setPath(std::shared_ptr<const CGPath> path);
    const std::optional<CGColor>& fillColor() const { return fillColor_; } // opaque black at first
    void setFillColor(std::optional<CGColor> color);
    const std::optional<CGColor>& strokeColor() const { return strokeColor_; }
    void setStrokeColor(std::optional<CGColor> color);
    CGFloat lineWidth() const { return lineWidth_; }
    void setLineWidth(CGFloat width);
    CGLineCap lineCap() const { return lineCap_; }
    void setLineCap(CGLineCap cap);
    CGLineJoin lineJoin() const { return lineJoin_; }
    void setLineJoin(CGLineJoin join);
    double strokeStart() const { return strokeStart_; } // 0 to 1 of the path's length
    void setStrokeStart(double start);
    double strokeEnd() const { return strokeEnd_; }
    void setStrokeEnd(double end);
    CAValue modelValue(std::string_view keyPath) const override;

private:
    std::shared_ptr<const CGPath> path_;
    std::optional<CGColor> fillColor_ = CGColor { 0, 0, 0, 1 };
    std::optional<CGColor> strokeColor_;
    CGFloat lineWidth_ = 1;
    CGLineCap lineCap_ = CGLineCap::butt;
    CGLineJoin lineJoin_ = CGLineJoin::miter;
    double strokeStart_ = 0;
    double strokeEnd_ = 1;
};

} // namespace platform
