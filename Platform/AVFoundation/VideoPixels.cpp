#include "Platform/AVFoundation/VideoPixels.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace platform {

namespace {

using Sample = std::int16_t; // a byte times 128, so that differences of two fit
using Word = std::uint32_t;

constexpr int one = 128; // of a Sample, for each step of a byte

// Where a row of results lies in a row of sources: the source left of each, and the share of its right neighbour (0 to 128).
struct Columns {
    std::vector<std::int32_t> index;
    std::vector<std::int32_t> share;
};

// Factors for 16 times the results from Samples, over 65536.
struct Matrix {
    int black; // of brightness
    int y, redV, greenU, greenV, blueU;
};

int factor(double value) { return int(std::lround(value * 65536 * 16 / one)); }

Matrix matrixFor(const VideoPlanes& planes)
{
    if (planes.isFullRange)
        return planes.isHighDefinition ? Matrix { 0, factor(1), factor(1.5748), factor(0.1873), factor(0.4681), factor(1.8556) }
                                       : Matrix { 0, factor(1), factor(1.402), factor(0.3441), factor(0.7141), factor(1.772) };
    constexpr double y = 255.0 / 219;
    return planes.isHighDefinition
        ? Matrix { 16 * one, factor(y), factor(1.7927), factor(0.2132), factor(0.5329), factor(2.1124) }
        : Matrix { 16 * one, factor(y), factor(1.5960), factor(0.3918), factor(0.8130), factor(2.0172) };
}

} // namespace

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace videoLoops {

// Each sample with its right neighbour in one word; the last one stands for its own.
MIVORA_CLONES void pairUp(Word* pairs, const std::uint8_t* row, int count)
{
    for (int i = 0; i + 1 < count; ++i)
        pairs[i] = Word(row[i]) | Word(row[i + 1]) << 16;
    pairs[count - 1] = Word(row[count - 1]) * 0x00010001u;
}

MIVORA_CLONES void pairUpBoth(Word* pairs, const std::uint8_t* u, const std::uint8_t* v, int count)
{
    for (int i = 0; i + 1 < count; ++i)
        pairs[i] = Word(u[i]) | Word(v[i]) << 8 | Word(u[i + 1]) << 16 | Word(v[i + 1]) << 24;
    pairs[count - 1] = (Word(u[count - 1]) | Word(v[count - 1]) << 8) * 0x00010001u;
}

MIVORA_CLONES void stretch(Sample* to, const Word* pairs, const std::int32_t* index, const std::int32_t* share, int count)
{
    for (int i = 0; i < count; ++i) {
        const Word pair = pairs[index[i]];
        const int left = int(pair & 255), right = int(pair >> 16);
        to[i] = Sample(left * one + (right - left) * share[i]);
    }
}

MIVORA_CLONES void stretchBoth(
    Sample* u, Sample* v, const Word* pairs, const std::int32_t* index, const std::int32_t* share, int count)
{
    for (int i = 0; i < count; ++i) {
        const Word pair = pairs[index[i]];
        const int leftU = int(pair & 255), rightU = int(pair >> 16 & 255);
        const int leftV = int(pair >> 8 & 255), rightV = int(pair >> 24);
        u[i] = Sample(leftU * one + (rightU - leftU) * share[i]);
        v[i] = Sample(leftV * one + (rightV - leftV) * share[i]);
    }
}

// Mixes two rows; a share of 0 is the upper one, of 32767 all but the lower one.
MIVORA_CLONES void mix(Sample* to, const Sample* upper, const Sample* lower, int count, int share)
{
    const auto part = Sample(share);
    for (int i = 0; i < count; ++i) {
        const auto difference = Sample(lower[i] - upper[i]);
        to[i] = Sample(upper[i] + 2 * Sample((int(difference) * int(part)) >> 16));
    }
}

MIVORA_CLONES void color(Word* to, const Sample* y, const Sample* u, const Sample* v, int count, const int* factors)
{
    const auto black = Sample(factors[0]), byY = Sample(factors[1]), redV = Sample(factors[2]), greenU = Sample(factors[3]),
               greenV = Sample(factors[4]), blueU = Sample(factors[5]);
    const auto times = [](Sample value, Sample by) { return Sample((int(value) * int(by)) >> 16); };
    const auto byte = [](Sample value) {
        const auto rounded = Sample(Sample(value + 8) >> 4);
        return Sample(rounded < 0 ? 0 : rounded > 255 ? 255 : rounded);
    };
    for (int i = 0; i < count; ++i) {
        const auto light = times(Sample(y[i] - black), byY);
        const auto cu = Sample(u[i] - 128 * one), cv = Sample(v[i] - 128 * one);
        const auto red = byte(Sample(light + times(cv, redV)));
        const auto green = byte(Sample(light - times(cu, greenU) - times(cv, greenV)));
        const auto blue = byte(Sample(light + times(cu, blueU)));
        to[i] = 0xff000000u | Word(red) << 16 | Word(green) << 8 | Word(blue);
    }
}

MIVORA_CLONES void halve(std::uint8_t* to, const std::uint8_t* upper, const std::uint8_t* lower, int count)
{
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t((upper[2 * i] + upper[2 * i + 1] + lower[2 * i] + lower[2 * i + 1] + 2) >> 2);
}

} // namespace videoLoops

namespace {

// Positions in 1/65536 of a source sample, from the first one's centre.
struct Axis {
    std::int64_t start;
    std::int64_t step;
    int last; // the last source sample

    std::int64_t at(int i) const { return std::clamp<std::int64_t>(start + i * step, 0, std::int64_t(last) << 16); }
};

Axis axisFor(double from, double length, int results, int sources)
{
    const double step = length / results;
    return { std::llround((from + step / 2 - 0.5) * 65536), std::llround(step * 65536), sources - 1 };
}

// The colour samples' axis: half as many, the first of them `offset` right or below of the first brightness.
Axis colorAxis(const Axis& axis, double offset, int sources)
{
    return { (axis.start - std::int64_t(offset * 65536)) / 2, axis.step / 2, sources - 1 };
}

Columns columnsFor(const Axis& axis, int count)
{
    Columns columns { std::vector<std::int32_t>(std::size_t(count)), std::vector<std::int32_t>(std::size_t(count)) };
    for (int i = 0; i < count; ++i) {
        const auto at = axis.at(i);
        columns.index[std::size_t(i)] = std::int32_t(at >> 16);
        columns.share[std::size_t(i)] = std::int32_t((at & 65535) >> 9);
    }
    return columns;
}

// The two rows that were stretched last, by their numbers.
class Rows {
public:
    Rows(int planes, int width)
        : width(std::size_t(width))
    {
        for (auto& row : rows)
            row.samples.resize(std::size_t(planes) * this->width);
    }

    // The row of that number, made by `make(samples)` unless it is there.
    template <typename Make> const Sample* row(int number, const Make& make)
    {
        for (const Row& row : rows)
            if (row.number == number)
                return row.samples.data();
        Row& oldest = rows[0].number < rows[1].number ? rows[0] : rows[1];
        oldest.number = number;
        make(oldest.samples.data());
        return oldest.samples.data();
    }

private:
    struct Row {
        int number = -1;
        std::vector<Sample> samples;
    };
    std::size_t width;
    Row rows[2];
};

// Half the size, in memory of its own.
struct HalvedPlanes {
    VideoPlanes planes;
    std::vector<std::uint8_t> y, u, v;

    explicit HalvedPlanes(const VideoPlanes& from)
        : planes(from)
    {
        planes.width = from.width / 2 & ~1;
        planes.height = from.height / 2 & ~1;
        const int colorWidth = planes.width / 2, colorHeight = planes.height / 2;
        halve(y, from.y, from.yStride, planes.width, planes.height);
        halve(u, from.u, from.uStride, colorWidth, colorHeight);
        halve(v, from.v, from.vStride, colorWidth, colorHeight);
        planes.y = y.data();
        planes.u = u.data();
        planes.v = v.data();
        planes.yStride = planes.width;
        planes.uStride = planes.vStride = colorWidth;
    }

private:
    static void halve(std::vector<std::uint8_t>& to, const std::uint8_t* from, int stride, int width, int height)
    {
        to.resize(std::size_t(width) * std::size_t(height));
        for (int row = 0; row < height; ++row) {
            const auto* upper = from + std::ptrdiff_t(2 * row) * stride;
            videoLoops::halve(to.data() + std::ptrdiff_t(row) * width, upper, upper + stride, width);
        }
    }
};

void draw(const VideoPlanes& planes, const VideoPart& part, Bitmap& to)
{
    const int width = to.width();
    const int colorWidth = (planes.width + 1) / 2, colorHeight = (planes.height + 1) / 2;
    const Axis across = axisFor(part.x, part.width, width, planes.width);
    const Axis down = axisFor(part.y, part.height, to.height(), planes.height);
    // Colours lie on every second column, and between every two rows.
    const Axis colorDown = colorAxis(down, 0.5, colorHeight);
    const Columns columns = columnsFor(across, width);
    const Columns colorColumns = columnsFor(colorAxis(across, 0, colorWidth), width);
    std::vector<Word> pairs(static_cast<std::size_t>(planes.width));
    Rows light(1, width), tint(2, width);
    std::vector<Sample> y(static_cast<std::size_t>(width)), uv(static_cast<std::size_t>(2 * width));
    const Matrix matrix = matrixFor(planes);
    const int factors[] = { matrix.black, matrix.y, matrix.redV, matrix.greenU, matrix.greenV, matrix.blueU };
    const auto lightRow = [&](int number) {
        return light.row(number, [&](Sample* samples) {
            videoLoops::pairUp(pairs.data(), planes.y + std::ptrdiff_t(number) * planes.yStride, planes.width);
            videoLoops::stretch(samples, pairs.data(), columns.index.data(), columns.share.data(), width);
        });
    };
    const auto tintRow = [&](int number) {
        return tint.row(number, [&](Sample* samples) {
            videoLoops::pairUpBoth(pairs.data(), planes.u + std::ptrdiff_t(number) * planes.uStride,
                planes.v + std::ptrdiff_t(number) * planes.vStride, colorWidth);
            videoLoops::stretchBoth(
                samples, samples + width, pairs.data(), colorColumns.index.data(), colorColumns.share.data(), width);
        });
    };
    const auto mixed = [](Sample* room, const auto& rowOf, const Axis& axis, int i, int count) {
        const auto at = axis.at(i);
        const int number = int(at >> 16), share = int(at & 65535) >> 1;
        const Sample* upper = rowOf(number);
        if (share == 0 || number == axis.last)
            return upper;
        const Sample* lower = rowOf(number + 1); // the upper one stays: the two newest are kept
        videoLoops::mix(room, upper, lower, count, share);
        return static_cast<const Sample*>(room);
    };
    for (int row = 0; row < to.height(); ++row) {
        const Sample* lights = mixed(y.data(), lightRow, down, row, width);
        const Sample* tints = mixed(uv.data(), tintRow, colorDown, row, 2 * width);
        videoLoops::color(to.row(row), lights, tints, tints + width, width, factors);
    }
}

} // namespace

std::shared_ptr<Bitmap> drawVideo(const VideoPlanes& planes, const VideoPart& part, int width, int height)
{
    if (planes.width >= 4 && planes.height >= 4 && part.width >= 2.0 * width && part.height >= 2.0 * height) {
        const HalvedPlanes smaller(planes);
        return drawVideo(smaller.planes, { part.x / 2, part.y / 2, part.width / 2, part.height / 2 }, width, height);
    }
    auto bitmap = Bitmap::make(width, height, PixelFormat::xrgb);
    if (bitmap)
        draw(planes, part, *bitmap);
    return bitmap;
}

} // namespace platform
