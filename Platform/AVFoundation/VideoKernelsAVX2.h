#pragma once

#include "Platform/AVFoundation/VideoKernels.h"

// The two hottest loops of a video's conversion once more, for processors with AVX2: bytes are multiplied in pairs and packed
// with saturation, which has no portable form. Bit by bit what the portable loops give.
#if defined(__x86_64__)
#define MIVORA_VIDEO_KERNELS_AVX2 1

namespace platform::videoKernels::avx2 {

bool isSupported();

void stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount);
constexpr int leastCount = 16; // pixels that color takes
void color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count);

} // namespace platform::videoKernels::avx2
#endif

// The same for every other processor, and for rows too short for the registers.
namespace platform::videoKernels::portable {

void stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount);
void color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count);

} // namespace platform::videoKernels::portable
