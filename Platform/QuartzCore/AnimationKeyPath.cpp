#include "Platform/QuartzCore/AnimationKeyPath.h"

#include "Platform/QuartzCore/TransformParts.h"

#include <algorithm>
#include <iterator>

namespace platform {

namespace {

using P = LayerProperty;
using V = ValuePart;

struct NamedKeyPath {
    std::string_view name;
    AnimationKeyPath keyPath;
};

constexpr NamedKeyPath knownKeyPaths[] = {
    { "anchorPoint", { P::anchorPoint, V::whole } },
    { "anchorPoint.x", { P::anchorPoint, V::x } },
    { "anchorPoint.y", { P::anchorPoint, V::y } },
    { "backdropBlurRadius", { P::backdropBlurRadius, V::whole } },
    { "backgroundColor", { P::backgroundColor, V::whole } },
    { "borderColor", { P::borderColor, V::whole } },
    { "borderWidth", { P::borderWidth, V::whole } },
    { "bounds", { P::bounds, V::whole } },
    { "bounds.origin", { P::bounds, V::origin } },
    { "bounds.origin.x", { P::bounds, V::x } },
    { "bounds.origin.y", { P::bounds, V::y } },
    { "bounds.size", { P::bounds, V::size } },
    { "bounds.size.height", { P::bounds, V::height } },
    { "bounds.size.width", { P::bounds, V::width } },
    { "colors", { P::colors, V::whole } },
    { "contents", { P::contents, V::whole } },
    { "contentsTint", { P::contentsTint, V::whole } },
    { "cornerRadius", { P::cornerRadius, V::whole } },
    { "endPoint", { P::endPoint, V::whole } },
    { "endPoint.x", { P::endPoint, V::x } },
    { "endPoint.y", { P::endPoint, V::y } },
    { "fillColor", { P::fillColor, V::whole } },
    { "lineWidth", { P::lineWidth, V::whole } },
    { "locations", { P::locations, V::whole } },
    { "opacity", { P::opacity, V::whole } },
    { "path", { P::path, V::whole } },
    { "position", { P::position, V::whole } },
    { "position.x", { P::position, V::x } },
    { "position.y", { P::position, V::y } },
    { "shadowColor", { P::shadowColor, V::whole } },
    { "shadowOffset", { P::shadowOffset, V::whole } },
    { "shadowOffset.height", { P::shadowOffset, V::height } },
    { "shadowOffset.width", { P::shadowOffset, V::width } },
    { "shadowOpacity", { P::shadowOpacity, V::whole } },
    { "shadowPath", { P::shadowPath, V::whole } },
    { "shadowRadius", { P::shadowRadius, V::whole } },
    { "startPoint", { P::startPoint, V::whole } },
    { "startPoint.x", { P::startPoint, V::x } },
    { "startPoint.y", { P::startPoint, V::y } },
    { "strokeColor", { P::strokeColor, V::whole } },
    { "strokeEnd", { P::strokeEnd, V::whole } },
    { "strokeStart", { P::strokeStart, V::whole } },
    { "sublayerTransform", { P::sublayerTransform, V::whole } },
    { "transform", { P::transform, V::whole } },
    { "transform.rotation", { P::transform, V::rotation } },
    { "transform.rotation.z", { P::transform, V::rotation } },
    { "transform.scale", { P::transform, V::scale } },
    { "transform.scale.x", { P::transform, V::scaleX } },
    { "transform.scale.y", { P::transform, V::scaleY } },
    { "transform.translation", { P::transform, V::translation } },
    { "transform.translation.x", { P::transform, V::translationX } },
    { "transform.translation.y", { P::transform, V::translationY } },
    { "zPosition", { P::zPosition, V::whole } },
};

} // namespace

std::optional<AnimationKeyPath> AnimationKeyPath::parse(std::string_view text)
{
    const auto found = std::ranges::find(knownKeyPaths, text, &NamedKeyPath::name);
    return found == std::end(knownKeyPaths) ? std::nullopt : std::optional(found->keyPath);
}

bool AnimationKeyPath::isWholeTransform() const
{
    return part == ValuePart::whole && (property == LayerProperty::transform || property == LayerProperty::sublayerTransform);
}

bool AnimationKeyPath::isColor() const
{
    switch (property) {
    case P::backgroundColor:
    case P::borderColor:
    case P::contentsTint:
    case P::fillColor:
    case P::shadowColor:
    case P::strokeColor:
        return true;
    default:
        return false;
    }
}

std::size_t AnimationKeyPath::numberCount() const
{
    if (isPath() || isContents() || property == P::colors || property == P::locations)
        return 0;
    if (isColor())
        return 4;
    if (isWholeTransform())
        return 6;
    switch (part) {
    case V::origin:
    case V::size:
    case V::translation:
        return 2;
    case V::whole:
        break;
    default:
        return 1;
    }
    switch (property) {
    case P::bounds:
        return 4;
    case P::anchorPoint:
    case P::endPoint:
    case P::position:
    case P::shadowOffset:
    case P::startPoint:
        return 2;
    default:
        return 1;
    }
}

void toNumbers(const CAValue& value, std::vector<double>& numbers)
{
    numbers.clear();
    const auto append = [&](std::initializer_list<double> more) { numbers.insert(numbers.end(), more); };
    if (const auto* number = std::get_if<double>(&value))
        append({ *number });
    else if (const auto* point = std::get_if<CGPoint>(&value))
        append({ point->x, point->y });
    else if (const auto* size = std::get_if<CGSize>(&value))
        append({ size->width, size->height });
    else if (const auto* rect = std::get_if<CGRect>(&value))
        append({ rect->x, rect->y, rect->width, rect->height });
    else if (const auto* color = std::get_if<CGColor>(&value))
        append({ color->red, color->green, color->blue, color->alpha });
    else if (const auto* transform = std::get_if<CGAffineTransform>(&value)) {
        const TransformParts p = TransformParts::of(*transform);
        append({ p.translationX, p.translationY, p.rotation, p.scaleX, p.scaleY, p.skew });
    } else if (const auto* list = std::get_if<std::vector<double>>(&value))
        numbers = *list;
    else if (const auto* colors = std::get_if<std::vector<CGColor>>(&value)) {
        for (const CGColor& one : *colors)
            append({ one.red, one.green, one.blue, one.alpha });
    }
}

} // namespace platform
