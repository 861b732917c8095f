#pragma once

#include "Platform/QuartzCore/PixelKernels.h"

// A blur's loops over rows.
namespace platform::rows {

// Adds bytes to 16-bit sums.
void addBytes(std::uint16_t* sums, const std::uint8_t* bytes, int count);
// Sums of 1, 2 or 4 neighbouring pixels of four such channels, times `weight` / 256.
void reduceColumns(std::uint16_t* cells, const std::uint16_t* sums, int count, int pixelsEach, unsigned weight);
// One step of a running box sum down the columns: leave goes out, enter comes in, and the mean goes to `to`.
void slideColumns(
    std::uint32_t* sums, std::uint16_t* to, const std::uint16_t* enter, const std::uint16_t* leave, float scale, int count);
// Cells of four 16-bit channels (1/256 of a step) to opaque pixels. A share of 256 keeps the colours, 0 leaves their grey.
void saturate(Pixel* to, const std::uint16_t* cells, int count, int share);

} // namespace platform::rows
