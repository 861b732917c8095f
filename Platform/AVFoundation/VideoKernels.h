#pragma once

#include <cstdint>

// The loops of a video's conversion, over rows. Integers only, so that a picture does not depend on the processor.
namespace platform::videoKernels {

using Sample = std::int16_t;

constexpr int one = 128; // of a stretched sample, for each step of a byte
constexpr int blockSize = 16; // results

// Sixteen neighbouring results, each between two of sixteen neighbouring bytes.
struct Block {
    std::int32_t first; // of the bytes
    std::uint8_t pairs[2 * blockSize]; // the left and the right one of each, counted from it
    std::int8_t weights[2 * blockSize]; // theirs; below 0 and -128 together, as a signed byte holds no 128
};

// Bytes mixed with their neighbours, times `one`.
void stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount);
// The same for results whose bytes lie anywhere; `last` is the last byte, which has no right neighbour.
void stretchFar(Sample* to, const std::uint8_t* row, int last, const std::int32_t* left, const Sample* share, int count);

// Factors of stretched samples over 32768, for results in 1/32 of a byte's step.
struct Matrix {
    Sample black; // of brightness, a stretched sample
    Sample light, redV, greenU, greenV, blueU;

    static Matrix make(bool isHighDefinition, bool isFullRange);
};

// Stretched brightness to what it gives to each colour, in place.
void toLight(Sample* samples, int count, const Matrix& matrix);

// Three rows, `stride` apart: what the two differences give to red, green and blue.
void toTint(Sample* to, int stride, const Sample* u, const Sample* v, int count, const Matrix& matrix);

// Two neighbouring rows and how far between them the result lies.
struct Neighbours {
    const Sample* upper;
    const Sample* lower;
    int share; // of the lower one, 0 to 32767
};
// Opaque pixels from light and tint.
void color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count);

// The means of four bytes, two of each row.
void halve(std::uint8_t* to, const std::uint8_t* upper, const std::uint8_t* lower, int count);

} // namespace platform::videoKernels
