#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/QuartzCore/ShapeKernels.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <optional>

namespace platform {

class PixelCache;

// The coverage of one stretch of a row while it is gathered: a constant, or a value for each pixel.
struct RowCoverage {
    const std::uint8_t* values = nullptr; // null: the constant
    unsigned constant = 255;
    std::uint8_t* product = nullptr; // room for a row of products
    std::uint8_t* pieces = nullptr; // and for a row put together of pieces

    bool isNothing() const { return !values && constant == 0; }
    void multiply(unsigned factor, int count);
    void multiply(const std::uint8_t* factors, int count);
};

// A rectangle that is upright in device pixels, snapped to 1/64 pixel, with its corners as they lie on the screen.
struct UprightRect {
    double left = 0, top = 0, right = 0, bottom = 0;
    double radiusX = 0, radiusY = 0;
    unsigned corners = 15;

    // Nothing when the rectangle is turned or skewed.
    static std::optional<UprightRect> make(
        const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners);
    PixelRect outer() const; // all pixels it touches
    PixelRect inside() const; // a large rectangle of pixels that it covers wholly
    bool isWhole() const; // all edges between pixels
};

// How much of each device pixel a shape covers. Upright shapes are nine-part pictures, whose middle row and column stretch, so
// that all of one style share one small bitmap; slanted ones are computed row by row. Every value depends on the pixel's place
// alone, never on how the drawing is cut up.
class Coverage {
public:
    static Coverage roundedRect(
        const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners, PixelCache& cache);
    // What lies within `width` (in the rectangle's space) of the rectangle's edge, inside it.
    static Coverage ring(
        const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners, double width, PixelCache& cache);
    // The rectangle blurred by a gaussian of that sigma (pixels). Nothing when its corners are too large for a bitmap.
    static std::optional<Coverage> shadow(const UprightRect& rect, double sigmaX, double sigmaY, PixelCache& cache);
    // An a8 picture whose left top pixel lies there.
    static Coverage bitmap(std::shared_ptr<const Bitmap> alpha, int x, int y);
    // One value a row, or a column: an a8 picture 1 pixel wide, or high, stretched over the rectangle.
    static Coverage fade(std::shared_ptr<const Bitmap> alpha, const PixelRect& area);

    const PixelRect& bounds() const { return outer; } // nothing outside
    // Cuts an area into pieces and calls piece(rect, isFull) for all that is not empty. Whether a pixel is in a full piece
    // depends on its place alone when `exact`; otherwise narrow areas stay whole.
    template <typename Piece> void split(const PixelRect& area, bool exact, const Piece& piece) const;
    void multiplyInto(RowCoverage& row, int x, int y, int count) const;
    // Whether two rows are covered alike everywhere, as those that stretch are.
    bool isSameRow(int y, int other) const { return !slanted && (maskWidth == 0 || maskRow(y) == maskRow(other)); }
    // Cuts off ends of a row that are not covered; the count may become 0.
    void narrow(int y, int& x, int& count) const;

private:
    void coverSlantedRow(std::uint8_t* to, int x, int y, int count) const;
    static int fullnessOf(std::uint8_t value) { return value == 0 ? 0 : value == 255 ? 2 : 1; }
    const std::uint8_t* maskRow(int y) const;
    void assemble(std::uint8_t* to, int x, const std::uint8_t* row, int count) const;
    PixelRect middleColumn() const { return { outer.x + left, outer.y, outer.width - left - right, outer.height }; }
    // The parts that do not stretch, and the small picture's size; the mask, or the edges, are there already.
    void setParts(int fromLeft, int fromTop, int fromRight, int fromBottom, int width, int height);

    PixelRect outer;
    int left = 0, top = 0, right = 0, bottom = 0; // the parts that do not stretch, pixels
    int maskWidth = 0, maskHeight = 0; // of the small picture; 0: full everywhere
    std::shared_ptr<const Bitmap> mask; // a8; null: the edges below
    std::array<std::uint8_t, 9> edges {}; // rows of a picture of at most 3 by 3 pixels
    bool middleRowIsFull = false;
    std::shared_ptr<const rows::RoundedRect> slanted;
    std::shared_ptr<const rows::RoundedRect> hole; // of a slanted ring
};

template <typename Piece> void Coverage::split(const PixelRect& area, bool exact, const Piece& piece) const
{
    constexpr int narrow = 96; // pixels; below it one pass with a mask is cheaper than three pieces
    const auto emit = [&](const PixelRect& r, bool full) {
        if (!r.isEmpty())
            piece(r, full);
    };
    const PixelRect r = area.intersection(outer);
    if (r.isEmpty() || slanted || maskWidth == 0)
        return emit(r, !slanted);
    const PixelRect column = middleColumn();
    const PixelRect center { column.x, outer.y + top, column.width, outer.height - top - bottom };
    const std::uint8_t middle = maskRow(center.y)[std::min(left, maskWidth - 1)];
    if (center.contains(r))
        return middle ? emit(r, middle == 255) : void();
    if (!exact && r.width <= narrow)
        return emit(r, false);
    // The middle rows.
    const PixelRect band { outer.x, center.y, outer.width, center.height };
    if (middleRowIsFull) {
        emit(band.intersection(r), true);
    } else {
        // Columns of a side that are all full, or all empty, such as those of a border.
        const std::uint8_t* row = maskRow(center.y);
        const auto emitSide = [&](int sideX, int sideWidth, const std::uint8_t* values) {
            for (int x = 0, end = 0; x < sideWidth; x = end) {
                const int kind = fullnessOf(values[x]);
                while (end < sideWidth && fullnessOf(values[end]) == kind)
                    ++end;
                if (kind)
                    emit(PixelRect { sideX + x, band.y, end - x, band.height }.intersection(r), kind == 2);
            }
        };
        emitSide(outer.x, left, row);
        if (middle)
            emit(center.intersection(r), middle == 255);
        emitSide(column.maxX(), right, row + maskWidth - right);
    }
    // Above and below them; in the middle column runs of equally full rows go together.
    for (const PixelRect& rowsApart :
        { PixelRect { outer.x, outer.y, outer.width, top }, PixelRect { outer.x, center.maxY(), outer.width, bottom } }) {
        emit(PixelRect { outer.x, rowsApart.y, left, rowsApart.height }.intersection(r), false);
        emit(PixelRect { column.maxX(), rowsApart.y, right, rowsApart.height }.intersection(r), false);
        const PixelRect run = PixelRect { column.x, rowsApart.y, column.width, rowsApart.height }.intersection(r);
        const auto fullness = [&](int y) { return fullnessOf(maskRow(y)[left]); };
        for (int y = run.y, end = y; y < run.maxY(); y = end) {
            const int kind = fullness(y);
            while (end < run.maxY() && fullness(end) == kind)
                ++end;
            if (kind)
                emit({ run.x, y, run.width, end - y }, kind == 2);
        }
    }
}

} // namespace platform
