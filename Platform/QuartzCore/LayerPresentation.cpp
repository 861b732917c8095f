#include "Platform/QuartzCore/LayerPresentation.h"

#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/QuartzCore/TransformParts.h"

#include <span>

namespace platform {

namespace {

using P = LayerProperty;
using V = ValuePart;

CAValue pointPart(const CGPoint& point, ValuePart part)
{
    switch (part) {
    case V::x:
        return point.x;
    case V::y:
        return point.y;
    default:
        return point;
    }
}

CAValue sizePart(const CGSize& size, ValuePart part)
{
    switch (part) {
    case V::width:
        return size.width;
    case V::height:
        return size.height;
    default:
        return size;
    }
}

CAValue rectPart(const CGRect& rect, ValuePart part)
{
    switch (part) {
    case V::origin:
        return rect.origin();
    case V::size:
        return rect.size();
    case V::x:
    case V::y:
        return pointPart(rect.origin(), part);
    case V::width:
    case V::height:
        return sizePart(rect.size(), part);
    default:
        return rect;
    }
}

CAValue transformPart(const CGAffineTransform& transform, ValuePart part)
{
    const TransformParts parts = TransformParts::of(transform);
    switch (part) {
    case V::rotation:
        return parts.rotation;
    case V::scale:
        return (parts.scaleX + parts.scaleY) / 2; // the mean, as on the platform
    case V::scaleX:
        return parts.scaleX;
    case V::scaleY:
        return parts.scaleY;
    case V::translation:
        return CGSize { parts.translationX, parts.translationY };
    case V::translationX:
        return parts.translationX;
    case V::translationY:
        return parts.translationY;
    default:
        return transform;
    }
}

template <typename T> CAValue optionalValue(const std::optional<T>& value) { return value ? CAValue { *value } : CAValue {}; }

template <typename T> CAValue pointerValue(const std::shared_ptr<T>& value) { return value ? CAValue { value } : CAValue {}; }

CAValue readGradient(const GradientValues& gradient, AnimationKeyPath keyPath)
{
    switch (keyPath.property) {
    case P::colors:
        return gradient.colors;
    case P::locations:
        return gradient.locations;
    case P::startPoint:
        return pointPart(gradient.startPoint, keyPath.part);
    case P::endPoint:
        return pointPart(gradient.endPoint, keyPath.part);
    default:
        return {};
    }
}

CAValue readShape(const ShapeValues& shape, AnimationKeyPath keyPath)
{
    switch (keyPath.property) {
    case P::path:
        return pointerValue(shape.path);
    case P::fillColor:
        return optionalValue(shape.fillColor);
    case P::strokeColor:
        return optionalValue(shape.strokeColor);
    case P::lineWidth:
        return shape.lineWidth;
    case P::strokeStart:
        return shape.strokeStart;
    case P::strokeEnd:
        return shape.strokeEnd;
    default:
        return {};
    }
}

using Numbers = std::span<const double>;

CGColor colorOf(Numbers n) { return { n[0], n[1], n[2], n[3] }; }

void writePoint(CGPoint& point, ValuePart part, Numbers n)
{
    if (part == V::x)
        point.x = n[0];
    else if (part == V::y)
        point.y = n[0];
    else
        point = { n[0], n[1] };
}

void writeSize(CGSize& size, ValuePart part, Numbers n)
{
    if (part == V::width)
        size.width = n[0];
    else if (part == V::height)
        size.height = n[0];
    else
        size = { n[0], n[1] };
}

void writeRect(CGRect& rect, ValuePart part, Numbers n)
{
    CGPoint origin = rect.origin();
    CGSize size = rect.size();
    switch (part) {
    case V::origin:
    case V::x:
    case V::y:
        writePoint(origin, part, n);
        break;
    case V::size:
    case V::width:
    case V::height:
        writeSize(size, part, n);
        break;
    default:
        origin = { n[0], n[1] };
        size = { n[2], n[3] };
    }
    rect = { origin.x, origin.y, size.width, size.height };
}

void writeTransform(CGAffineTransform& transform, ValuePart part, Numbers n)
{
    if (part == V::whole) {
        transform = TransformParts { n[0], n[1], n[2], n[3], n[4], n[5] }.compose();
        return;
    }
    TransformParts parts = TransformParts::of(transform);
    switch (part) {
    case V::rotation:
        parts.rotation = n[0];
        break;
    case V::scale:
        parts.scaleX = parts.scaleY = n[0];
        break;
    case V::scaleX:
        parts.scaleX = n[0];
        break;
    case V::scaleY:
        parts.scaleY = n[0];
        break;
    case V::translation:
        parts.translationX = n[0];
        parts.translationY = n[1];
        break;
    case V::translationX:
        parts.translationX = n[0];
        break;
    default:
        parts.translationY = n[0];
    }
    transform = parts.compose();
}

} // namespace

LayerPresentation::LayerPresentation(const CALayer& model)
    : kind(model.kind())
    , layer(model.values())
{
    if (kind == CALayer::Kind::gradient)
        gradient = static_cast<const CAGradientLayer&>(model).gradientValues();
    else if (kind == CALayer::Kind::shape)
        shape = static_cast<const CAShapeLayer&>(model).shapeValues();
}

CAValue LayerPresentation::value(AnimationKeyPath keyPath) const
{
    const LayerValues& v = layer;
    switch (keyPath.property) {
    case P::anchorPoint:
        return pointPart(v.anchorPoint, keyPath.part);
    case P::backdropBlurRadius:
        return v.backdropBlurRadius;
    case P::backgroundColor:
        return optionalValue(v.backgroundColor);
    case P::borderColor:
        return optionalValue(v.borderColor);
    case P::borderWidth:
        return v.borderWidth;
    case P::bounds:
        return rectPart(v.bounds, keyPath.part);
    case P::contents:
        return pointerValue(v.contents);
    case P::contentsTint:
        return optionalValue(v.contentsTint);
    case P::cornerRadius:
        return v.cornerRadius;
    case P::opacity:
        return v.opacity;
    case P::position:
        return pointPart(v.position, keyPath.part);
    case P::shadowColor:
        return v.shadowColor;
    case P::shadowOffset:
        return sizePart(v.shadowOffset, keyPath.part);
    case P::shadowOpacity:
        return v.shadowOpacity;
    case P::shadowPath:
        return pointerValue(v.shadowPath);
    case P::shadowRadius:
        return v.shadowRadius;
    case P::sublayerTransform:
        return v.sublayerTransform;
    case P::transform:
        return transformPart(v.transform, keyPath.part);
    case P::zPosition:
        return v.zPosition;
    default:
        break;
    }
    if (kind == CALayer::Kind::gradient)
        return readGradient(gradient, keyPath);
    return kind == CALayer::Kind::shape ? readShape(shape, keyPath) : CAValue {};
}

void LayerPresentation::setNumbers(AnimationKeyPath keyPath, const std::vector<double>& numbers)
{
    const Numbers n = numbers;
    if (n.size() < keyPath.numberCount())
        return;
    LayerValues& v = layer;
    switch (keyPath.property) {
    case P::anchorPoint:
        return writePoint(v.anchorPoint, keyPath.part, n);
    case P::backdropBlurRadius:
        v.backdropBlurRadius = n[0];
        return;
    case P::backgroundColor:
        v.backgroundColor = colorOf(n);
        return;
    case P::borderColor:
        v.borderColor = colorOf(n);
        return;
    case P::borderWidth:
        v.borderWidth = n[0];
        return;
    case P::bounds:
        return writeRect(v.bounds, keyPath.part, n);
    case P::colors:
        gradient.colors.clear();
        for (std::size_t i = 0; i + 4 <= n.size(); i += 4)
            gradient.colors.push_back(colorOf(n.subspan(i)));
        return;
    case P::contentsTint:
        v.contentsTint = colorOf(n);
        return;
    case P::cornerRadius:
        v.cornerRadius = n[0];
        return;
    case P::endPoint:
        return writePoint(gradient.endPoint, keyPath.part, n);
    case P::fillColor:
        shape.fillColor = colorOf(n);
        return;
    case P::lineWidth:
        shape.lineWidth = n[0];
        return;
    case P::locations:
        gradient.locations = numbers;
        return;
    case P::opacity:
        v.opacity = n[0];
        return;
    case P::position:
        return writePoint(v.position, keyPath.part, n);
    case P::shadowColor:
        v.shadowColor = colorOf(n);
        return;
    case P::shadowOffset:
        return writeSize(v.shadowOffset, keyPath.part, n);
    case P::shadowOpacity:
        v.shadowOpacity = n[0];
        return;
    case P::shadowRadius:
        v.shadowRadius = n[0];
        return;
    case P::startPoint:
        return writePoint(gradient.startPoint, keyPath.part, n);
    case P::strokeColor:
        shape.strokeColor = colorOf(n);
        return;
    case P::strokeEnd:
        shape.strokeEnd = n[0];
        return;
    case P::strokeStart:
        shape.strokeStart = n[0];
        return;
    case P::sublayerTransform:
        return writeTransform(v.sublayerTransform, keyPath.part, n);
    case P::transform:
        return writeTransform(v.transform, keyPath.part, n);
    case P::zPosition:
        v.zPosition = n[0];
        return;
    case P::contents:
    case P::path:
    case P::shadowPath:
        return; // no numbers
    }
}

} // namespace platform
