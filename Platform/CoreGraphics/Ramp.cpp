#include "Platform/CoreGraphics/Ramp.h"

#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/CoreGraphics/ProcessorClones.h"

#include <algorithm>
#include <cmath>

namespace platform::pixels {
namespace {
using Word = std::uint32_t;
}

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {

// Positions are 12.20; rounding may carry one a hair over the ramp's ends.
MIVORA_CLONES void rampRow(Word* row, int count, const Word* ramp, std::int32_t position, std::int32_t step)
{
    constexpr std::int32_t last = (1024 - 1) << 20;
    for (int i = 0; i < count; ++i) {
        const std::int32_t at = position + i * step;
        row[i] = ramp[std::uint32_t(at < 0 ? 0 : at > last ? last : at) >> 20];
    }
}

} // namespace loops

Ramp::Ramp(const std::vector<CGColor>& colors, const std::vector<double>& locations)
{
    const std::size_t last = colors.size() - 1;
    const auto at = [&](std::size_t i) {
        return locations.size() == colors.size() ? locations[i] : last ? double(i) / double(last) : 0;
    };
    for (const auto& color : colors)
        opaque = opaque && color.isOpaque();
    std::size_t next = 0; // the first colour beyond the position
    for (int i = 0; i < length; ++i) {
        const double position = double(i) / (length - 1);
        while (next <= last && at(next) <= position)
            ++next;
        const auto& before = colors[next ? next - 1 : 0];
        const auto& after = colors[std::min(next, last)];
        const double gap = next && next <= last ? at(next) - at(next - 1) : 0;
        const double t = gap > 0 ? (position - at(next - 1)) / gap : 0;
        // Premultiplied values are mixed, so that a clear colour lends no tint of its own.
        const double alpha = before.alpha + (after.alpha - before.alpha) * t;
        const auto mixed = [&](double CGColor::*channel) {
            const double sum = before.*channel * before.alpha * (1 - t) + after.*channel * after.alpha * t;
            return alpha > 0 ? sum / alpha : 0;
        };
        words[std::size_t(i)] = premultiplied({ mixed(&CGColor::red), mixed(&CGColor::green), mixed(&CGColor::blue), alpha });
    }
}

void Ramp::fillRow(std::uint32_t* row, int count, double position, double step) const
{
    const auto word = [this](double at) { return words[std::size_t(std::clamp(at, 0.0, 1.0) * (length - 1) + 0.5)]; };
    if (step == 0) {
        fill(row, count, word(position));
        return;
    }
    // Pixels before and after the ramp are plain; in between positions fit 32 bits (21 for the part of a step).
    const double toFirst = (step > 0 ? -position : 1 - position) / step, toLast = (step > 0 ? 1 - position : -position) / step;
    const int first = int(std::clamp(std::ceil(toFirst), 0.0, double(count)));
    const int end = int(std::clamp(std::floor(toLast) + 1, double(first), double(count)));
    fill(row, first, words[step > 0 ? 0 : length - 1]);
    constexpr double unit = double(length - 1) * (1 << 20);
    loops::rampRow(row + first, end - first, words.data(), std::int32_t(std::lround((position + first * step) * unit)),
        std::int32_t(std::lround(std::clamp(step, -1.0, 1.0) * unit)));
    fill(row + end, count - end, words[step > 0 ? length - 1 : 0]);
}

} // namespace platform::pixels
