#pragma once

#include "Platform/QuartzCore/CAAnimation.h"

#include <optional>
#include <string_view>
#include <vector>

namespace platform {

enum class LayerProperty : unsigned char {
    anchorPoint,
    backdropBlurRadius,
    backgroundColor,
    borderColor,
    borderWidth,
    bounds,
    colors,
    contents,
    contentsTint,
    cornerRadius,
    endPoint,
    fillColor,
    lineWidth,
    locations,
    opacity,
    path,
    position,
    shadowColor,
    shadowOffset,
    shadowOpacity,
    shadowPath,
    shadowRadius,
    startPoint,
    strokeColor,
    strokeEnd,
    strokeStart,
    sublayerTransform,
    transform,
    zPosition,
};

enum class ValuePart : unsigned char {
    whole,
    x,
    y,
    width,
    height,
    origin,
    size,
    rotation,
    scale,
    scaleX,
    scaleY,
    translation,
    translationX,
    translationY,
};

// A key path, parsed once.
struct AnimationKeyPath {
    LayerProperty property {};
    ValuePart part = ValuePart::whole;

    static std::optional<AnimationKeyPath> parse(std::string_view text); // nothing for an unknown one
    bool isWholeTransform() const;
    bool isColor() const;
    // How many numbers a value has: 0 when that varies (colours, locations) or when it is no list of numbers (path, contents).
    std::size_t numberCount() const;
    bool isPath() const { return property == LayerProperty::path || property == LayerProperty::shadowPath; }
    bool isContents() const { return property == LayerProperty::contents; }
    bool operator==(const AnimationKeyPath&) const = default;
};

// A value as the numbers that are interpolated: a transform as its TransformParts, colours one after another. Empty for an absent
// value and for what is no list of numbers.
void toNumbers(const CAValue& value, std::vector<double>& numbers);

} // namespace platform
