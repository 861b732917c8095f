#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace platform {

// What a commit hands to the compositor: every visible thing at one moment, back to front, resolved to device pixels. Immutable
// once built. Comparing two lists item by item gives the damage.

struct RenderList;

// A rectangle with optional round corners, filled and bordered.
struct RenderBox {
    std::optional<CGColor> fill;
    std::optional<CGColor> border;
    double borderWidth = 0; // points, inside the rectangle
    bool operator==(const RenderBox&) const = default;
};

// A picture scaled to the item's rectangle.
struct RenderImage {
    std::shared_ptr<const CGImage> image;
    std::optional<CGColor> tint;
    bool operator==(const RenderImage&) const = default;
};

struct RenderGradient {
    std::vector<CGColor> colors;
    std::vector<double> locations; // as many as colours
    CGPoint start, end; // unit square of the item's rectangle
    bool operator==(const RenderGradient&) const = default;
};

struct RenderShape {
    std::shared_ptr<const CGPath> path; // points, in the item's own space
    std::optional<CGColor> fill, stroke;
    double lineWidth = 1, strokeStart = 0, strokeEnd = 1;
    CGLineCap cap = CGLineCap::butt;
    CGLineJoin join = CGLineJoin::miter;
    bool operator==(const RenderShape&) const = default;
};

// The shadow of the rectangle (with its corner radius), or of a path. Drawn under the item that casts it; what lies under an
// opaque caster need not be drawn.
struct RenderShadow {
    CGColor color; // its alpha times the layer's shadow opacity
    double radius = 0; // points; the gaussian's sigma
    CGSize offset;
    std::shared_ptr<const CGPath> path;
    bool operator==(const RenderShadow&) const = default;
};

// Everything already drawn below, blurred inside the rectangle.
struct RenderBackdrop {
    double radius = 0; // points; sigma
    double saturation = 1;
    bool operator==(const RenderBackdrop&) const = default;
};

// A subtree composed on its own first: for group opacity, a mask, a clip that cannot be cut per item, or a shadow of its pixels.
// Content and mask lie in the same device pixels as the list around them and have clips of their own; the clip of the group's
// item comes on top. The item's transform is that of the layer it stands for, in whose points the shadow is given; its rect the
// layer's bounds.
struct RenderGroup {
    std::shared_ptr<const RenderList> content;
    std::shared_ptr<const RenderList> mask; // its alpha multiplies the content; null for none
    std::optional<RenderShadow> shadow; // of the composed pixels
};

// A clip that is not a plain upright rectangle; chained outwards.
struct RenderClip {
    CGAffineTransform transform; // the clip's space to device pixels
    CGRect rect; // in its own space
    double cornerRadius = 0;
    unsigned char corners = 15;
    int parent = -1; // index in the list's clips, -1 for none
    bool operator==(const RenderClip&) const = default;
};

struct RenderItem {
    std::uint64_t key = 0; // layer and role; unique in its list and stable from frame to frame
    CGAffineTransform transform; // the item's space (points) to device pixels
    CGRect rect; // in the item's space
    double cornerRadius = 0;
    unsigned char corners = 15; // CACornerMask
    PixelRect bounds; // device pixels it may touch, cut by all upright clips and the screen; never empty
    int clip = -1; // index in the list's clips
    double opacity = 1;
    std::variant<RenderBox, RenderImage, RenderGradient, RenderShape, RenderShadow, RenderBackdrop, RenderGroup> content;
};

// What a clipping layer shows inside its bounds, cut by nothing but an upright clip: items that move together when it scrolls.
struct RenderScroll {
    std::uint64_t key = 0; // the layer
    PixelRect clip;
    CGPoint origin; // where the zero point of what is inside lies, device pixels
    std::size_t first = 0, end = 0; // its items
};

struct RenderList {
    std::vector<RenderItem> items; // back to front
    std::vector<RenderClip> clips;
    std::vector<RenderScroll> scrolls; // an outer one before those inside it
    CGAffineTransform toPixels; // screen points to device pixels
};

} // namespace platform
