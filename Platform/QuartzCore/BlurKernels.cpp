#include "Platform/QuartzCore/BlurKernels.h"

#include "Platform/QuartzCore/WidePixels.h"

#include <algorithm>

namespace platform::rows {

// Functions of their own name, as one compiler wants every declaration of a clone marked.
namespace loops {

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

} // namespace loops

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

} // namespace platform::rows
