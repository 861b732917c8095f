#include "Platform/QuartzCore/PixelKernels.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#define INLINE inline __attribute__((always_inline))

namespace platform::rows {

namespace {

constexpr std::uint32_t evenBytes = 0x00ff00ff;
constexpr Pixel opaqueAlpha = 0xff000000;

// All four channels times a factor of 0 to 255 over 255, two channels in each half.
INLINE Pixel scaled(Pixel p, std::uint32_t factor)
{
    std::uint32_t rb = (p & evenBytes) * factor + 0x00800080;
    std::uint32_t ag = ((p >> 8) & evenBytes) * factor + 0x00800080;
    rb = ((rb + ((rb >> 8) & evenBytes)) >> 8) & evenBytes;
    ag = (ag + ((ag >> 8) & evenBytes)) & ~evenBytes;
    return rb | ag;
}

// weight 0 to 256 of b against a.
INLINE Pixel mixed(Pixel a, Pixel b, std::uint32_t weight)
{
    const std::uint32_t rest = 256 - weight;
    const std::uint32_t rb = (a & evenBytes) * rest + (b & evenBytes) * weight + 0x00800080;
    const std::uint32_t ag = ((a >> 8) & evenBytes) * rest + ((b >> 8) & evenBytes) * weight + 0x00800080;
    return ((rb >> 8) & evenBytes) | (ag & ~evenBytes);
}

INLINE Pixel overPixel(Pixel to, Pixel from) { return from + scaled(to, 255 - (from >> 24)); }

// Eight pixels at once, as four-channel words and as halves of 16 bits, in which a channel's product has room. A processor
// without such registers takes them in parts.
constexpr int wide = 8;
using Pixels = Pixel __attribute__((vector_size(4 * wide)));
using Halves = std::uint16_t __attribute__((vector_size(4 * wide)));

INLINE void load(Pixels& pixels, const Pixel* from) { std::memcpy(&pixels, from, sizeof pixels); }
INLINE void store(Pixel* to, const Pixels& pixels) { std::memcpy(to, &pixels, sizeof pixels); }

// As above; each pixel's factor stands in both of its halves.
INLINE void scale(Pixels& pixels, const Halves& factors)
{
    Halves rb = reinterpret_cast<Halves>(pixels & evenBytes), ag = reinterpret_cast<Halves>(pixels) >> 8;
    rb = rb * factors + 128;
    ag = ag * factors + 128;
    rb = (rb + (rb >> 8)) >> 8;
    ag = ag + (ag >> 8);
    pixels = reinterpret_cast<Pixels>(rb) | (reinterpret_cast<Pixels>(ag) & ~evenBytes);
}
INLINE void scale(Pixels& pixels, std::uint32_t factor)
{
    const Halves factors = Halves {} + std::uint16_t(factor);
    scale(pixels, factors);
}
// By factors of 0 to 255, one in each word.
INLINE void scaleEach(Pixels& pixels, const Pixels& factors)
{
    const Pixels both = factors | factors << 16;
    scale(pixels, reinterpret_cast<Halves>(both));
}
// The same by bytes in memory, one a pixel.
INLINE void scaleEach(Pixels& pixels, const std::uint8_t* factors)
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
INLINE void putOver(Pixel* to, const Pixels& from)
{
    Pixels below;
    load(below, to);
    scaleEach(below, 255 - (from >> 24));
    store(to, from + below);
}

using Steps = std::int32_t __attribute__((vector_size(4 * wide)));
constexpr Steps firstSteps { 0, 1, 2, 3, 4, 5, 6, 7 };

// What lies at these places from the pointer on, which are below `wide`.
INLINE void pick(Pixels& to, const Pixel* from, const Steps& places)
{
    load(to, from);
#if defined(__clang__) // has no shuffle by variable places
    const Pixels all = to;
    for (int i = 0; i < wide; ++i)
        to[i] = all[places[i]];
#else
    to = __builtin_shuffle(to, places);
#endif
}

// Each pixel's weight, 0 to 255 of 256, is that of b; it stands in both of its halves.
INLINE void mix(Pixels& a, const Pixels& b, const Halves& weights)
{
    const Halves rest = 256 - weights;
    const Halves rb = reinterpret_cast<Halves>(a & evenBytes) * rest + reinterpret_cast<Halves>(b & evenBytes) * weights;
    const Halves ag = (reinterpret_cast<Halves>(a) >> 8) * rest + (reinterpret_cast<Halves>(b) >> 8) * weights;
    a = reinterpret_cast<Pixels>((rb + 128) >> 8) | (reinterpret_cast<Pixels>(ag + 128) & ~evenBytes);
}

// How many of `count` steps from `first` stay within 0 and `limit`, exclusive; `skipped` steps before that are outside.
struct Run {
    int skipped, inside;
};
INLINE Run runInside(std::int64_t first, std::int64_t step, std::int64_t limit, int count)
{
    if (limit <= 0)
        return { count, 0 };
    const auto stepsTo = [&](std::int64_t distance, std::int64_t stride) { // until it is covered, rounded up
        return distance <= 0 ? 0 : int(std::min<std::int64_t>((distance + stride - 1) / stride, count));
    };
    if (step == 0)
        return first >= 0 && first < limit ? Run { 0, count } : Run { count, 0 };
    const int from = step > 0 ? stepsTo(-first, step) : stepsTo(first - limit + 1, -step);
    const int to = step > 0 ? stepsTo(limit - first, step) : stepsTo(first + 1, -step);
    return { from, std::max(to - from, 0) };
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

MIVORA_CLONES void mixRows(Pixel* __restrict to, const Pixel* __restrict a, const Pixel* __restrict b, int count, unsigned weight)
{
    const Halves weights = Halves {} + std::uint16_t(weight);
    int i = 0;
    for (Pixels p, q; i + wide <= count; i += wide) {
        load(p, a + i);
        load(q, b + i);
        mix(p, q, weights);
        store(to + i, p);
    }
    for (; i < count; ++i)
        to[i] = mixed(a[i], b[i], weight);
}

MIVORA_CLONES void sampleRow(
    Pixel* __restrict to, const Pixel* __restrict row, int last, std::int64_t x, std::int64_t step, int count)
{
    // The held ends apart, what remains fits 32 bits and needs no bounds.
    const Run run = runInside(x, step, std::int64_t(last) << 16, count);
    for (int i = 0; i < run.skipped; ++i)
        to[i] = row[x + i * step < 0 ? 0 : last];
    const auto start = std::int32_t(x + run.skipped * step), stride = std::int32_t(step);
    Pixel* __restrict out = to + run.skipped;
    int i = 0;
    // Growing, so many results lie between no more pixels than that, and one beyond.
    for (; stride > 0 && stride <= 65536 && i + wide <= run.inside; i += wide) {
        const std::int32_t first = (start + i * stride) >> 16;
        if (first + wide > last)
            break;
        const Steps at = (start + i * stride - (first << 16)) + firstSteps * stride;
        const Steps places = at >> 16, weights = (at >> 8) & 255;
        const Steps both = weights | weights << 16;
        Pixels left, right;
        pick(left, row + first, places);
        pick(right, row + first + 1, places);
        mix(left, right, reinterpret_cast<Halves>(both));
        store(out + i, left);
    }
    for (; i < run.inside; ++i) {
        const std::int32_t at = start + i * stride;
        out[i] = mixed(row[at >> 16], row[(at >> 16) + 1], std::uint32_t(at >> 8) & 255);
    }
    for (i = run.skipped + run.inside; i < count; ++i)
        to[i] = row[x + i * step < 0 ? 0 : last];
}

MIVORA_CLONES void samplePicture(
    Pixel* __restrict to, const Pixel* __restrict pixels, int stride, int width, int height, SlantedWalk walk, int count)
{
    const std::int64_t endX = std::int64_t(width - 1) << 16, endY = std::int64_t(height - 1) << 16;
    const auto held = [&](int from, int until) {
        for (int i = from; i < until; ++i) {
            const std::int64_t x = std::clamp<std::int64_t>(walk.x + i * walk.stepX, 0, endX);
            const std::int64_t y = std::clamp<std::int64_t>(walk.y + i * walk.stepY, 0, endY);
            const int left = int(x >> 16), top = int(y >> 16);
            const int right = std::min(left + 1, width - 1), bottom = std::min(top + 1, height - 1);
            const unsigned weightX = unsigned(x >> 8) & 255, weightY = unsigned(y >> 8) & 255;
            const Pixel* a = pixels + std::ptrdiff_t(top) * stride;
            const Pixel* b = pixels + std::ptrdiff_t(bottom) * stride;
            to[i] = mixed(mixed(a[left], b[left], weightY), mixed(a[right], b[right], weightY), weightX);
        }
    };
    const Run alongX = runInside(walk.x, walk.stepX, endX, count), alongY = runInside(walk.y, walk.stepY, endY, count);
    const int from = std::max(alongX.skipped, alongY.skipped);
    const int until = std::max(from, std::min(alongX.skipped + alongX.inside, alongY.skipped + alongY.inside));
    held(0, from);
    // Within the picture 32 bits do, and nothing needs to be held.
    const auto x0 = std::int32_t(walk.x + from * walk.stepX), y0 = std::int32_t(walk.y + from * walk.stepY);
    const auto stepX = std::int32_t(walk.stepX), stepY = std::int32_t(walk.stepY);
    Pixel* __restrict out = to + from;
    for (int i = 0; i < until - from; ++i) {
        const std::int32_t x = x0 + i * stepX, y = y0 + i * stepY;
        const std::int32_t at = (y >> 16) * stride + (x >> 16);
        const std::uint32_t weightX = std::uint32_t(x >> 8) & 255, weightY = std::uint32_t(y >> 8) & 255;
        out[i] = mixed(
            mixed(pixels[at], pixels[at + stride], weightY), mixed(pixels[at + 1], pixels[at + stride + 1], weightY), weightX);
    }
    held(until, count);
}

MIVORA_CLONES void lookUp(
    Pixel* __restrict to, const Pixel* __restrict table, int last, std::int64_t position, std::int64_t step, int count)
{
    const std::int64_t end = std::int64_t(last) << 16;
    const Run run = runInside(position, step, end, count);
    for (int i = 0; i < run.skipped; ++i)
        to[i] = table[position + i * step < 0 ? 0 : last];
    const auto start = std::int32_t(position + run.skipped * step), stride = std::int32_t(step);
    Pixel* __restrict out = to + run.skipped;
    for (int i = 0; i < run.inside; ++i)
        out[i] = table[(start + i * stride) >> 16];
    for (int i = run.skipped + run.inside; i < count; ++i)
        to[i] = table[position + i * step < 0 ? 0 : last];
}

MIVORA_CLONES void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count)
{
    const CGAffineTransform& m = shape.toLocal;
    // Device pixels for a step across each pair of sides.
    const double acrossX = 1 / std::max(std::hypot(m.a, m.c), 1e-9), acrossY = 1 / std::max(std::hypot(m.b, m.d), 1e-9);
    const auto clamped = [](double v) { return v < 0 ? 0.0 : v > 1 ? 1.0 : v; };
    const CGRect& r = shape.rect;
    const double radius = shape.radius;
    for (int i = 0; i < count; ++i) {
        const double px = x + i + 0.5, py = y + 0.5;
        const double lx = m.a * px + m.c * py + m.tx, ly = m.b * px + m.d * py + m.ty;
        const double left = lx - r.x, right = r.x + r.width - lx, top = ly - r.y, bottom = r.y + r.height - ly;
        const double spanX = clamped(0.5 + left * acrossX) + clamped(0.5 + right * acrossX) - 1;
        const double spanY = clamped(0.5 + top * acrossY) + clamped(0.5 + bottom * acrossY) - 1;
        double cover = clamped(spanX) * clamped(spanY);
        const double nearX = std::min(left, right), nearY = std::min(top, bottom);
        const unsigned corner = (left <= right ? 1u : 2u) << (top <= bottom ? 0 : 2);
        if (nearX < radius && nearY < radius && (shape.corners & corner)) {
            // Distance from the corner's circle: its implicit function over the gradient in device pixels.
            const double u = (radius - nearX) / radius, v = (radius - nearY) / radius;
            const double length = std::sqrt(u * u + v * v);
            const double su = left <= right ? u : -u, sv = top <= bottom ? v : -v;
            const double gradientX = m.a * su + m.b * sv, gradientY = m.c * su + m.d * sv;
            const double slope = std::sqrt(gradientX * gradientX + gradientY * gradientY) / radius;
            cover = std::min(cover, slope > 0 ? clamped(0.5 - length * (length - 1) / slope) : 1.0);
        }
        to[i] = std::uint8_t(cover * 255 + 0.5);
    }
}

MIVORA_CLONES void addBytes(std::uint16_t* __restrict sums, const std::uint8_t* __restrict bytes, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] = std::uint16_t(sums[i] + bytes[i]);
}

MIVORA_CLONES void reduceColumns(
    std::uint16_t* __restrict cells, const std::uint16_t* __restrict sums, int count, int pixelsEach, unsigned weight)
{
    if (pixelsEach == 4) {
        for (int i = 0; i < count; ++i) {
            for (int c = 0; c < 4; ++c) {
                const std::uint16_t* s = sums + 16 * i + c;
                cells[4 * i + c] = std::uint16_t(((s[0] + s[4] + s[8] + s[12]) * weight) >> 8);
            }
        }
    } else if (pixelsEach == 2) {
        for (int i = 0; i < count; ++i) {
            for (int c = 0; c < 4; ++c)
                cells[4 * i + c] = std::uint16_t(((sums[8 * i + c] + sums[8 * i + 4 + c]) * weight) >> 8);
        }
    } else {
        for (int i = 0; i < 4 * count; ++i)
            cells[i] = std::uint16_t((sums[i] * weight) >> 8);
    }
}

MIVORA_CLONES void slideColumns(std::uint32_t* __restrict sums, std::uint16_t* __restrict to,
    const std::uint16_t* __restrict enter, const std::uint16_t* __restrict leave, float scale, int count)
{
    for (int i = 0; i < count; ++i) {
        to[i] = std::uint16_t(std::int32_t(float(std::int32_t(sums[i])) * scale + 0.5f));
        sums[i] += std::uint32_t(enter[i]) - leave[i];
    }
}

MIVORA_CLONES void saturate(Pixel* __restrict to, const std::uint16_t* __restrict cells, int count, int share)
{
    const auto channel = [](int v) { return Pixel(std::clamp((v + 128) >> 8, 0, 255)); };
    for (int i = 0; i < count; ++i) {
        const int b = cells[4 * i], g = cells[4 * i + 1], r = cells[4 * i + 2];
        // The weights of the primaries in brightness, as usual in image editing (ITU-R BT.709), in 1/256.
        const int gray = (54 * r + 183 * g + 19 * b) >> 8;
        const auto mixedWithGray = [&](int v) { return channel(gray + (((v - gray) * share) >> 8)); };
        to[i] = share == 256 ? opaqueAlpha | channel(r) << 16 | channel(g) << 8 | channel(b)
                             : opaqueAlpha | mixedWithGray(r) << 16 | mixedWithGray(g) << 8 | mixedWithGray(b);
    }
}

MIVORA_CLONES void accumulate(float* __restrict row, const float* __restrict other, float weight, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] += weight * other[i];
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
void mixRows(Pixel* to, const Pixel* a, const Pixel* b, int count, unsigned weight) { loops::mixRows(to, a, b, count, weight); }
void sampleRow(Pixel* to, const Pixel* row, int last, std::int64_t x, std::int64_t step, int count)
{
    loops::sampleRow(to, row, last, x, step, count);
}
void samplePicture(Pixel* to, const Pixel* pixels, int stride, int width, int height, SlantedWalk walk, int count)
{
    loops::samplePicture(to, pixels, stride, width, height, walk, count);
}
void lookUp(Pixel* to, const Pixel* table, int last, std::int64_t position, std::int64_t step, int count)
{
    loops::lookUp(to, table, last, position, step, count);
}
void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count) { loops::coverRow(to, shape, x, y, count); }
void addBytes(std::uint16_t* sums, const std::uint8_t* bytes, int count) { loops::addBytes(sums, bytes, count); }
void slideColumns(
    std::uint32_t* sums, std::uint16_t* to, const std::uint16_t* enter, const std::uint16_t* leave, float scale, int count)
{
    loops::slideColumns(sums, to, enter, leave, scale, count);
}
void reduceColumns(std::uint16_t* cells, const std::uint16_t* sums, int count, int pixelsEach, unsigned weight)
{
    loops::reduceColumns(cells, sums, count, pixelsEach, weight);
}
void saturate(Pixel* to, const std::uint16_t* cells, int count, int share) { loops::saturate(to, cells, count, share); }
void accumulate(float* row, const float* other, float weight, int count) { loops::accumulate(row, other, weight, count); }

} // namespace platform::rows
