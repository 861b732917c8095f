#include "Platform/AVFoundation/VideoRows.h"

#include <algorithm>
#include <cmath>

namespace platform {

using videoKernels::blockSize;

std::int64_t VideoRows::Axis::at(int i) const { return std::clamp<std::int64_t>(start + i * step, 0, std::int64_t(last) << 16); }

VideoRows::Axis VideoRows::axisFor(double from, double length, int results, int sources)
{
    const double step = length / results;
    return { std::llround((from + step / 2 - 0.5) * 65536), std::llround(step * 65536), sources - 1 };
}

// The colour samples' axis: half as many, the first of them `offset` right or below of the first brightness.
VideoRows::Axis VideoRows::colorAxis(const Axis& axis, double offset, int sources)
{
    return { (axis.start - std::int64_t(offset * 65536)) / 2, axis.step / 2, sources - 1 };
}

VideoRows::Columns::Columns(const Axis& axis, int blockCount)
    : last(axis.last)
{
    left.reserve(std::size_t(blockCount * blockSize));
    share.reserve(left.capacity());
    blocks.reserve(std::size_t(blockCount));
    for (int i = 0; i < blockCount * blockSize; ++i) {
        const auto at = axis.at(i);
        left.push_back(std::int32_t(at >> 16));
        share.push_back(Sample((at & 65535) >> 9));
    }
    for (int b = 0; b < blockCount; ++b) {
        const std::int32_t* places = left.data() + b * blockSize;
        videoKernels::Block block { std::clamp(places[0], 0, std::max(last + 1 - blockSize, 0)), {}, {} };
        if (last + 1 < blockSize || std::min(places[blockSize - 1] + 1, last) - block.first >= blockSize) {
            blocks.clear();
            return;
        }
        for (int i = 0; i < blockSize; ++i) {
            const int ofRight = share[std::size_t(b * blockSize + i)];
            block.pairs[2 * i] = std::uint8_t(places[i] - block.first);
            block.pairs[2 * i + 1] = std::uint8_t(std::min(places[i] + 1, last) - block.first);
            block.weights[2 * i] = std::int8_t(ofRight - videoKernels::one);
            block.weights[2 * i + 1] = std::int8_t(-ofRight);
        }
        blocks.push_back(block);
    }
}

void VideoRows::Columns::stretch(Sample* to, const std::uint8_t* row, const Range& range) const
{
    const int from = range.first * blockSize, count = range.end - range.first;
    if (!blocks.empty())
        videoKernels::stretch(to + from, row, blocks.data() + range.first, count);
    else
        videoKernels::stretchFar(to + from, row, last, left.data() + from, share.data() + from, count * blockSize);
}

VideoRows::VideoRows(const VideoPlanes& picture, const VideoPart& part, int width, int height)
    : planes(picture)
    , matrix(videoKernels::Matrix::make(picture.isHighDefinition, picture.isFullRange))
    , across(axisFor(part.x, part.width, width, picture.width))
    , down(axisFor(part.y, part.height, height, picture.height))
    // Colours lie on every second column, and between every two rows.
    , colorAcross(colorAxis(across, 0, (picture.width + 1) / 2))
    , colorDown(colorAxis(down, 0.5, (picture.height + 1) / 2))
    , blockCount((width + blockSize - 1) / blockSize)
    , stride(blockCount * blockSize)
    , columns(across, blockCount)
    , colorColumns(colorAcross, blockCount)
    , stretchedU(std::size_t(stride))
    , stretchedV(std::size_t(stride))
{
    for (Row& row : light)
        row.samples.resize(std::size_t(stride));
    for (Row& row : tint)
        row.samples.resize(3 * std::size_t(stride));
}

// The row of that number, made by `make(samples)` unless it is there.
template <typename Make>
const VideoRows::Sample* VideoRows::rowOf(Row (&kept)[2], int number, const Range& range, const Make& make)
{
    Row& row = kept[number & 1]; // neighbours do not push each other out
    if (row.number != number || !row.range.contains(range)) {
        make(row.samples.data());
        row.number = number;
        row.range = range;
    }
    return row.samples.data();
}

template <typename Make>
videoKernels::Neighbours VideoRows::neighbours(Row (&kept)[2], const Axis& axis, int y, const Range& range, const Make& make)
{
    const auto at = axis.at(y);
    const int number = int(at >> 16), share = int(at & 65535) >> 1;
    const auto row = [&](int wanted) { return rowOf(kept, wanted, range, [&](Sample* samples) { make(samples, wanted); }); };
    const Sample* upper = row(number);
    return { upper, share == 0 || number == axis.last ? upper : row(number + 1), share };
}

void VideoRows::draw(std::uint32_t* to, int x, int y, int count)
{
    const Range range { x / blockSize, (x + count + blockSize - 1) / blockSize };
    const int from = range.first * blockSize, length = (range.end - range.first) * blockSize;
    auto lights = neighbours(light, down, y, range, [&](Sample* samples, int number) {
        columns.stretch(samples, planes.y + std::ptrdiff_t(number) * planes.yStride, range);
        videoKernels::toLight(samples + from, length, matrix);
    });
    auto tints = neighbours(tint, colorDown, y, range, [&](Sample* samples, int number) {
        colorColumns.stretch(stretchedU.data(), planes.u + std::ptrdiff_t(number) * planes.uStride, range);
        colorColumns.stretch(stretchedV.data(), planes.v + std::ptrdiff_t(number) * planes.vStride, range);
        videoKernels::toTint(samples + from, stride, stretchedU.data() + from, stretchedV.data() + from, length, matrix);
    });
    for (auto* each : { &lights, &tints }) {
        each->upper += x;
        each->lower += x;
    }
    videoKernels::color(to, lights, tints, stride, count);
}

} // namespace platform
