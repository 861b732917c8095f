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

// A gaussian blur of coverage in place; sigma in pixels. What should fade out beyond the edges needs room there: 3 sigma.
void blurCoverage(Bitmap& coverage, double sigma);

// Half the size (rounded up) by averages of 2 by 2; argb or xrgb.
std::shared_ptr<Bitmap> halved(const Bitmap& source);
// Exactly that size: halved while that leaves enough, then by area where it shrinks and bilinear where it grows.
std::shared_ptr<Bitmap> resampled(const Bitmap& source, int width, int height);

// One row of a gradient: words of a ramp of 256 colours at position, position + step... (16.16, clamped to the ramp).
void gradientRow(std::uint32_t* row, int count, const std::uint32_t* ramp, std::int64_t position, std::int64_t step);

// In place: separate colour and alpha to premultiplied, and back.
void premultiply(std::uint32_t* row, int count);
void unpremultiply(std::uint32_t* row, int count);

} // namespace platform::pixels
