#include "Platform/QuartzCore/SampleKernels.h"

#include "Platform/QuartzCore/WidePixels.h"

#include <algorithm>

namespace platform::rows {

namespace {

// weight 0 to 256 of b against a.
MIVORA_INLINE Pixel mixed(Pixel a, Pixel b, std::uint32_t weight)
{
    const std::uint32_t rest = 256 - weight;
    const std::uint32_t rb = (a & evenBytes) * rest + (b & evenBytes) * weight + 0x00800080;
    const std::uint32_t ag = ((a >> 8) & evenBytes) * rest + ((b >> 8) & evenBytes) * weight + 0x00800080;
    return ((rb >> 8) & evenBytes) | (ag & ~evenBytes);
}

using Steps = std::int32_t __attribute__((vector_size(4 * wide)));
constexpr Steps firstSteps { 0, 1, 2, 3, 4, 5, 6, 7 };

// What lies at these places from the pointer on, which are below so many times `wide`.
template <int reach> MIVORA_INLINE void pick(Pixels& to, const Pixel* from, const Steps& places)
{
#if defined(__clang__) // has no shuffle by variable places
    for (int i = 0; i < wide; ++i)
        to[i] = from[places[i]];
#else
    load(to, from);
    if constexpr (reach == 1) {
        to = __builtin_shuffle(to, places);
    } else {
        Pixels next;
        load(next, from + wide);
        to = __builtin_shuffle(to, next, places);
    }
#endif
}

// Each pixel's weight, 0 to 255 of 256, is that of b; it stands in both of its halves.
MIVORA_INLINE void mix(Pixels& a, const Pixels& b, const Halves& weights)
{
    const Halves rest = 256 - weights;
    const Halves rb = reinterpret_cast<Halves>(a & evenBytes) * rest + reinterpret_cast<Halves>(b & evenBytes) * weights;
    const Halves ag = (reinterpret_cast<Halves>(a) >> 8) * rest + (reinterpret_cast<Halves>(b) >> 8) * weights;
    a = reinterpret_cast<Pixels>((rb + 128) >> 8) | (reinterpret_cast<Pixels>(ag + 128) & ~evenBytes);
}

// As many whole registers of linear samples as fit `count`, each of which lies between so many times `wide` pixels and one beyond
// them; the number of samples. `last` is the row's last pixel.
template <int reach>
MIVORA_INLINE int sampleWide(Pixel* out, const Pixel* row, int last, std::int32_t start, std::int32_t stride, int count)
{
    int i = 0;
    for (; i + wide <= count; i += wide) {
        const std::int32_t first = (start + i * stride) >> 16;
        if (first + reach * wide > last)
            break;
        const Steps at = (start + i * stride - (first << 16)) + firstSteps * stride;
        const Steps places = at >> 16, weights = (at >> 8) & 255;
        const Steps both = weights | weights << 16;
        Pixels left, right;
        pick<reach>(left, row + first, places);
        pick<reach>(right, row + first + 1, places);
        mix(left, right, reinterpret_cast<Halves>(both));
        store(out + i, left);
    }
    return i;
}

// How many of `count` steps from `first` stay within 0 and `limit`, exclusive; `skipped` steps before that are outside.
struct Run {
    int skipped, inside;
};
MIVORA_INLINE Run runInside(std::int64_t first, std::int64_t step, std::int64_t limit, int count)
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
    if (stride > 0 && stride <= 65536)
        i = sampleWide<1>(out, row, last, start, stride, run.inside);
    else if (stride > 0 && stride <= 2 * 65536) // a picture is halved before it shrinks further
        i = sampleWide<2>(out, row, last, start, stride, run.inside);
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

} // namespace loops

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

} // namespace platform::rows
