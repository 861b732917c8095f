#pragma once

#include "Platform/QuartzCore/PixelKernels.h"

// Loops over rows that take pixels from between others. Integers only, like those that blend.
namespace platform::rows {

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

} // namespace platform::rows
