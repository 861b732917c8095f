#pragma once

#include "Platform/QuartzCore/AnimationKeyPath.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/LayerValues.h"

#include <memory>

namespace platform {

// A layer's values at one moment of its animations. Starts as a copy of the model; animations write over it.
struct LayerPresentation {
    explicit LayerPresentation(const CALayer& model);

    // The value under a key path; monostate when it is absent or the layer has no such property.
    CAValue value(AnimationKeyPath keyPath) const;
    // Numbers as toNumbers gives them for this key path; too few are ignored.
    void setNumbers(AnimationKeyPath keyPath, const std::vector<double>& numbers);

    CALayer::Kind kind;
    LayerValues layer;
    GradientValues gradient; // of a gradient layer
    ShapeValues shape; // of a shape layer
    // While contents fade from one picture to the next: the older one, and how much of the newer one is seen (0 to 1).
    std::shared_ptr<const CGImage> oldContents;
    double contentsMix = 1;
};

} // namespace platform
