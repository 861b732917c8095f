#include "Platform/QuartzCore/LayerLook.h"

#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double miterLimit = 10; // the platform's and the drawing library's

} // namespace

const GradientValues& LayerLook::gradient() const
{
    return moment ? moment->gradient : static_cast<const CAGradientLayer&>(layer).gradientValues();
}

const ShapeValues& LayerLook::shape() const
{
    return moment ? moment->shape : static_cast<const CAShapeLayer&>(layer).shapeValues();
}

double LayerLook::cornerRadius() const
{
    return std::clamp(values.cornerRadius, 0.0, std::max(std::min(values.bounds.width, values.bounds.height) / 2, 0.0));
}

bool LayerLook::castsShadow() const
{
    return values.shadowOpacity > 0 && !values.shadowColor.isClear() && !layer.masksToBounds();
}

bool LayerLook::isOpaqueBox() const
{
    if (values.backgroundColor && values.backgroundColor->isOpaque())
        return true;
    if (layer.kind() != CALayer::Kind::gradient)
        return false;
    const auto& colors = gradient().colors;
    return !colors.empty() && std::ranges::all_of(colors, &CGColor::isOpaque);
}

CGRect LayerLook::shapeArea() const
{
    const auto& stroke = shape().strokeColor;
    const auto join = static_cast<const CAShapeLayer&>(layer).lineJoin();
    const double half = stroke && !stroke->isClear() ? std::max(shape().lineWidth, 0.0) / 2 : 0;
    return grown(shape().path->boundingBox(), half * (join == CGLineJoin::miter ? miterLimit : 1.5)); // 1.5: square caps
}

CGRect LayerLook::ownArea() const
{
    return layer.kind() == CALayer::Kind::shape && shape().path ? values.bounds.unionWith(shapeArea()) : values.bounds;
}

CGRect LayerLook::contentsRect(const CGImage& image, double pixelsPerPoint, double screenScale) const
{
    using Gravity = CALayerContentsGravity;
    const CGRect& box = values.bounds;
    const Gravity gravity = layer.contentsGravity();
    CGSize size { image.width() / pixelsPerPoint, image.height() / pixelsPerPoint };
    if (gravity == Gravity::resize || size.isEmpty())
        return box;
    if (gravity == Gravity::resizeAspect || gravity == Gravity::resizeAspectFill) {
        const double across = box.width / size.width, down = box.height / size.height;
        const double factor = gravity == Gravity::resizeAspect ? std::min(across, down) : std::max(across, down);
        size = { size.width * factor, size.height * factor };
    }
    // 0 at the left or top, 1 at the right or bottom.
    double across = 0.5, down = 0.5;
    if (gravity == Gravity::left || gravity == Gravity::topLeft || gravity == Gravity::bottomLeft)
        across = 0;
    else if (gravity == Gravity::right || gravity == Gravity::topRight || gravity == Gravity::bottomRight)
        across = 1;
    if (gravity == Gravity::top || gravity == Gravity::topLeft || gravity == Gravity::topRight)
        down = 0;
    else if (gravity == Gravity::bottom || gravity == Gravity::bottomLeft || gravity == Gravity::bottomRight)
        down = 1;
    CGRect rect { box.x + (box.width - size.width) * across, box.y + (box.height - size.height) * down, size.width, size.height };
    if (gravity != Gravity::resizeAspect && gravity != Gravity::resizeAspectFill) { // unscaled: keep its pixels whole
        rect.x = box.x + std::round((rect.x - box.x) * screenScale) / screenScale;
        rect.y = box.y + std::round((rect.y - box.y) * screenScale) / screenScale;
    }
    return rect;
}

} // namespace platform
