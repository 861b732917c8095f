#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGColor.h"

#include <cstdint>

// The loops over pixels that no library has fast enough. Integers only, so that every machine gives the same picture.
// Pixel words are premultiplied 0xAARRGGBB; coverage is one byte a pixel. None of them checks its bounds.
namespace platform::pixels {

std::uint32_t premultiplied(const CGColor& color, double opacity = 1);

// Coverage in memory that someone else owns.
struct CoverageView {
    const std::uint8_t* data;
    int stride; // bytes
    int width;
    int height;
};

// Fills rows with one word.
void fill(std::uint32_t* row, int count, std::uint32_t word);
// The colour over the pixels, through the coverage, whose left top corner lies at (x, y). Cut by `clip`, which lies in the
// target.
void blendCoverage(Bitmap& target, const PixelRect& clip, const CoverageView& coverage, int x, int y, std::uint32_t color);
// Premultiplied pixels over others, the source times opacity/255. An xrgb source counts as opaque.
void blendPixels(Bitmap& target, const PixelRect& clip, const Bitmap& source, int x, int y, unsigned opacity = 255);
// Adds coverage, up to 255.
void addCoverage(Bitmap& target, const PixelRect& clip, const CoverageView& coverage, int x, int y);

// In place: separate colour and alpha to premultiplied, and back.
void premultiply(std::uint32_t* row, int count);
void unpremultiply(std::uint32_t* row, int count);

} // namespace platform::pixels
