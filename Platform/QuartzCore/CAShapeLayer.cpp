#include "Platform/QuartzCore/CAShapeLayer.h"

#include <algorithm>

namespace platform {

CAShapeLayer::CAShapeLayer()
    : CALayer(Kind::shape)
{
}

void CAShapeLayer::setPath(std::shared_ptr<const CGPath> path) { changePath(shape.path, path, "path"); }

void CAShapeLayer::setFillColor(std::optional<CGColor> color) { change(shape.fillColor, color, "fillColor"); }

void CAShapeLayer::setStrokeColor(std::optional<CGColor> color) { change(shape.strokeColor, color, "strokeColor"); }

void CAShapeLayer::setLineWidth(CGFloat width) { change(shape.lineWidth, std::max(width, 0.0), "lineWidth"); }

void CAShapeLayer::setLineCap(CGLineCap cap)
{
    if (lineCap_ == cap)
        return;
    lineCap_ = cap;
    didChange();
}

void CAShapeLayer::setLineJoin(CGLineJoin join)
{
    if (lineJoin_ == join)
        return;
    lineJoin_ = join;
    didChange();
}

void CAShapeLayer::setStrokeStart(double start) { change(shape.strokeStart, std::clamp(start, 0.0, 1.0), "strokeStart"); }

void CAShapeLayer::setStrokeEnd(double end) { change(shape.strokeEnd, std::clamp(end, 0.0, 1.0), "strokeEnd"); }

} // namespace platform
