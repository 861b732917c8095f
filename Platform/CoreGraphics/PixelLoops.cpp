#include "Platform/CoreGraphics/PixelLoops.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

#include <cmath>
#include <cstring>
#include <vector>

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

// sums += bytes * weight; weights add up to 256.
MIVORA_CLONES void weighRow(std::uint16_t* sums, const std::uint8_t* bytes, int count, std::uint16_t weight)
{
    for (int i = 0; i < count; ++i)
        sums[i] = std::uint16_t(sums[i] + bytes[i] * weight);
}

MIVORA_CLONES void roundRow(std::uint8_t* bytes, const std::uint16_t* sums, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = std::uint8_t((sums[i] + 128u) >> 8);
}

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

// Positions are 12.20; rounding may carry one a hair over the ramp's ends.
MIVORA_CLONES void rampRow(Word* row, int count, const Word* ramp, std::int32_t position, std::int32_t step)
{
    constexpr std::int32_t last = (1024 - 1) << 20;
    for (int i = 0; i < count; ++i) {
        const std::int32_t at = position + i * step;
        row[i] = ramp[std::uint32_t(at < 0 ? 0 : at > last ? last : at) >> 20];
    }
}

// A sliding box over columns: each sum gains the entering row and loses the leaving one.
MIVORA_CLONES void slideRow(Word* sums, const std::uint8_t* entering, const std::uint8_t* leaving, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] += Word(entering[i]) - Word(leaving[i]);
}

// Sums to averages; reciprocal is 2^16 over the box's length.
MIVORA_CLONES void averageRow(std::uint8_t* bytes, const Word* sums, int count, Word reciprocal)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = std::uint8_t((sums[i] * reciprocal + 0x8000) >> 16);
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

namespace {
constexpr double largestKernelSigma = 3; // pixels; beyond it three boxes are as good and faster

// Weights that add up to 256, from the centre outwards.
std::vector<std::uint16_t> gaussianKernel(double sigma)
{
    const int reach = int(std::ceil(3 * sigma));
    std::vector<double> exact(std::size_t(reach) + 1);
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        exact[std::size_t(i)] = std::exp(-double(i) * i / (2 * sigma * sigma));
        sum += exact[std::size_t(i)] * (i ? 2 : 1);
    }
    std::vector<std::uint16_t> kernel;
    int rest = 256;
    for (double weight : exact) {
        kernel.push_back(std::uint16_t(std::lround(weight / sum * 256)));
        rest -= int(kernel.back()) * (kernel.size() > 1 ? 2 : 1);
    }
    kernel[0] = std::uint16_t(kernel[0] + rest);
    return kernel;
}

void transpose(const Bitmap& source, Bitmap& target)
{
    constexpr int block = 32; // pixels; both blocks stay in the nearest cache
    for (int top = 0; top < source.height(); top += block) {
        for (int left = 0; left < source.width(); left += block) {
            const int bottom = std::min(top + block, source.height()), right = std::min(left + block, source.width());
            for (int y = top; y < bottom; ++y) {
                for (int x = left; x < right; ++x)
                    target.alphaRow(x)[y] = source.alphaRow(y)[x];
            }
        }
    }
}

// Weighs whole rows, which vectorises; both directions go through it, the second one transposed.
void blurColumnsByKernel(const Bitmap& source, Bitmap& target, const std::vector<std::uint16_t>& kernel)
{
    const int width = source.width(), height = source.height(), reach = int(kernel.size()) - 1;
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), std::uint16_t(0));
        for (int i = std::max(y - reach, 0); i <= std::min(y + reach, height - 1); ++i)
            loops::weighRow(sums.data(), source.alphaRow(i), width, kernel[std::size_t(std::abs(i - y))]);
        loops::roundRow(target.alphaRow(y), sums.data(), width);
    }
}

void blurColumnsByBox(const Bitmap& source, Bitmap& target, int length)
{
    const int width = source.width(), height = source.height(), reach = length / 2;
    std::vector<Word> sums(static_cast<std::size_t>(width));
    const std::vector<std::uint8_t> nothing(static_cast<std::size_t>(width));
    const auto rowAt = [&](int y) { return y >= 0 && y < height ? source.alphaRow(y) : nothing.data(); };
    for (int y = 0; y < reach; ++y)
        loops::slideRow(sums.data(), rowAt(y), nothing.data(), width);
    const Word reciprocal = Word((65536 + length / 2) / length);
    for (int y = 0; y < height; ++y) {
        loops::slideRow(sums.data(), rowAt(y + reach), rowAt(y - reach - 1), width);
        loops::averageRow(target.alphaRow(y), sums.data(), width, reciprocal);
    }
}

void blurColumns(Bitmap& bitmap, Bitmap& scratch, double sigma)
{
    if (sigma <= largestKernelSigma) {
        blurColumnsByKernel(bitmap, scratch, gaussianKernel(sigma));
        for (int y = 0; y < bitmap.height(); ++y)
            std::memcpy(bitmap.alphaRow(y), scratch.alphaRow(y), std::size_t(bitmap.width()));
        return;
    }
    // Three boxes of odd lengths whose variances, (length^2 - 1) / 12 each, add up to the gaussian's.
    const double ideal = std::sqrt(4 * sigma * sigma + 1);
    const int shorter = int((ideal - 1) / 2) * 2 + 1;
    const double wanted = 12 * sigma * sigma;
    const int shortOnes
        = std::clamp(int(std::lround((3.0 * (shorter + 2) * (shorter + 2) - 3 - wanted) / (4.0 * shorter + 4))), 0, 3);
    const auto length = [&](int pass) { return pass < shortOnes ? shorter : shorter + 2; };
    blurColumnsByBox(bitmap, scratch, length(0));
    blurColumnsByBox(scratch, bitmap, length(1));
    blurColumnsByBox(bitmap, scratch, length(2));
    for (int y = 0; y < bitmap.height(); ++y)
        std::memcpy(bitmap.alphaRow(y), scratch.alphaRow(y), std::size_t(bitmap.width()));
}
}

void blurCoverage(Bitmap& coverage, double sigma)
{
    if (!(sigma > 0.05))
        return;
    const auto scratch = Bitmap::make(coverage.width(), coverage.height(), PixelFormat::alpha);
    const auto turned = Bitmap::make(coverage.height(), coverage.width(), PixelFormat::alpha);
    const auto turnedScratch = Bitmap::make(coverage.height(), coverage.width(), PixelFormat::alpha);
    if (!scratch || !turned || !turnedScratch)
        return;
    blurColumns(coverage, *scratch, sigma);
    transpose(coverage, *turned);
    blurColumns(*turned, *turnedScratch, sigma);
    transpose(*turned, coverage);
}

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
                loops::weighRow(sums.data(), reinterpret_cast<const std::uint8_t*>(from->row(t.first + i)), bytes, weight);
        }
        loops::roundRow(reinterpret_cast<std::uint8_t*>(line.data()), sums.data(), bytes);
        resampleRow(result->row(y), line.data(), columns);
    }
    return result;
}

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
