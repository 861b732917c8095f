#include "Platform/QuartzCore/Backdrop.h"

#include "Platform/QuartzCore/BlurKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace platform {

namespace {

// Cells are four 16-bit channels, in units of 1/256, so that passes do not add up their rounding.
constexpr int channels = 4;

std::uint16_t* cellRow(Bitmap& bitmap, int y) { return reinterpret_cast<std::uint16_t*>(bitmap.row(y)); }

std::shared_ptr<Bitmap> makeCells(int width, int height)
{
    return Bitmap::make(2 * width, height, PixelFormat::argb); // two words a cell
}

// The mean of 2 radius + 1 rows, the outermost ones held.
void boxColumns(Bitmap& from, Bitmap& to, int width, int radius)
{
    const int height = from.height(), count = width * channels;
    const auto held = [&](int y) { return cellRow(from, std::clamp(y, 0, height - 1)); };
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(count));
    for (int y = -radius; y <= radius; ++y) {
        const std::uint16_t* row = held(y);
        for (int i = 0; i < count; ++i)
            sums[std::size_t(i)] += row[i];
    }
    for (int y = 0; y < height; ++y)
        rows::slideColumns(sums.data(), cellRow(to, y), held(y + radius + 1), held(y - radius), 1 / float(2 * radius + 1), count);
}

void transpose(Bitmap& from, Bitmap& to, int width, int height)
{
    constexpr int block = 16; // cells; both sides stay in the nearest cache
    const auto cell = [](Bitmap& bitmap, int y) { return reinterpret_cast<std::uint64_t*>(bitmap.row(y)); };
    for (int top = 0; top < height; top += block) {
        for (int left = 0; left < width; left += block) {
            for (int y = top; y < std::min(top + block, height); ++y) {
                const std::uint64_t* row = cell(from, y);
                for (int x = left; x < std::min(left + block, width); ++x)
                    cell(to, x)[y] = row[x];
            }
        }
    }
}

// The last cell of a row, which the edge cuts off.
void reducePart(const std::uint16_t* columns, std::uint16_t* cell, int wide, int high)
{
    for (int c = 0; c < channels; ++c) {
        unsigned sum = 0;
        for (int i = 0; i < wide; ++i)
            sum += columns[i * channels + c];
        cell[c] = std::uint16_t(sum * 256 / unsigned(wide * high));
    }
}

} // namespace

BackdropBlur::BackdropBlur(const RenderItem& item, const RenderBackdrop& backdrop, const PixelRect& screen)
    : saturation(backdrop.saturation)
{
    const double scale = std::sqrt(std::abs(item.transform.determinant()));
    const double sigma = std::clamp(backdrop.radius * scale, 0.0, 500.0); // pixels
    factor = sigma >= 8 ? 4 : sigma >= 4 ? 2 : 1;
    // Three odd boxes whose variances, (length^2 - 1) / 12 each, come nearest to the gaussian's; the reduction has blurred by
    // a box of its own already.
    const double wanted = std::max(sigma * sigma / (factor * factor) - (factor > 1 ? 1.0 / 12 : 0.0), 0.0) * 12;
    const int shorter = (int(std::sqrt(wanted / 3 + 1)) - 1) / 2;
    const auto variance = [](int radius) { return (2.0 * radius + 1) * (2 * radius + 1) - 1; };
    double best = INFINITY;
    for (int longOnes = 0; longOnes <= 3; ++longOnes) {
        const double error = std::abs((3 - longOnes) * variance(shorter) + longOnes * variance(shorter + 1) - wanted);
        if (error >= best)
            continue;
        best = error;
        for (int i = 0; i < 3; ++i)
            boxes[i] = i < longOnes ? shorter + 1 : shorter;
    }
    source = item.bounds.intersection(screen);
    width = (std::max(source.width, 0) + factor - 1) / factor;
    height = (std::max(source.height, 0) + factor - 1) / factor;
}

CGRect BackdropBlur::device() const
{
    return { double(source.x), double(source.y), double(width * factor), double(height * factor) };
}

void BackdropBlur::reduce(const PaintBelow& paintBelow, Bitmap& sums) const
{
    // Strips stay in the processor's cache between being painted and being read.
    const int stripCells = std::max(1, 48 * 1024 / std::max(source.width, 1) / factor);
    std::vector<std::uint16_t> columns(std::size_t(width) * std::size_t(factor) * channels);
    std::shared_ptr<Bitmap> strip;
    for (int top = 0; top < height; top += stripCells) {
        const PixelRect area
            = PixelRect { source.x, source.y + top * factor, source.width, std::min(stripCells, height - top) * factor }
                  .intersection(source);
        if (!strip || strip->height() != area.height)
            strip = Bitmap::make(area.width, area.height, PixelFormat::xrgb);
        if (!strip)
            return;
        paintBelow(*strip, area);
        for (int y = 0; y < area.height; y += factor) {
            const int high = std::min(factor, area.height - y);
            std::fill(columns.begin(), columns.end(), std::uint16_t(0));
            for (int i = 0; i < high; ++i)
                rows::addBytes(columns.data(), reinterpret_cast<const std::uint8_t*>(strip->row(y + i)), area.width * channels);
            std::uint16_t* out = cellRow(sums, top + y / factor);
            const int whole = area.width / factor;
            rows::reduceColumns(out, columns.data(), whole, factor, 65536u / unsigned(factor * high));
            if (whole < width)
                reducePart(columns.data() + whole * factor * channels, out + whole * channels, area.width - whole * factor, high);
        }
    }
}

std::shared_ptr<const Bitmap> BackdropBlur::make(const PaintBelow& paintBelow) const
{
    const auto a = makeCells(width, height), b = makeCells(width, height);
    const auto turnedA = makeCells(height, width), turnedB = makeCells(height, width);
    auto result = Bitmap::make(width, height, PixelFormat::xrgb);
    if (!a || !b || !turnedA || !turnedB || !result)
        return nullptr;
    reduce(paintBelow, *a);
    boxColumns(*a, *b, width, boxes[0]);
    boxColumns(*b, *a, width, boxes[1]);
    boxColumns(*a, *b, width, boxes[2]);
    transpose(*b, *turnedA, width, height);
    boxColumns(*turnedA, *turnedB, height, boxes[0]);
    boxColumns(*turnedB, *turnedA, height, boxes[1]);
    boxColumns(*turnedA, *turnedB, height, boxes[2]);
    transpose(*turnedB, *a, height, width);
    const int share = int(std::lround(std::clamp(saturation, 0.0, 100.0) * 256));
    for (int y = 0; y < height; ++y)
        rows::saturate(result->row(y), cellRow(*a, y), width, share);
    return result;
}

} // namespace platform
