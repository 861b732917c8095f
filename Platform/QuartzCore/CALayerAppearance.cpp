#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/UsableNumbers.h"

#include <algorithm>

namespace platform {

void CALayer::setHidden(bool hidden)
{
    if (hidden_ == hidden)
        return;
    hidden_ = hidden;
    didChange();
}

void CALayer::setOpacity(double opacity)
{
    if (areUsable("opacity", { opacity }))
        change(values_.opacity, std::clamp(opacity, 0.0, 1.0), "opacity");
}

void CALayer::setBackgroundColor(std::optional<CGColor> color) { change(values_.backgroundColor, color, "backgroundColor"); }

void CALayer::setCornerRadius(CGFloat radius)
{
    if (areUsable("corner radius", { radius }))
        change(values_.cornerRadius, std::max(radius, 0.0), "cornerRadius");
}

void CALayer::setMaskedCorners(unsigned char corners)
{
    if (maskedCorners_ == corners)
        return;
    maskedCorners_ = corners;
    didChange();
}

void CALayer::setBorderWidth(CGFloat width)
{
    if (areUsable("border width", { width }))
        change(values_.borderWidth, std::max(width, 0.0), "borderWidth");
}

void CALayer::setBorderColor(std::optional<CGColor> color) { change(values_.borderColor, color, "borderColor"); }

void CALayer::setMasksToBounds(bool masks)
{
    if (masksToBounds_ == masks)
        return;
    masksToBounds_ = masks;
    didChange();
}

void CALayer::setShadowColor(const CGColor& color) { change(values_.shadowColor, color, "shadowColor"); }

void CALayer::setShadowOpacity(double opacity)
{
    if (areUsable("shadow opacity", { opacity }))
        change(values_.shadowOpacity, std::clamp(opacity, 0.0, 1.0), "shadowOpacity");
}

void CALayer::setShadowRadius(CGFloat radius)
{
    if (areUsable("shadow radius", { radius }))
        change(values_.shadowRadius, std::max(radius, 0.0), "shadowRadius");
}

void CALayer::setShadowOffset(CGSize offset)
{
    if (areUsable("shadow offset", { offset.width, offset.height }))
        change(values_.shadowOffset, offset, "shadowOffset");
}

void CALayer::setShadowPath(std::shared_ptr<const CGPath> path) { changePath(values_.shadowPath, path, "shadowPath"); }

void CALayer::setContents(std::shared_ptr<const CGImage> contents) { change(values_.contents, contents, "contents"); }

void CALayer::setContentsGravity(CALayerContentsGravity gravity)
{
    if (contentsGravity_ == gravity)
        return;
    contentsGravity_ = gravity;
    didChange();
}

void CALayer::setContentsScale(CGFloat scale)
{
    if (contentsScale_ == scale || !areUsable("contents scale", { scale }) || scale <= 0)
        return;
    contentsScale_ = scale;
    didChange();
}

void CALayer::setContentsTint(std::optional<CGColor> tint) { change(values_.contentsTint, tint, "contentsTint"); }

void CALayer::setBackdropBlur(CGFloat radius, CGFloat saturation)
{
    if (!areUsable("backdrop blur", { radius, saturation }))
        return;
    change(values_.backdropBlurRadius, std::max(radius, 0.0), "backdropBlurRadius");
    if (values_.backdropSaturation == saturation)
        return;
    values_.backdropSaturation = saturation;
    didChange();
}

} // namespace platform
