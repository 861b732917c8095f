#pragma once

#include "Platform/QuartzCore/RenderList.h"

namespace platform {

class PixelCache;

// Pictures of paths, kept by content: the same path at another whole pixel is the same picture.

// The shape's fill and stroke inside the item's bounds; null when there is nothing to draw.
std::shared_ptr<const Bitmap> shapePicture(const RenderItem& item, const RenderShape& shape, PixelCache& cache);

struct PlacedCoverage {
    std::shared_ptr<const Bitmap> alpha; // null for none
    int x = 0, y = 0; // device pixels
};
// The path, in the space of that transform, blurred by a gaussian of `sigma` pixels, as far as it shows inside `bounds`.
PlacedCoverage blurredPath(
    const CGPath& path, const CGAffineTransform& transform, double sigma, const PixelRect& bounds, PixelCache& cache);

} // namespace platform
