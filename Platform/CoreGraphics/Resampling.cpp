#include "Platform/CoreGraphics/Resampling.h"

#include "Platform/CoreGraphics/ProcessorClones.h"
#include "Platform/CoreGraphics/RowWeights.h"

#include <algorithm>
#include <array>
#include <vector>

namespace platform::pixels {
namespace {
using Word = std::uint32_t;
constexpr Word evenBytes = 0x00ff00ff;

// Four 16-bit channels of one pixel in one word, so that one multiplication weighs all.
inline std::uint64_t spread(Word word)
{
    return std::uint64_t(word & evenBytes) | (std::uint64_t((word >> 8) & evenBytes) << 32);
}
// Back, from sums of weights of 256.
inline Word gathered(std::uint64_t sum)
{
    sum += 0x0080008000800080;
    return (Word(sum >> 8) & evenBytes) | (Word(sum >> 32) & ~evenBytes);
}
}

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {

MIVORA_CLONES void halveRows(Word* row, const Word* upper, const Word* lower, int count)
{
    for (int i = 0; i < count; ++i) {
        const Word a = upper[2 * i], b = upper[2 * i + 1], c = lower[2 * i], d = lower[2 * i + 1];
        const Word low = (a & evenBytes) + (b & evenBytes) + (c & evenBytes) + (d & evenBytes) + 0x00020002;
        const Word high
            = ((a >> 8) & evenBytes) + ((b >> 8) & evenBytes) + ((c >> 8) & evenBytes) + ((d >> 8) & evenBytes) + 0x00020002;
        row[i] = ((low >> 2) & evenBytes) | (((high >> 2) & evenBytes) << 8);
    }
}

} // namespace loops

std::shared_ptr<Bitmap> halved(const Bitmap& source)
{
    const int width = (source.width() + 1) / 2, height = (source.height() + 1) / 2;
    auto result = Bitmap::make(width, height, source.format());
    for (int y = 0; result && y < height; ++y) {
        const auto* upper = source.row(2 * y);
        const auto* lower = source.row(std::min(2 * y + 1, source.height() - 1));
        loops::halveRows(result->row(y), upper, lower, source.width() / 2);
        if (source.width() % 2) { // the last column stands for itself twice
            const Word column[2] = { upper[source.width() - 1], upper[source.width() - 1] };
            const Word below[2] = { lower[source.width() - 1], lower[source.width() - 1] };
            loops::halveRows(result->row(y) + width - 1, column, below, 1);
        }
    }
    return result;
}

namespace {
// Which source pixels make one result pixel: up to three, with weights that add up to 256.
struct Taps {
    int first = 0;
    std::array<std::uint16_t, 3> weights {};
};

// Shrinking to half or more: the part of each source pixel that the result pixel covers.
Taps areaTaps(std::int64_t source, std::int64_t result, int index)
{
    const std::int64_t from = index * source, to = from + source; // in units of 1/result of a source pixel
    Taps taps { int(from / result), {} };
    std::int64_t covered = 0, given = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::int64_t left = (taps.first + std::int64_t(i)) * result;
        covered += std::max<std::int64_t>(std::min(to, left + result) - std::max(from, left), 0);
        taps.weights[i] = std::uint16_t(covered * 256 / source - given);
        given += taps.weights[i];
    }
    return taps;
}

// Growing: the two source pixels around the result pixel's centre.
Taps bilinearTaps(std::int64_t source, std::int64_t result, int index)
{
    const std::int64_t position = std::clamp<std::int64_t>(
        ((2 * index + 1) * source - result) * 256 / (2 * result), 0, (source - 1) * 256); // in 1/256 of a source pixel
    const auto part = std::uint16_t(position % 256);
    return { int(position / 256), { std::uint16_t(256 - part), part, 0 } };
}

std::vector<Taps> tapsFor(int source, int result)
{
    std::vector<Taps> all(static_cast<std::size_t>(result));
    for (int i = 0; i < result; ++i)
        all[std::size_t(i)] = result < source ? areaTaps(source, result, i) : bilinearTaps(source, result, i);
    return all;
}

void resampleRow(Word* row, const Word* source, const std::vector<Taps>& taps)
{
    for (const Taps& t : taps) {
        const Word* from = source + t.first;
        *row++ = gathered(spread(from[0]) * t.weights[0] + spread(from[1]) * t.weights[1] + spread(from[2]) * t.weights[2]);
    }
}
}

std::shared_ptr<Bitmap> resampled(const Bitmap& source, int width, int height)
{
    std::shared_ptr<Bitmap> smaller;
    const Bitmap* from = &source;
    while (from->width() >= 2 * width && from->height() >= 2 * height) {
        smaller = halved(*from);
        if (!smaller)
            return nullptr;
        from = smaller.get();
    }
    auto result = Bitmap::make(width, height, source.format());
    if (!result)
        return nullptr;
    // Shrunk much in one direction only: the taps reach three pixels, so a half step in that direction goes first.
    if (from->width() > 2 * width || from->height() > 2 * height) {
        const auto step = resampled(*from, std::max(width, (from->width() + 1) / 2), std::max(height, (from->height() + 1) / 2));
        return step ? resampled(*step, width, height) : nullptr;
    }
    const auto columns = tapsFor(from->width(), width), rows = tapsFor(from->height(), height);
    const int bytes = from->width() * 4;
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(bytes));
    std::vector<Word> line(static_cast<std::size_t>(from->width()) + 2); // two more: taps of weight 0 may lie beyond the end
    for (int y = 0; y < height; ++y) {
        const Taps& t = rows[std::size_t(y)];
        std::fill(sums.begin(), sums.end(), std::uint16_t(0));
        for (int i = 0; i < 3; ++i) {
            if (const auto weight = t.weights[std::size_t(i)])
                weighRow(sums.data(), reinterpret_cast<const std::uint8_t*>(from->row(t.first + i)), bytes, weight);
        }
        roundRow(reinterpret_cast<std::uint8_t*>(line.data()), sums.data(), bytes);
        resampleRow(result->row(y), line.data(), columns);
    }
    return result;
}

} // namespace platform::pixels
