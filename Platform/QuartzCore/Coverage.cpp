#include "Platform/QuartzCore/Coverage.h"

#include <algorithm>
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
    c.setParts(alpha->width(), alpha->height(), 0, 0, alpha);
    return c;
}

Coverage Coverage::fade(std::shared_ptr<const Bitmap> alpha, const PixelRect& area)
{
    Coverage c;
    c.outer = area;
    c.setParts(alpha->width() == 1 ? 0 : area.width, alpha->height() == 1 ? 0 : area.height, 0, 0, alpha);
    return c;
}

void Coverage::setParts(int fromLeft, int fromTop, int fromRight, int fromBottom, std::shared_ptr<const Bitmap> alpha)
{
    if (!alpha)
        return;
    left = fromLeft;
    top = fromTop;
    right = fromRight;
    bottom = fromBottom;
    mask = std::move(alpha);
    const std::uint8_t* middle = mask->alphaRow(std::min(top, mask->height() - 1));
    middleRowIsFull = std::all_of(middle, middle + mask->width(), [](std::uint8_t v) { return v == 255; });
}

int Coverage::maskRow(int y) const
{
    if (y - outer.y < top)
        return y - outer.y;
    if (outer.maxY() - y <= bottom)
        return std::min(mask->height() - (outer.maxY() - y), mask->height() - 1);
    return std::min(top, mask->height() - 1);
}

void Coverage::multiplyInto(RowCoverage& row, int x, int y, int count) const
{
    if (slanted) {
        std::uint8_t* room = row.values ? row.pieces : row.product;
        rows::coverRow(room, *slanted, x, y, count);
        if (hole) {
            std::vector<std::uint8_t> inner(static_cast<std::size_t>(count));
            rows::coverRow(inner.data(), *hole, x, y, count);
            for (int i = 0; i < count; ++i)
                room[i] = std::uint8_t(std::max(room[i] - inner[std::size_t(i)], 0));
        }
        row.multiply(room, count);
        return;
    }
    if (!mask)
        return;
    const std::uint8_t* values = mask->alphaRow(maskRow(y));
    const PixelRect column = middleColumn();
    if (x >= column.x && x + count <= column.maxX())
        return row.multiply(values[left], count);
    if (x + count <= column.x)
        return row.multiply(values + (x - outer.x), count);
    if (x >= column.maxX())
        return row.multiply(values + mask->width() - (outer.maxX() - x), count);
    if (row.values) {
        assemble(row.pieces, x, values, count);
        row.multiply(row.pieces, count);
    } else {
        assemble(row.product, x, values, count);
        row.multiply(row.product, count);
    }
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
        std::memcpy(to + (start - x), row + mask->width() - (outer.maxX() - start), std::size_t(end - start));
    }
}

} // namespace platform
