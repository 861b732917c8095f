#pragma once

#include "Platform/QuartzCore/Coverage.h"
#include "Platform/QuartzCore/PixelKernels.h"
#include "Platform/QuartzCore/RenderList.h"

#include <memory>

namespace platform {

// One stretch of a row of premultiplied pixels: words, or one colour when there are none.
struct SourceRow {
    const rows::Pixel* pixels = nullptr;
    rows::Pixel color = 0;
    const std::uint8_t* coverage = nullptr; // of the colour; null: full
    bool isOpaque = false;
};

// Where an item's pixels come from, row by row in device pixels. A pixel depends on its place alone.
class PixelSource {
public:
    virtual ~PixelSource() = default;
    // `room` has space for a row of pixels and `coverageRoom` for one of coverage; what is returned may lie there.
    virtual SourceRow row(int x, int y, int count, rows::Pixel* room, std::uint8_t* coverageRoom) = 0;
    // Cuts off ends of a row that are clear; the count may become 0.
    virtual void narrow(int /*y*/, int& /*x*/, int& /*count*/) const { }
    // Whether what is returned always lies in `room`, with an alpha of 255: then the place where it is shown can be the room.
    virtual bool fillsRoom() const { return false; }
};

std::unique_ptr<PixelSource> solidSource(rows::Pixel color);
// Pixel by pixel, its left top corner at (x, y).
std::unique_ptr<PixelSource> bitmapSource(std::shared_ptr<const Bitmap> bitmap, int x, int y);
// Scaled bilinearly to a rectangle in device pixels.
std::unique_ptr<PixelSource> scaledSource(std::shared_ptr<const Bitmap> bitmap, const CGRect& device);
// The item's picture, scaled and tinted; null when there is nothing to show. A size that comes from the layout (the item is not
// scaled beyond `toPixels`) is kept in the cache; another one is sampled anew each frame, from halved pictures that are kept.
std::unique_ptr<PixelSource> imageSource(
    const RenderItem& item, const RenderImage& image, const CGAffineTransform& toPixels, PixelCache& cache);
std::unique_ptr<PixelSource> gradientSource(const RenderItem& item, const RenderGradient& gradient, PixelCache& cache);
// A gradient's alpha where it is the same along every row, or every column; null otherwise. Its edges may lie inside of pixels
// and its corners be round, which is left to their coverage.
std::shared_ptr<const Bitmap> gradientFade(const RenderItem& item, const RenderGradient& gradient, PixelCache& cache);

} // namespace platform
