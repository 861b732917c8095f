#pragma once

#include "Platform/QuartzCore/CALayer.h"

namespace platform {

struct LayerPresentation;

// One layer at one moment, as the flattener sees it.
struct LayerLook {
    CALayer& layer;
    const LayerValues& values;
    const LayerPresentation* moment; // null: the model shows

    static constexpr double gaussianReach = 3; // sigmas; what lies further out is under a 255th

    static CGRect grown(const CGRect& rect, double by) { return rect.insetBy(-by, -by); }

    const GradientValues& gradient() const; // of a gradient layer only
    const ShapeValues& shape() const; // of a shape layer only
    double cornerRadius() const; // at most half of the shorter side
    bool castsShadow() const;
    // Whether the layer's own rectangle hides what is behind it, so that its shadow is the rectangle's.
    bool isOpaqueBox() const;
    CGRect shapeArea() const; // what a shape layer's path touches, lines included; points
    CGRect ownArea() const; // what the layer itself may touch but for its shadow; points
    // Where a picture lies by the layer's gravity: points, at its own pixels a point and at the screen's.
    CGRect contentsRect(const CGImage& image, double pixelsPerPoint, double screenScale) const;
};

} // namespace platform
