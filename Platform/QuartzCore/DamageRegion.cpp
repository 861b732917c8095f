#include "Platform/QuartzCore/DamageRegion.h"

#include <algorithm>
#include <cstdint>

namespace platform {

namespace {

constexpr std::size_t mostExact = 32; // rectangles; beyond it comparing all with all costs more than the grid wastes
constexpr int square = 16; // pixels a side of the grid

// One rectangle for both where that repaints hardly more than both.
bool shouldMerge(const PixelRect& a, const PixelRect& b)
{
    const long together = a.unionWith(b).area();
    return together <= a.area() + b.area() - a.intersection(b).area() + together / 16;
}

// Adds what of the rectangle no other has yet.
void addDisjoint(std::vector<PixelRect>& rects, const PixelRect& added, std::size_t from = 0)
{
    for (std::size_t i = from; i < rects.size(); ++i) {
        const PixelRect common = rects[i].intersection(added);
        if (common.isEmpty())
            continue;
        const PixelRect parts[] = {
            { added.x, added.y, added.width, common.y - added.y },
            { added.x, common.y, common.x - added.x, common.height },
            { common.maxX(), common.y, added.maxX() - common.maxX(), common.height },
            { added.x, common.maxY(), added.width, added.maxY() - common.maxY() },
        };
        for (const PixelRect& part : parts) {
            if (!part.isEmpty())
                addDisjoint(rects, part, i + 1);
        }
        return;
    }
    rects.push_back(added);
}

void mergeWhereCheap(std::vector<PixelRect>& rects)
{
    for (std::size_t i = 0; i < rects.size(); ++i) {
        for (std::size_t k = i + 1; k < rects.size();) {
            if (!shouldMerge(rects[i], rects[k])) {
                ++k;
                continue;
            }
            rects[i] = rects[i].unionWith(rects[k]);
            rects.erase(rects.begin() + std::ptrdiff_t(k));
            k = i + 1; // the larger one may take those it passed over
        }
    }
}

std::vector<PixelRect> onGrid(const std::vector<PixelRect>& rects, const PixelRect& screen)
{
    const int columns = (screen.width + square - 1) / square, rowCount = (screen.height + square - 1) / square;
    std::vector<std::uint8_t> marks(std::size_t(columns) * std::size_t(rowCount));
    for (const PixelRect& r : rects) {
        const int left = (r.x - screen.x) / square, right = (r.maxX() - 1 - screen.x) / square;
        for (int y = (r.y - screen.y) / square; y <= (r.maxY() - 1 - screen.y) / square; ++y)
            std::fill_n(marks.begin() + std::ptrdiff_t(y) * columns + left, right - left + 1, std::uint8_t(1));
    }
    // Runs of marked squares; one that lies right under an equal one makes it higher.
    std::vector<PixelRect> result, open, next;
    for (int y = 0; y < rowCount; ++y) {
        const auto row = marks.begin() + std::ptrdiff_t(y) * columns;
        next.clear();
        for (int x = 0; x < columns; ++x) {
            if (!row[x])
                continue;
            const int start = x;
            while (x < columns && row[x])
                ++x;
            PixelRect run { start, y, x - start, 1 };
            const auto above = std::find_if(
                open.begin(), open.end(), [&](const PixelRect& o) { return o.x == run.x && o.width == run.width; });
            if (above != open.end()) {
                run = { above->x, above->y, above->width, above->height + 1 };
                open.erase(above);
            }
            next.push_back(run);
        }
        result.insert(result.end(), open.begin(), open.end());
        open.swap(next);
    }
    result.insert(result.end(), open.begin(), open.end());
    for (PixelRect& r : result)
        r = PixelRect { screen.x + r.x * square, screen.y + r.y * square, r.width * square, r.height * square }.intersection(
            screen);
    return result;
}

} // namespace

std::vector<PixelRect> disjointDamage(const std::vector<PixelRect>& changed, const PixelRect& screen)
{
    std::vector<PixelRect> rects;
    for (const PixelRect& r : changed) {
        const PixelRect inside = r.intersection(screen);
        // Most lists name an item's old and new place in a row.
        if (inside.isEmpty() || (!rects.empty() && rects.back().contains(inside)))
            continue;
        if (!rects.empty() && shouldMerge(rects.back(), inside))
            rects.back() = rects.back().unionWith(inside);
        else
            rects.push_back(inside);
    }
    if (rects.size() > mostExact)
        return onGrid(rects, screen);
    mergeWhereCheap(rects);
    std::vector<PixelRect> result;
    for (const PixelRect& r : rects)
        addDisjoint(result, r);
    return result.size() > 2 * mostExact ? onGrid(rects, screen) : result;
}

} // namespace platform
