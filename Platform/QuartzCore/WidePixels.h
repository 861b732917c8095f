#pragma once

#include "Platform/CoreGraphics/ProcessorClones.h"
#include "Platform/QuartzCore/PixelKernels.h"

#include <cstring>

// What the loops over rows are written with: one pixel's four channels in a word, and eight such words at once. For the kernels'
// own sources only, where all of it is inlined into each clone of a loop.
#define MIVORA_INLINE inline __attribute__((always_inline))

namespace platform::rows {

constexpr std::uint32_t evenBytes = 0x00ff00ff;
constexpr Pixel opaqueAlpha = 0xff000000;

// Eight pixels at once, as four-channel words and as halves of 16 bits, in which a channel's product has room. A processor
// without such registers takes them in parts.
constexpr int wide = 8;
using Pixels = Pixel __attribute__((vector_size(4 * wide)));
using Halves = std::uint16_t __attribute__((vector_size(4 * wide)));

MIVORA_INLINE void load(Pixels& pixels, const Pixel* from) { std::memcpy(&pixels, from, sizeof pixels); }
MIVORA_INLINE void store(Pixel* to, const Pixels& pixels) { std::memcpy(to, &pixels, sizeof pixels); }

} // namespace platform::rows
