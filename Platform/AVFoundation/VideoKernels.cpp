#include "Platform/AVFoundation/VideoKernels.h"

#include "Platform/AVFoundation/VideoKernelsAVX2.h"
#include "Platform/CoreGraphics/ProcessorClones.h"

#include <bit>
#include <cmath>

#define INLINE inline __attribute__((always_inline))

namespace platform::videoKernels {

namespace {

constexpr int rounding = 16; // half a byte's step in 1/32

// value * factor / 32768, to the nearest: one instruction for many, in this very form.
INLINE Sample times(Sample value, Sample factor) { return Sample(((int(value) * int(factor) >> 14) + 1) >> 1); }

INLINE Sample mixed(Sample upper, Sample lower, Sample share) { return Sample(upper + times(Sample(lower - upper), share)); }

INLINE Sample byte(Sample value)
{
    const auto whole = Sample(value >> 5);
    return Sample(whole < 0 ? 0 : whole > 255 ? 255 : whole);
}

Sample factor(double value) { return Sample(std::lround(value * 32768 * 32 / one)); }

} // namespace

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {

MIVORA_CLONES void stretchFar(Sample* __restrict to, const std::uint8_t* __restrict row, int last,
    const std::int32_t* __restrict left, const Sample* __restrict share, int count)
{
    for (int i = 0; i < count; ++i) {
        const int from = row[left[i]], next = row[left[i] < last ? left[i] + 1 : last];
        to[i] = Sample(from * one + (next - from) * share[i]);
    }
}

MIVORA_CLONES void toLight(Sample* samples, int count, Sample black, Sample by)
{
    for (int i = 0; i < count; ++i)
        samples[i] = Sample(times(Sample(samples[i] - black), by) + rounding);
}

MIVORA_CLONES void toTint(
    Sample* __restrict to, int stride, const Sample* __restrict u, const Sample* __restrict v, int count, const Matrix& matrix)
{
    const auto [black, light, redV, greenU, greenV, blueU] = matrix;
    Sample *red = to, *green = to + stride, *blue = to + 2 * stride;
    for (int i = 0; i < count; ++i) {
        const auto fromU = Sample(u[i] - 128 * one), fromV = Sample(v[i] - 128 * one);
        red[i] = times(fromV, redV);
        green[i] = Sample(-times(fromU, greenU) - times(fromV, greenV));
        blue[i] = times(fromU, blueU);
    }
}

// Halves of words are stored side by side, which takes fewer instructions than to widen three bytes to words.
using Half = std::uint16_t __attribute__((may_alias));

MIVORA_CLONES void color(Half* __restrict to, const Neighbours& light, const Neighbours& tint, int tintStride, int count)
{
    const Sample *upperLight = light.upper, *lowerLight = light.lower;
    const Sample *upperRed = tint.upper, *upperGreen = upperRed + tintStride, *upperBlue = upperGreen + tintStride;
    const Sample *lowerRed = tint.lower, *lowerGreen = lowerRed + tintStride, *lowerBlue = lowerGreen + tintStride;
    const auto lightShare = Sample(light.share), tintShare = Sample(tint.share);
    constexpr int low = std::endian::native == std::endian::little ? 0 : 1;
    for (int i = 0; i < count; ++i) {
        const Sample both = mixed(upperLight[i], lowerLight[i], lightShare);
        const Sample red = byte(Sample(both + mixed(upperRed[i], lowerRed[i], tintShare)));
        const Sample green = byte(Sample(both + mixed(upperGreen[i], lowerGreen[i], tintShare)));
        const Sample blue = byte(Sample(both + mixed(upperBlue[i], lowerBlue[i], tintShare)));
        to[2 * i + low] = Half(blue | Half(green) << 8);
        to[2 * i + 1 - low] = Half(red | 0xff00);
    }
}

MIVORA_CLONES void halve(
    std::uint8_t* __restrict to, const std::uint8_t* __restrict upper, const std::uint8_t* __restrict lower, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t((upper[2 * i] + upper[2 * i + 1] + lower[2 * i] + lower[2 * i + 1] + 2) >> 2);
}

} // namespace loops

Matrix Matrix::make(bool isHighDefinition, bool isFullRange)
{
    if (isFullRange)
        return isHighDefinition ? Matrix { 0, factor(1), factor(1.5748), factor(0.1873), factor(0.4681), factor(1.8556) }
                                : Matrix { 0, factor(1), factor(1.402), factor(0.3441), factor(0.7141), factor(1.772) };
    constexpr Sample black = 16 * one;
    constexpr double light = 255.0 / 219;
    return isHighDefinition ? Matrix { black, factor(light), factor(1.7927), factor(0.2132), factor(0.5329), factor(2.1124) }
                            : Matrix { black, factor(light), factor(1.5960), factor(0.3918), factor(0.8130), factor(2.0172) };
}

void stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount)
{
#ifdef MIVORA_VIDEO_KERNELS_AVX2
    if (avx2::isSupported())
        return avx2::stretch(to, row, blocks, blockCount);
#endif
    portable::stretch(to, row, blocks, blockCount);
}
void stretchFar(Sample* to, const std::uint8_t* row, int last, const std::int32_t* left, const Sample* share, int count)
{
    loops::stretchFar(to, row, last, left, share, count);
}
void toLight(Sample* samples, int count, const Matrix& matrix) { loops::toLight(samples, count, matrix.black, matrix.light); }
void toTint(Sample* to, int stride, const Sample* u, const Sample* v, int count, const Matrix& matrix)
{
    loops::toTint(to, stride, u, v, count, matrix);
}
void color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count)
{
#ifdef MIVORA_VIDEO_KERNELS_AVX2
    if (count >= avx2::leastCount && avx2::isSupported())
        return avx2::color(to, light, tint, tintStride, count);
#endif
    portable::color(to, light, tint, tintStride, count);
}
void halve(std::uint8_t* to, const std::uint8_t* upper, const std::uint8_t* lower, int count)
{
    loops::halve(to, upper, lower, count);
}

void portable::stretch(Sample* to, const std::uint8_t* row, const Block* blocks, int blockCount)
{
    for (int i = 0; i < blockCount; ++i) {
        const auto& [first, pairs, weights] = blocks[i];
        for (int j = 0; j < blockSize; ++j) {
            const int below0 = row[first + pairs[2 * j]] * weights[2 * j] + row[first + pairs[2 * j + 1]] * weights[2 * j + 1];
            to[i * blockSize + j] = Sample(-below0);
        }
    }
}
void portable::color(std::uint32_t* to, const Neighbours& light, const Neighbours& tint, int tintStride, int count)
{
    loops::color(reinterpret_cast<loops::Half*>(to), light, tint, tintStride, count);
}

} // namespace platform::videoKernels
