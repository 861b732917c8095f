#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

namespace platform {

// A transform taken apart, so that each part can be interpolated or replaced alone: first skewed, then scaled, rotated and moved.
struct TransformParts {
    double translationX = 0, translationY = 0; // points
    double rotation = 0; // radians, -pi to pi
    double scaleX = 1, scaleY = 1; // a mirrored transform has one negative scale
    double skew = 0; // how far the y axis leans along the rotated x axis, scale included

    static TransformParts of(const CGAffineTransform& transform);
    CGAffineTransform compose() const;
};

} // namespace platform
