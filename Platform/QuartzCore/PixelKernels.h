#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstdint>

// The compositor's inner loops over rows of premultiplied 0xAARRGGBB words. Integers only where pixels are blended, so that a
// picture does not depend on the processor. Coverage is 0 to 255, and 255 leaves its operand as it is: a row that is cut in
// pieces, with some of them fully covered, gives the very pixels of the uncut one.
namespace platform::rows {

using Pixel = std::uint32_t;

// a times b over 255, rounded to the nearest.
constexpr unsigned multiply255(unsigned a, unsigned b)
{
    const unsigned t = a * b + 128;
    return (t + (t >> 8)) >> 8;
}

void copyReversed(Pixel* to, const Pixel* from, int count);

// `fromIsOpaque` says that the alpha of what comes over is to be taken as 255 (xrgb).
void over(Pixel* to, const Pixel* from, int count, unsigned coverage, bool fromIsOpaque);
void over(Pixel* to, const Pixel* from, const std::uint8_t* coverage, int count, bool fromIsOpaque);
void overColor(Pixel* to, Pixel color, int count, unsigned coverage);
void overColor(Pixel* to, Pixel color, const std::uint8_t* coverage, int count);

void multiply(std::uint8_t* to, const std::uint8_t* from, int count, unsigned factor);
void multiply(std::uint8_t* to, const std::uint8_t* a, const std::uint8_t* b, int count);
void multiplyByAlpha(Pixel* row, const Pixel* alpha, int count);
void alphaOf(std::uint8_t* to, const Pixel* from, int count);

// Mixes two rows: weight 0 gives the first, 256 the second.
void mixRows(Pixel* to, const Pixel* a, const Pixel* b, int count, unsigned weight);
// Linear samples of a row of `last` + 1 pixels at x, x + step...: 16.16 pixels from the first one's centre, held at the ends.
void sampleRow(Pixel* to, const Pixel* row, int last, std::int64_t x, std::int64_t step, int count);
// Bilinear samples of a picture of width by height pixels along a slanted line, held at its edges; 16.16 like above.
struct SlantedWalk {
    std::int64_t x, y, stepX, stepY;
};
void samplePicture(Pixel* to, const Pixel* pixels, int stride, int width, int height, SlantedWalk walk, int count);
// Entries of a table of `last` + 1 colours at 16.16 positions, held at the ends.
void lookUp(Pixel* to, const Pixel* table, int last, std::int64_t position, std::int64_t step, int count);

// A rectangle with round corners, in a space of its own.
struct RoundedRect {
    CGAffineTransform toLocal; // device pixels to the rectangle's space
    CGRect rect;
    double radius = 0;
    unsigned corners = 15; // as CACornerMask
};
// How much of the pixels at (x, y), (x + 1, y)... the rectangle covers, by the distance of their centres from its edges.
void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count);

// Adds bytes to 16-bit sums.
void addBytes(std::uint16_t* sums, const std::uint8_t* bytes, int count);
// Sums of 1, 2 or 4 neighbouring pixels of four such channels, times `weight` / 256.
void reduceColumns(std::uint16_t* cells, const std::uint16_t* sums, int count, int pixelsEach, unsigned weight);
// One step of a running box sum down the columns: leave goes out, enter comes in, and the mean goes to `to`.
void slideColumns(
    std::uint32_t* sums, std::uint16_t* to, const std::uint16_t* enter, const std::uint16_t* leave, float scale, int count);
// Cells of four 16-bit channels (1/256 of a step) to opaque pixels. A share of 256 keeps the colours, 0 leaves their grey.
void saturate(Pixel* to, const std::uint16_t* cells, int count, int share);
// row[i] += weight * other[i].
void accumulate(float* row, const float* other, float weight, int count);

} // namespace platform::rows
