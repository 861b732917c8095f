#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGColor.h"

#include <array>
#include <cstdint>
#include <vector>

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

// The colours along a gradient, from position 0 to 1 and constant beyond.
class Ramp {
public:
    // As many locations (0 to 1, ascending) as colours; otherwise they are spread evenly. At least one colour.
    Ramp(const std::vector<CGColor>& colors, const std::vector<double>& locations);
    bool isOpaque() const { return opaque; }
    // Pixels at position, position + step...
    void fillRow(std::uint32_t* row, int count, double position, double step) const;

private:
    static constexpr int length = 1024; // enough for every step of 8-bit colours
    std::array<std::uint32_t, length> words {};
    bool opaque = true;
};

// In place: separate colour and alpha to premultiplied, and back.
void premultiply(std::uint32_t* row, int count);
void unpremultiply(std::uint32_t* row, int count);

} // namespace platform::pixels
