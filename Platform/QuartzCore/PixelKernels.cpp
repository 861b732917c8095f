#include "Platform/QuartzCore/PixelKernels.h"

#include "Platform/QuartzCore/WidePixels.h"

namespace platform::rows {

namespace {

// All four channels times a factor of 0 to 255 over 255, two channels in each half.
MIVORA_INLINE Pixel scaled(Pixel p, std::uint32_t factor)
{
    std::uint32_t rb = (p & evenBytes) * factor + 0x00800080;
    std::uint32_t ag = ((p >> 8) & evenBytes) * factor + 0x00800080;
    rb = ((rb + ((rb >> 8) & evenBytes)) >> 8) & evenBytes;
    ag = (ag + ((ag >> 8) & evenBytes)) & ~evenBytes;
    return rb | ag;
}

MIVORA_INLINE Pixel overPixel(Pixel to, Pixel from) { return from + scaled(to, 255 - (from >> 24)); }

// As above; each pixel's factor stands in both of its halves.
MIVORA_INLINE void scale(Pixels& pixels, const Halves& factors)
{
    Halves rb = reinterpret_cast<Halves>(pixels & evenBytes), ag = reinterpret_cast<Halves>(pixels) >> 8;
    rb = rb * factors + 128;
    ag = ag * factors + 128;
    rb = (rb + (rb >> 8)) >> 8;
    ag = ag + (ag >> 8);
    pixels = reinterpret_cast<Pixels>(rb) | (reinterpret_cast<Pixels>(ag) & ~evenBytes);
}
MIVORA_INLINE void scale(Pixels& pixels, std::uint32_t factor)
{
    const Halves factors = Halves {} + std::uint16_t(factor);
    scale(pixels, factors);
}
// By factors of 0 to 255, one in each word.
MIVORA_INLINE void scaleEach(Pixels& pixels, const Pixels& factors)
{
    const Pixels both = factors | factors << 16;
    scale(pixels, reinterpret_cast<Halves>(both));
}
// The same by bytes in memory, one a pixel.
MIVORA_INLINE void scaleEach(Pixels& pixels, const std::uint8_t* factors)
{
    std::uint64_t all;
    std::memcpy(&all, factors, sizeof all);
    using Bytes = std::uint8_t __attribute__((vector_size(4 * wide)));
    using Words = std::uint64_t __attribute__((vector_size(4 * wide)));
    // Each byte four times; every second of them is a factor's.
    const auto spread = __builtin_shufflevector(reinterpret_cast<Bytes>(Words {} + all), Bytes {}, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2,
        2, 2, 3, 3, 3, 3, 20, 20, 20, 20, 21, 21, 21, 21, 22, 22, 22, 22, 23, 23, 23, 23);
    scale(pixels, reinterpret_cast<Halves>(spread) & 255);
}
MIVORA_INLINE void putOver(Pixel* to, const Pixels& from)
{
    Pixels below;
    load(below, to);
    scaleEach(below, 255 - (from >> 24));
    store(to, from + below);
}

} // namespace

// Functions of their own name, as one compiler wants every declaration of a clone marked.
namespace loops {

MIVORA_CLONES void copyReversed(Pixel* __restrict to, const Pixel* __restrict from, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = from[count - 1 - i];
}

MIVORA_CLONES void over(Pixel* __restrict to, const Pixel* __restrict from, int count, unsigned coverage, bool fromIsOpaque)
{
    int i = 0;
    if (coverage == 255 && fromIsOpaque) {
        for (; i < count; ++i)
            to[i] = from[i] | opaqueAlpha;
    } else if (coverage == 255) {
        for (Pixels p; i + wide <= count; i += wide) {
            load(p, from + i);
            putOver(to + i, p);
        }
        for (; i < count; ++i)
            to[i] = overPixel(to[i], from[i]);
    } else {
        const Pixel bits = fromIsOpaque ? opaqueAlpha : 0;
        for (Pixels p; i + wide <= count; i += wide) {
            load(p, from + i);
            p |= bits;
            scale(p, coverage);
            putOver(to + i, p);
        }
        for (; i < count; ++i)
            to[i] = overPixel(to[i], scaled(from[i] | bits, coverage));
    }
}

MIVORA_CLONES void over(
    Pixel* __restrict to, const Pixel* __restrict from, const std::uint8_t* __restrict coverage, int count, bool fromIsOpaque)
{
    const Pixel bits = fromIsOpaque ? opaqueAlpha : 0;
    int i = 0;
    for (Pixels p; i + wide <= count; i += wide) {
        load(p, from + i);
        p |= bits;
        scaleEach(p, coverage + i);
        putOver(to + i, p);
    }
    for (; i < count; ++i)
        to[i] = overPixel(to[i], scaled(from[i] | bits, coverage[i]));
}

MIVORA_CLONES void overColor(Pixel* to, Pixel color, int count, unsigned coverage)
{
    const Pixel source = scaled(color, coverage);
    const std::uint32_t rest = 255 - (source >> 24);
    int i = 0;
    if (rest == 0) {
        for (; i < count; ++i)
            to[i] = source;
        return;
    }
    for (Pixels p; i + wide <= count; i += wide) {
        load(p, to + i);
        scale(p, rest);
        store(to + i, source + p);
    }
    for (; i < count; ++i)
        to[i] = source + scaled(to[i], rest);
}

MIVORA_CLONES void overColor(Pixel* __restrict to, Pixel color, const std::uint8_t* __restrict coverage, int count)
{
    int i = 0;
    for (Pixels p; i + wide <= count; i += wide) {
        p = Pixels {} + color;
        scaleEach(p, coverage + i);
        putOver(to + i, p);
    }
    for (; i < count; ++i)
        to[i] = overPixel(to[i], scaled(color, coverage[i]));
}

MIVORA_CLONES void multiply(std::uint8_t* to, const std::uint8_t* from, int count, unsigned factor)
{
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t(multiply255(from[i], factor));
}

MIVORA_CLONES void multiply(std::uint8_t* to, const std::uint8_t* a, const std::uint8_t* b, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t(multiply255(a[i], b[i]));
}

MIVORA_CLONES void multiplyByAlpha(Pixel* __restrict row, const Pixel* __restrict alpha, int count)
{
    int i = 0;
    for (Pixels p, a; i + wide <= count; i += wide) {
        load(p, row + i);
        load(a, alpha + i);
        scaleEach(p, a >> 24);
        store(row + i, p);
    }
    for (; i < count; ++i)
        row[i] = scaled(row[i], alpha[i] >> 24);
}

MIVORA_CLONES void alphaOf(std::uint8_t* __restrict to, const Pixel* __restrict from, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t(from[i] >> 24);
}

} // namespace loops

void copyReversed(Pixel* to, const Pixel* from, int count) { loops::copyReversed(to, from, count); }
void over(Pixel* to, const Pixel* from, int count, unsigned coverage, bool fromIsOpaque)
{
    loops::over(to, from, count, coverage, fromIsOpaque);
}
void over(Pixel* to, const Pixel* from, const std::uint8_t* coverage, int count, bool fromIsOpaque)
{
    loops::over(to, from, coverage, count, fromIsOpaque);
}
void overColor(Pixel* to, Pixel color, int count, unsigned coverage) { loops::overColor(to, color, count, coverage); }
void overColor(Pixel* to, Pixel color, const std::uint8_t* coverage, int count) { loops::overColor(to, color, coverage, count); }
void multiply(std::uint8_t* to, const std::uint8_t* from, int count, unsigned factor)
{
    loops::multiply(to, from, count, factor);
}
void multiply(std::uint8_t* to, const std::uint8_t* a, const std::uint8_t* b, int count) { loops::multiply(to, a, b, count); }
void multiplyByAlpha(Pixel* row, const Pixel* alpha, int count) { loops::multiplyByAlpha(row, alpha, count); }
void alphaOf(std::uint8_t* to, const Pixel* from, int count) { loops::alphaOf(to, from, count); }

} // namespace platform::rows
