#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

// What animations can change of a layer, as plain values: the model's own, or those of one moment.
struct LayerValues {
    CGRect bounds;
    CGPoint position;
    CGPoint anchorPoint { 0.5, 0.5 };
    CGAffineTransform transform;
    CGAffineTransform sublayerTransform;
    CGFloat zPosition = 0;
    double opacity = 1;
    std::optional<CGColor> backgroundColor;
    CGFloat cornerRadius = 0;
    CGFloat borderWidth = 0;
    std::optional<CGColor> borderColor;
    CGColor shadowColor { 0, 0, 0, 1 };
    double shadowOpacity = 0;
    CGFloat shadowRadius = 3;
    CGSize shadowOffset { 0, -3 };
    std::shared_ptr<const CGPath> shadowPath;
    std::shared_ptr<const CGImage> contents;
    std::optional<CGColor> contentsTint;
    CGFloat backdropBlurRadius = 0;
    CGFloat backdropSaturation = 1;

    // The anchor in the bounds' coordinates.
    CGPoint anchor() const { return { bounds.x + anchorPoint.x * bounds.width, bounds.y + anchorPoint.y * bounds.height }; }
    // The bounds' coordinates to those that the position is given in.
    CGAffineTransform toSuperlayer() const
    {
        const CGPoint a = anchor();
        const CGAffineTransform& t = transform;
        return { t.a, t.b, t.c, t.d, t.tx + position.x - t.a * a.x - t.c * a.y, t.ty + position.y - t.b * a.x - t.d * a.y };
    }
    // The sublayers' superlayer coordinates to the bounds' coordinates: the sublayer transform, about the anchor.
    CGAffineTransform sublayersToBounds() const
    {
        if (sublayerTransform.isIdentity())
            return {};
        const CGPoint a = anchor();
        return CGAffineTransform::translation(-a.x, -a.y).then(sublayerTransform).then(CGAffineTransform::translation(a.x, a.y));
    }
};

struct GradientValues {
    std::vector<CGColor> colors;
    std::vector<double> locations;
    CGPoint startPoint { 0.5, 0 };
    CGPoint endPoint { 0.5, 1 };
};

struct ShapeValues {
    std::shared_ptr<const CGPath> path;
    std::optional<CGColor> fillColor = CGColor { 0, 0, 0, 1 };
    std::optional<CGColor> strokeColor;
    CGFloat lineWidth = 1;
    double strokeStart = 0;
    double strokeEnd = 1;
};

} // namespace platform
