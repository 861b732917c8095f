#include "Platform/QuartzCore/ListPainter.h"

#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/QuartzCore/ListPainterParts.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform {

namespace {

// What is left of a rectangle without the part that something covers: at most four pieces, whole rows first.
void subtract(const PixelRect& r, const PixelRect& cover, std::vector<PixelRect>& rest)
{
    const PixelRect common = r.intersection(cover);
    const auto keep = [&](const PixelRect& piece) {
        if (!piece.isEmpty())
            rest.push_back(piece);
    };
    keep({ r.x, r.y, r.width, common.y - r.y });
    keep({ r.x, common.y, common.x - r.x, common.height });
    keep({ common.maxX(), common.y, r.maxX() - common.maxX(), common.height });
    keep({ r.x, common.maxY(), r.width, r.maxY() - common.maxY() });
}

// Opaque rectangles in front of what is yet to be looked at.
class Covers {
public:
    void add(const PixelRect& r)
    {
        constexpr long smallest = 2048; // pixels; a smaller one costs more to cut out than to paint under
        if (r.area() < smallest)
            return;
        if (covers.size() < 12)
            covers.push_back(r);
        else if (auto least = std::min_element(covers.begin(), covers.end(), bySize); least->area() < r.area())
            *least = r;
    }

    // Calls piece(rect) for what can be seen of the rectangle; a little that is covered may be among it.
    template <typename Piece> void visible(const PixelRect& r, const Piece& piece)
    {
        pieces.assign(1, r);
        for (const PixelRect& cover : covers) {
            rest.clear();
            for (const PixelRect& p : pieces) {
                const long hidden = p.intersection(cover).area();
                if (hidden == p.area())
                    continue;
                if (hidden * 4 < p.area() || pieces.size() > 8)
                    rest.push_back(p);
                else
                    subtract(p, cover, rest);
            }
            pieces.swap(rest);
        }
        for (const PixelRect& p : pieces)
            piece(p);
    }

private:
    static bool bySize(const PixelRect& a, const PixelRect& b) { return a.area() < b.area(); }
    std::vector<PixelRect> covers, pieces, rest;
};

} // namespace

std::uint64_t pathBelow(std::uint64_t path, std::uint64_t key) { return PixelKey(PixelKey::backdrop).add(path).add(key).hash(); }

ListPainter::ListPainter(const RenderList& list, const PixelRect& screenRect, PixelCache& pixelCache)
    : root(list)
    , screen(screenRect)
    , cache(pixelCache)
{
    const auto width = std::size_t(screenRect.width);
    pixelRoom.resize(width);
    sourceCoverage.resize(width);
    productRoom.resize(width);
    piecesRoom.resize(width);
}

ListPainter::~ListPainter() = default;

void ListPainter::paint(const Surface& surface, const PixelRect& area)
{
    // A strip fits the processor's second cache, so that only its first and last touch are of slow memory.
    const int stripRows = std::max(16, 48 * 1024 / std::max(area.width, 1));
    const Level level { root, root.items.size(), nullptr, rootPath };
    for (int y = area.y; y < area.maxY(); y += stripRows)
        paintItems(surface, { area.x, y, area.width, std::min(stripRows, area.maxY() - y) }, level, true);
}

void ListPainter::paintItems(const Surface& surface, const PixelRect& area, const Level& level, bool overBlack)
{
    std::vector<Piece> pieces;
    Covers covers;
    for (std::size_t i = level.count; i-- > 0;) {
        const RenderItem& item = level.list.items[i];
        const PixelRect r = item.bounds.intersection(area);
        if (r.isEmpty() || item.opacity <= 0)
            continue;
        covers.visible(r, [&](const PixelRect& piece) { pieces.push_back({ i, piece }); });
        covers.add(opaquePart(level.list, i).intersection(area));
    }
    if (overBlack) {
        covers.visible(area, [&](const PixelRect& piece) {
            for (int y = piece.y; y < piece.maxY(); ++y)
                pixels::fill(surface.at(piece.x, y), piece.width, 0xff000000);
        });
    }
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
        paintItem(surface, piece->rect, piece->item, level);
}

void ListPainter::paintBelow(const Surface& surface, const PixelRect& area, const Level& level)
{
    if (level.outer)
        paintBelow(surface, area, *level.outer);
    paintItems(surface, area, level, !level.outer);
}

void ListPainter::paintItem(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level)
{
    Prepared& prepared = preparedFor(level.list, index);
    if (!prepared.isReady) {
        prepare(prepared, index, level);
        prepared.isReady = true;
    }
    if (std::holds_alternative<RenderGroup>(level.list.items[index].content))
        return paintGroup(surface, area, index, level);
    if (prepared.layers.size() > 1 && prepared.opacity != 255) {
        // Fill and border fade as one picture.
        return paintThroughTemporary(surface, area, prepared.clips, prepared.opacity, [&](const Surface& temporary) {
            for (Layer& layer : prepared.layers)
                draw(temporary, area, *layer.source, layer.shape, 255);
        });
    }
    for (Layer& layer : prepared.layers)
        draw(surface, area, *layer.source, layer.cuts, prepared.opacity);
}

template <typename Paint>
void ListPainter::paintThroughTemporary(
    const Surface& surface, const PixelRect& area, const std::vector<Coverage>& coverages, unsigned opacity, const Paint& paint)
{
    auto temporary = Bitmap::make(area.width, area.height, PixelFormat::argb, true);
    if (!temporary)
        return;
    paint(Surface(*temporary, area.x, area.y));
    const auto source = bitmapSource(std::move(temporary), area.x, area.y);
    draw(surface, area, *source, coverages, opacity);
}

void ListPainter::paintGroup(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level)
{
    Prepared& prepared = preparedFor(level.list, index);
    Actives actives;
    split(prepared.clips, 0, area, true, actives, [&](const PixelRect& r, bool isFull) {
        if (isFull && prepared.opacity == 255 && !prepared.hasPictureMask)
            return paintComposed(surface, r, index, level);
        paintThroughTemporary(surface, r, prepared.clips, prepared.opacity,
            [&](const Surface& temporary) { paintComposed(temporary, r, index, level); });
    });
}

// The group's shadow and its content through its mask, without its opacity and clips.
void ListPainter::paintComposed(const Surface& surface, const PixelRect& area, std::size_t index, const Level& level)
{
    Prepared& prepared = preparedFor(level.list, index);
    for (Layer& shadow : prepared.layers)
        draw(surface, area, *shadow.source, shadow.shape, 255);
    paintContent(surface, area, index, level, prepared.hasPictureMask);
}

void ListPainter::paintContent(
    const Surface& surface, const PixelRect& area, std::size_t index, const Level& level, bool throughMask)
{
    const RenderItem& item = level.list.items[index];
    const auto& group = std::get<RenderGroup>(item.content);
    if (!group.content)
        return;
    const Level below { level.list, index, level.outer, level.path };
    const std::uint64_t path = pathBelow(level.path, item.key);
    const Level content { *group.content, group.content->items.size(), &below, path };
    if (!throughMask)
        return paintItems(surface, area, content, false);
    paintThroughTemporary(surface, area, {}, 255, [&](const Surface& temporary) {
        paintItems(temporary, area, content, false);
        const auto mask = Bitmap::make(area.width, area.height, PixelFormat::argb, true);
        if (!mask)
            return;
        const Surface maskSurface(*mask, area.x, area.y);
        const Level maskLevel { *group.mask, group.mask->items.size(), &below, pathBelow(path, maskPathKey) };
        paintItems(maskSurface, area, maskLevel, false);
        for (int y = area.y; y < area.maxY(); ++y)
            rows::multiplyByAlpha(temporary.at(area.x, y), maskSurface.at(area.x, y), area.width);
    });
}

template <typename Leaf>
void ListPainter::split(const std::vector<Coverage>& coverages, std::size_t next, const PixelRect& area, bool exact,
    Actives& actives, const Leaf& leaf)
{
    if (next == coverages.size())
        return leaf(area, actives.empty());
    coverages[next].split(area, exact, [&](const PixelRect& r, bool isFull) {
        if (!isFull)
            actives.push_back(&coverages[next]);
        split(coverages, next + 1, r, exact, actives, leaf);
        if (!isFull)
            actives.pop_back();
    });
}

void ListPainter::draw(
    const Surface& surface, const PixelRect& area, PixelSource& source, const std::vector<Coverage>& coverages, unsigned opacity)
{
    Actives actives;
    split(coverages, 0, area, false, actives, [&](const PixelRect& r, bool) { drawPiece(surface, r, source, actives, opacity); });
}

void ListPainter::drawPiece(
    const Surface& surface, const PixelRect& area, PixelSource& source, const Actives& actives, unsigned opacity)
{
    RowCoverage coverage;
    bool isKept = false; // the coverage of the row above
    for (int y = area.y; y < area.maxY(); ++y) {
        int x = area.x, count = area.width;
        for (const Coverage* active : actives)
            active->narrow(y, x, count);
        if (count == 0)
            continue;
        isKept = isKept
            && std::all_of(actives.begin(), actives.end(), [y](const Coverage* active) { return active->isSameRow(y, y - 1); });
        if (!isKept) {
            coverage = { nullptr, opacity, productRoom.data(), piecesRoom.data() };
            for (const Coverage* active : actives)
                active->multiplyInto(coverage, x, y, count);
            isKept = true;
        }
        if (coverage.isNothing())
            continue;
        RowCoverage here = coverage;
        const int covered = x;
        source.narrow(y, x, count);
        if (count == 0)
            continue;
        if (here.values)
            here.values += x - covered;
        rows::Pixel* to = surface.at(x, y);
        const bool replaces = source.fillsRoom() && !here.values && here.constant == 255;
        const SourceRow row = source.row(x, y, count, replaces ? to : pixelRoom.data(), sourceCoverage.data());
        if (replaces)
            continue;
        if (row.coverage) {
            here.multiply(row.coverage, count);
            isKept = false; // its room was needed
        }
        if (!row.pixels && !here.values)
            rows::overColor(to, row.color, count, here.constant);
        else if (!row.pixels)
            rows::overColor(to, row.color, here.values, count);
        else if (!here.values)
            rows::over(to, row.pixels, count, here.constant, row.isOpaque);
        else
            rows::over(to, row.pixels, here.values, count, row.isOpaque);
    }
}

} // namespace platform
