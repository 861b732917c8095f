#pragma once

#include "Platform/QuartzCore/Backdrop.h"
#include "Platform/QuartzCore/Coverage.h"
#include "Platform/QuartzCore/PixelSource.h"
#include "Platform/QuartzCore/RenderList.h"

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace platform {

class PixelCache;

// Where painting goes: a rectangle of device pixels in memory.
struct Surface {
    rows::Pixel* pixels = nullptr; // of the area's left top corner
    std::ptrdiff_t stride = 0; // words
    PixelRect area;

    Surface(Bitmap& bitmap, int x, int y)
        : pixels(bitmap.row(0))
        , stride(bitmap.stride() / 4)
        , area { x, y, bitmap.width(), bitmap.height() }
    {
    }
    rows::Pixel* at(int x, int y) const { return pixels + (y - area.y) * stride + (x - area.x); }
};

// A group's place in the tree of lists, by the keys on the way to it: what pictures of composed pixels are kept under.
constexpr std::uint64_t rootPath = 0;
constexpr std::uint64_t maskPathKey = ~std::uint64_t(0); // names a group's mask list on a path
std::uint64_t pathBelow(std::uint64_t path, std::uint64_t key);

// Paints one frame's lists, back to front, leaving out what something opaque covers. What a pixel becomes depends on the lists
// alone, not on the rectangle that was asked for, so that any patchwork gives the picture of the whole.
class ListPainter {
public:
    ListPainter(const RenderList& list, const PixelRect& screen, PixelCache& pixelCache);
    ~ListPainter();
    // Paints the area (inside the surface) over opaque black.
    void paint(const Surface& surface, const PixelRect& area);

private:
    struct Level; // a list on the way from the root to the one being painted
    struct Layer; // pixels and the shape that cuts them
    struct Prepared; // an item made ready for drawing
    struct Piece {
        std::size_t item;
        PixelRect rect;
    };

    void paintItems(const Surface& surface, const PixelRect& area, const Level& level, bool overBlack);
    void paintBelow(const Surface& surface, const PixelRect& area, const Level& level);
    void paintItem(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level);
    void paintGroup(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level);
    void paintComposed(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level);
    void paintContent(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level, bool throughMask);
    template <typename Paint>
    void paintThroughTemporary(const Surface& surface, const PixelRect& area, const std::vector<Coverage>& coverages,
        unsigned opacity, const Paint& paint);

    using Actives = std::vector<const Coverage*>;
    template <typename Leaf>
    void split(const std::vector<Coverage>& coverages, std::size_t next, const PixelRect& area, bool exact, Actives& actives,
        const Leaf& leaf);
    void draw(const Surface& surface, const PixelRect& area, PixelSource& source, const std::vector<Coverage>& coverages,
        unsigned opacity);
    void drawPiece(const Surface& surface, const PixelRect& area, PixelSource& source, const Actives& actives, unsigned opacity);

    Prepared& preparedFor(const RenderList& list, std::size_t index);
    PixelRect opaquePart(const RenderList& list, std::size_t index);
    void prepare(Prepared& prepared, std::size_t index, const Level& level);
    void prepareShadow(Prepared& prepared, const RenderItem& item, const RenderShadow& shadow);
    void prepareBackdrop(Prepared& prepared, std::size_t index, const Level& level);
    void prepareGroup(Prepared& prepared, std::size_t index, const Level& level);
    void prepareGroupShadow(Prepared& prepared, std::size_t index, const Level& level);
    std::shared_ptr<Bitmap> composedAlpha(const PixelRect& area, std::size_t index, const Level& level);

    const RenderList& root;
    PixelRect screen;
    PixelCache& cache;
    std::unordered_map<const RenderList*, std::vector<Prepared>> preparedLists;
    std::pair<const RenderList*, Prepared*> preparedLast {}; // the list asked for last
    std::vector<rows::Pixel> pixelRoom;
    std::vector<std::uint8_t> sourceCoverage, productRoom, piecesRoom;
};

} // namespace platform
