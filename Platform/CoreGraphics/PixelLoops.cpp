#include "Platform/CoreGraphics/PixelLoops.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform::pixels {
namespace {
using Word = std::uint32_t;
constexpr Word evenBytes = 0x00ff00ff;

// Two channels (bits 0 to 7 and 16 to 23) times factor/255, rounded.
inline Word scaledPair(Word pair, Word factor)
{
    const Word product = pair * factor + 0x00800080;
    return ((product + ((product >> 8) & evenBytes)) >> 8) & evenBytes;
}

inline Word scaled(Word word, Word factor)
{
    return scaledPair(word & evenBytes, factor) | (scaledPair((word >> 8) & evenBytes, factor) << 8);
}

inline Word over(Word source, Word destination) { return source + scaled(destination, 255 - (source >> 24)); }
}

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {
MIVORA_CLONES void blendCoverageRow(Word* row, const std::uint8_t* coverage, int count, Word color)
{
    const Word redBlue = color & evenBytes, alphaGreen = (color >> 8) & evenBytes;
    for (int i = 0; i < count; ++i) {
        const Word c = coverage[i];
        const Word source = scaledPair(redBlue, c) | (scaledPair(alphaGreen, c) << 8);
        row[i] = over(source, row[i]);
    }
}

MIVORA_CLONES void blendRow(Word* row, const Word* source, int count, Word opacity, Word opaqueBits)
{
    if (opacity == 255) {
        for (int i = 0; i < count; ++i)
            row[i] = over(source[i] | opaqueBits, row[i]);
        return;
    }
    for (int i = 0; i < count; ++i)
        row[i] = over(scaled(source[i] | opaqueBits, opacity), row[i]);
}

MIVORA_CLONES void addRow(std::uint8_t* row, const std::uint8_t* coverage, int count)
{
    for (int i = 0; i < count; ++i) {
        const unsigned sum = unsigned(row[i]) + coverage[i];
        row[i] = std::uint8_t(sum > 255 ? 255 : sum);
    }
}
}

std::uint32_t premultiplied(const CGColor& color, double opacity)
{
    const auto unit = [](double v) { return v > 0 ? std::min(v, 1.0) : 0.0; };
    const double alpha = unit(color.alpha) * unit(opacity);
    const auto byte = [&](double v) { return Word(std::lround(unit(v) * alpha * 255)); };
    return Word(std::lround(alpha * 255)) << 24 | byte(color.red) << 16 | byte(color.green) << 8 | byte(color.blue);
}

void fill(std::uint32_t* row, int count, std::uint32_t word) { std::fill_n(row, count, word); }

void blendCoverage(Bitmap& target, const PixelRect& clip, const CoverageView& coverage, int x, int y, std::uint32_t color)
{
    const auto area = PixelRect { x, y, coverage.width, coverage.height }.intersection(clip);
    for (int line = area.y; line < area.maxY(); ++line) {
        const auto* source = coverage.data + std::ptrdiff_t(line - y) * coverage.stride + (area.x - x);
        loops::blendCoverageRow(target.row(line) + area.x, source, area.width, color);
    }
}

void blendPixels(Bitmap& target, const PixelRect& clip, const Bitmap& source, int x, int y, unsigned opacity)
{
    const auto area = PixelRect { x, y, source.width(), source.height() }.intersection(clip);
    const bool opaque = source.format() == PixelFormat::xrgb;
    for (int line = area.y; line < area.maxY(); ++line) {
        const auto* from = source.row(line - y) + (area.x - x);
        auto* to = target.row(line) + area.x;
        if (opaque && opacity == 255 && target.format() == PixelFormat::xrgb)
            std::memcpy(to, from, std::size_t(area.width) * 4);
        else
            loops::blendRow(to, from, area.width, opacity, opaque ? 0xff000000 : 0);
    }
}

void addCoverage(Bitmap& target, const PixelRect& clip, const CoverageView& coverage, int x, int y)
{
    const auto area = PixelRect { x, y, coverage.width, coverage.height }.intersection(clip);
    for (int line = area.y; line < area.maxY(); ++line) {
        const auto* source = coverage.data + std::ptrdiff_t(line - y) * coverage.stride + (area.x - x);
        loops::addRow(target.alphaRow(line) + area.x, source, area.width);
    }
}

void premultiply(std::uint32_t* row, int count)
{
    for (int i = 0; i < count; ++i) {
        const Word alpha = row[i] >> 24;
        if (alpha != 255)
            row[i] = (scaled(row[i], alpha) & 0x00ffffff) | alpha << 24;
    }
}

void unpremultiply(std::uint32_t* row, int count)
{
    for (int i = 0; i < count; ++i) {
        const Word word = row[i], alpha = word >> 24;
        if (alpha == 255 || alpha == 0)
            continue;
        const auto channel = [&](int shift) { return std::min<Word>((((word >> shift) & 255) * 255 + alpha / 2) / alpha, 255); };
        row[i] = alpha << 24 | channel(16) << 16 | channel(8) << 8 | channel(0);
    }
}

} // namespace platform::pixels
