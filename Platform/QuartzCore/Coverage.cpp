#include "Platform/QuartzCore/Coverage.h"

#include "Platform/QuartzCore/PixelKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace platform {

void RowCoverage::multiply(unsigned factor, int count)
{
    if (factor == 255)
        return;
    if (!values) {
        constant = rows::multiply255(constant, factor);
        return;
    }
    rows::multiply(product, values, count, factor);
    values = product;
}

void RowCoverage::multiply(const std::uint8_t* factors, int count)
{
    if (values)
        rows::multiply(product, values, factors, count);
    else if (constant != 255)
        rows::multiply(product, factors, count, constant);
    const bool alone = !values && constant == 255;
    values = alone ? factors : product;
}

Coverage Coverage::bitmap(std::shared_ptr<const Bitmap> alpha, int x, int y)
{
    Coverage c;
    c.outer = { x, y, alpha->width(), alpha->height() };
    c.mask = std::move(alpha);
    c.setParts(c.outer.width, c.outer.height, 0, 0, c.outer.width, c.outer.height);
    return c;
}

Coverage Coverage::fade(std::shared_ptr<const Bitmap> alpha, const PixelRect& area)
{
    Coverage c;
    c.outer = area;
    c.mask = std::move(alpha);
    c.setParts(
        c.mask->width() == 1 ? 0 : area.width, c.mask->height() == 1 ? 0 : area.height, 0, 0, c.mask->width(), c.mask->height());
    return c;
}

void Coverage::setParts(int fromLeft, int fromTop, int fromRight, int fromBottom, int width, int height)
{
    left = fromLeft;
    top = fromTop;
    right = fromRight;
    bottom = fromBottom;
    maskWidth = width;
    maskHeight = height;
    const std::uint8_t* middle = maskRow(outer.y + top);
    middleRowIsFull = std::all_of(middle, middle + maskWidth, [](std::uint8_t v) { return v == 255; });
}

const std::uint8_t* Coverage::maskRow(int y) const
{
    int row = std::min(top, maskHeight - 1);
    if (y - outer.y < top)
        row = y - outer.y;
    else if (outer.maxY() - y <= bottom)
        row = std::min(maskHeight - (outer.maxY() - y), maskHeight - 1);
    return mask ? mask->alphaRow(row) : edges.data() + row * 3;
}

void Coverage::multiplyInto(RowCoverage& row, int x, int y, int count) const
{
    if (slanted) {
        std::uint8_t* room = row.values ? row.pieces : row.product;
        coverSlantedRow(room, x, y, count);
        row.multiply(room, count);
        return;
    }
    if (maskWidth == 0)
        return;
    const std::uint8_t* values = maskRow(y);
    const PixelRect column = middleColumn();
    if (x >= column.x && x + count <= column.maxX())
        return row.multiply(values[left], count);
    if (x + count <= column.x)
        return row.multiply(values + (x - outer.x), count);
    if (x >= column.maxX())
        return row.multiply(values + maskWidth - (outer.maxX() - x), count);
    if (row.values) {
        assemble(row.pieces, x, values, count);
        row.multiply(row.pieces, count);
    } else {
        assemble(row.product, x, values, count);
        row.multiply(row.product, count);
    }
}

namespace {

// Pixels of row y whose centres keep `insetX` and `insetY` device pixels from the rectangle's sides (negative: come as near).
struct Extent {
    int from, until;
};
Extent extentOf(const rows::RoundedRect& shape, int y, double insetX, double insetY)
{
    const CGAffineTransform& m = shape.toLocal;
    double low = -1e6, high = 1e6;
    const auto limit = [&](double perX, double start, double least, double most) {
        if (least > most) { // thinner than the insets
            high = low - 1;
            return;
        }
        if (std::abs(perX) < 1e-12) {
            if (start < least || start > most)
                high = low - 1;
            return;
        }
        const double a = (least - start) / perX, b = (most - start) / perX;
        low = std::max(low, std::min(a, b));
        high = std::min(high, std::max(a, b));
    };
    const double alongX = insetX * std::hypot(m.a, m.c), alongY = insetY * std::hypot(m.b, m.d);
    const CGRect& r = shape.rect;
    limit(m.a, m.a * 0.5 + m.c * (y + 0.5) + m.tx, r.x + alongX, r.maxX() - alongX);
    limit(m.b, m.b * 0.5 + m.d * (y + 0.5) + m.ty, r.y + alongY, r.maxY() - alongY);
    const auto bounded = [](double v) { return int(std::clamp(v, -1e6, 1e6)); };
    const int from = bounded(std::ceil(low));
    return { from, std::max(bounded(std::floor(high)) + 1, from) };
}

} // namespace

void Coverage::coverSlantedRow(std::uint8_t* to, int x, int y, int count) const
{
    // Only the ends need a look at each pixel: the row is full where it is a pixel inside the sides and beside the corners.
    const double corner = slanted->radius / std::max(std::hypot(slanted->toLocal.a, slanted->toLocal.c), 1e-9);
    const double cornerY = slanted->radius / std::max(std::hypot(slanted->toLocal.b, slanted->toLocal.d), 1e-9);
    const Extent wide = extentOf(*slanted, y, 1, cornerY + 1), high = extentOf(*slanted, y, corner + 1, 1);
    const Extent full = wide.until - wide.from > high.until - high.from ? wide : high;
    const int from = std::clamp(full.from - x, 0, count), until = std::clamp(full.until - x, from, count);
    rows::coverRow(to, *slanted, x, y, from);
    std::memset(to + from, 255, std::size_t(until - from));
    rows::coverRow(to + until, *slanted, x + until, y, count - until);
    if (!hole)
        return;
    std::vector<std::uint8_t> inner(static_cast<std::size_t>(count));
    rows::coverRow(inner.data(), *hole, x, y, count);
    for (int i = 0; i < count; ++i)
        to[i] = std::uint8_t(std::max(to[i] - inner[std::size_t(i)], 0));
}

void Coverage::narrow(int y, int& x, int& count) const
{
    if (!slanted)
        return;
    const Extent touched = extentOf(*slanted, y, -1, -1);
    const int from = std::clamp(touched.from, x, x + count), until = std::clamp(touched.until, from, x + count);
    x = from;
    count = until - from;
}

void Coverage::assemble(std::uint8_t* to, int x, const std::uint8_t* row, int count) const
{
    const PixelRect column = middleColumn();
    const int end = x + count;
    if (x < column.x)
        std::memcpy(to, row + (x - outer.x), std::size_t(column.x - x));
    const int from = std::max(x, column.x), until = std::min(end, column.maxX());
    if (from < until)
        std::memset(to + (from - x), row[left], std::size_t(until - from));
    if (end > column.maxX()) {
        const int start = std::max(x, column.maxX());
        std::memcpy(to + (start - x), row + maskWidth - (outer.maxX() - start), std::size_t(end - start));
    }
}

} // namespace platform
