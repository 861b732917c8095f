#include "Platform/QuartzCore/ScrollMoves.h"

#include "Platform/QuartzCore/Coverage.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace platform {

namespace {

// Whole pixels from one place to the other, or nothing.
std::optional<int> wholePixels(double from, double to)
{
    constexpr double rounding = 1e-6; // pixels; what adding offsets of many screens leaves
    const double way = std::round(to - from);
    if (!(std::abs(to - from - way) <= rounding) || std::abs(way) > 1e6)
        return {};
    return int(way);
}

// Whether the item is one opaque colour in every pixel of the rectangle.
bool isOneColor(const RenderItem& item, const PixelRect& everywhere)
{
    const auto* box = std::get_if<RenderBox>(&item.content);
    if (!box || !box->fill || !box->fill->isOpaque() || (box->border && box->borderWidth > 0) || item.opacity < 1
        || item.clip >= 0 || !item.bounds.contains(everywhere))
        return false;
    const auto upright = UprightRect::make(item.transform, item.rect, item.cornerRadius, item.corners);
    return upright && upright->inside().contains(everywhere);
}

} // namespace

std::vector<ScrollMove> scrollMoves(const RenderList& before, const RenderList& now)
{
    std::vector<ScrollMove> moves;
    std::unordered_map<std::uint64_t, const RenderScroll*> byKey;
    for (std::size_t i = 0; i < now.scrolls.size(); ++i) {
        const RenderScroll& scroll = now.scrolls[i];
        if (!moves.empty() && moves.back().now.holds(scroll.first))
            continue; // inside one that moves
        const RenderScroll* old = i < before.scrolls.size() ? &before.scrolls[i] : nullptr;
        if (!old || old->key != scroll.key) {
            if (byKey.empty()) {
                for (const RenderScroll& s : before.scrolls)
                    byKey.emplace(s.key, &s);
            }
            const auto found = byKey.find(scroll.key);
            old = found == byKey.end() ? nullptr : found->second;
        }
        if (!old || old->clip != scroll.clip || old->origin == scroll.origin)
            continue;
        const auto dx = wholePixels(old->origin.x, scroll.origin.x), dy = wholePixels(old->origin.y, scroll.origin.y);
        if (!dx || !dy || (*dx == 0 && *dy == 0))
            continue;
        const ScrollMove move { scroll.clip, *dx, *dy, { old->first, old->end }, { scroll.first, scroll.end } };
        const bool nests = std::any_of(moves.begin(), moves.end(), [&](const ScrollMove& other) {
            return other.before.first < move.before.end && move.before.first < other.before.end;
        });
        if (!move.moved(move.clip).isEmpty() && !nests)
            moves.push_back(move);
    }
    return moves;
}

std::vector<PixelRect> standingStill(
    const RenderList& before, const RenderList& now, const std::vector<int>& places, const ScrollMove& move)
{
    std::vector<PixelRect> repainted;
    const auto add = [&](const PixelRect& r) {
        if (!r.isEmpty())
            repainted.push_back(r);
    };
    const PixelRect &clip = move.clip, kept = move.moved(clip);
    add({ clip.x, clip.y, clip.width, kept.y - clip.y });
    add({ clip.x, kept.maxY(), clip.width, clip.maxY() - kept.maxY() });
    add({ clip.x, kept.y, kept.x - clip.x, kept.height });
    add({ kept.maxX(), kept.y, clip.maxX() - kept.maxX(), kept.height });
    // What lies below the ground is not seen in either list.
    std::size_t firstBefore = 0, firstNow = 0;
    for (std::size_t i = move.now.first; i-- > 0 && firstNow == 0;) {
        const auto place = std::size_t(places[i]);
        if (places[i] < 0 || place >= move.before.first || !isOneColor(now.items[i], clip)
            || !isOneColor(before.items[place], clip)
            || std::get<RenderBox>(now.items[i].content).fill != std::get<RenderBox>(before.items[place].content).fill)
            continue;
        firstNow = i + 1;
        firstBefore = place + 1;
    }
    for (std::size_t i = firstNow; i < now.items.size(); ++i) {
        if (!move.now.holds(i))
            add(now.items[i].bounds.intersection(clip));
    }
    for (std::size_t i = firstBefore; i < before.items.size(); ++i) {
        if (!move.before.holds(i))
            add(move.moved(before.items[i].bounds));
    }
    return repainted;
}

} // namespace platform
