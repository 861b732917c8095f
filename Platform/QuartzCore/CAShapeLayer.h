#pragma once

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/QuartzCore/CALayer.h"

namespace platform {

// A path, filled and stroked in its bounds' coordinates.
class CAShapeLayer final : public CALayer {
public:
    CAShapeLayer();

    const std::shared_ptr<const CGPath>& path() const { return shape.path; }
    void setPath(std::shared_ptr<const CGPath> path);
    const std::optional<CGColor>& fillColor() const { return shape.fillColor; } // opaque black at first
    void setFillColor(std::optional<CGColor> color);
    const std::optional<CGColor>& strokeColor() const { return shape.strokeColor; }
    void setStrokeColor(std::optional<CGColor> color);
    CGFloat lineWidth() const { return shape.lineWidth; }
    void setLineWidth(CGFloat width);
    CGLineCap lineCap() const { return lineCap_; }
    void setLineCap(CGLineCap cap);
    CGLineJoin lineJoin() const { return lineJoin_; }
    void setLineJoin(CGLineJoin join);
    double strokeStart() const { return shape.strokeStart; } // 0 to 1 of the path's length
    void setStrokeStart(double start);
    double strokeEnd() const { return shape.strokeEnd; }
    void setStrokeEnd(double end);
    const ShapeValues& shapeValues() const { return shape; }

private:
    ShapeValues shape;
    CGLineCap lineCap_ = CGLineCap::butt;
    CGLineJoin lineJoin_ = CGLineJoin::miter;
};

} // namespace platform
