#include "Platform/QuartzCore/ItemLooks.h"

#include "Platform/QuartzCore/Coverage.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

bool isClip(const RenderList& list, int clip) { return clip >= 0 && std::size_t(clip) < list.clips.size(); }

template <typename Same> bool sameChains(const RenderList& a, int clipA, const RenderList& b, int clipB, const Same& same)
{
    for (std::size_t steps = 0; isClip(a, clipA) && isClip(b, clipB) && steps <= a.clips.size(); ++steps) {
        RenderClip clip = a.clips[std::size_t(clipA)], other = b.clips[std::size_t(clipB)];
        clipA = std::exchange(clip.parent, -1);
        clipB = std::exchange(other.parent, -1);
        if (!same(clip, other))
            return false;
    }
    return !isClip(a, clipA) && !isClip(b, clipB);
}

bool sameContent(const RenderItem& a, const RenderItem& b)
{
    if (a.opacity != b.opacity || a.content.index() != b.content.index())
        return false;
    return std::visit(
        [&](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            const auto& other = std::get<Content>(b.content);
            if constexpr (std::is_same_v<Content, RenderGroup>)
                return content.shadow == other.shadow && !content.mask == !other.mask && !content.content == !other.content;
            else
                return content == other;
        },
        a.content);
}

// A rectangle as the painter takes it, rounded to 1/64 pixel: two that are equal but for whole pixels give equal pixels.
template <typename Shape> bool sameRect(const Shape& a, const Shape& b, int dx, int dy, CGSize offset = {})
{
    constexpr double largestRadius = 256; // pixels; larger corners are computed where they lie
    const CGAffineTransform &s = a.transform, &t = b.transform;
    if (s.a != t.a || s.b != t.b || s.c != t.c || s.d != t.d || a.rect.size() != b.rect.size() || a.cornerRadius != b.cornerRadius
        || a.corners != b.corners)
        return false;
    const auto made = [&](const Shape& shape) {
        return UprightRect::make(
            shape.transform, shape.rect.offsetBy(offset.width, offset.height), shape.cornerRadius, shape.corners);
    };
    const auto u = made(a), v = made(b);
    return u && v && u->left + dx == v->left && u->top + dy == v->top && u->right + dx == v->right && u->bottom + dy == v->bottom
        && std::max(u->radiusX, u->radiusY) <= largestRadius;
}

// Whether the item's pixels follow from its rectangle as it lies on the grid of 1/64 pixel.
bool isRectOnly(const RenderItem& item)
{
    const auto* shadow = std::get_if<RenderShadow>(&item.content);
    return std::holds_alternative<RenderBox>(item.content) || std::holds_alternative<RenderImage>(item.content)
        || (shadow && !shadow->path);
}

bool samePlace(const RenderItem& a, const RenderItem& b, int dx, int dy)
{
    const auto* shadow = std::get_if<RenderShadow>(&a.content);
    return sameRect(a, b, dx, dy) && (!shadow || sameRect(a, b, dx, dy, shadow->offset));
}

bool sameListMoved(const RenderList& before, const RenderList& now, const ScrollMove& move)
{
    if (before.items.size() != now.items.size())
        return false;
    for (std::size_t i = 0; i < now.items.size(); ++i) {
        if (before.items[i].key != now.items[i].key || !looksAlikeMoved(before, before.items[i], now, now.items[i], move))
            return false;
    }
    return true;
}

// A group without a shadow or a mask, whose pixels lie where those of its content do.
bool sameGroupMoved(const RenderItem& old, const RenderItem& item, const ScrollMove& move)
{
    const auto &a = std::get<RenderGroup>(old.content), &b = std::get<RenderGroup>(item.content);
    return !a.shadow && !b.shadow && !a.mask && !b.mask && a.content && b.content && sameListMoved(*a.content, *b.content, move);
}

} // namespace

bool looksAlike(const RenderList& before, const RenderItem& old, const RenderList& now, const RenderItem& item)
{
    const bool isThere = old.transform == item.transform && old.rect == item.rect && old.cornerRadius == item.cornerRadius
        && old.corners == item.corners;
    return old.bounds == item.bounds && sameContent(old, item) && (isThere || (isRectOnly(item) && samePlace(old, item, 0, 0)))
        && sameChains(before, old.clip, now, item.clip, std::equal_to<RenderClip>());
}

bool looksAlikeMoved(
    const RenderList& before, const RenderItem& old, const RenderList& now, const RenderItem& item, const ScrollMove& move)
{
    if (move.moved(old.bounds) != item.bounds.intersection(move.moved(move.clip)) || !sameContent(old, item))
        return false;
    const bool isGroup = std::holds_alternative<RenderGroup>(item.content);
    if (isGroup ? !sameGroupMoved(old, item, move) : !isRectOnly(item) || !samePlace(old, item, move.dx, move.dy))
        return false;
    return sameChains(before, old.clip, now, item.clip,
        [&](const RenderClip& a, const RenderClip& b) { return sameRect(a, b, move.dx, move.dy); });
}

bool holdsBackdrop(const RenderList& list)
{
    return std::any_of(list.items.begin(), list.items.end(), [](const RenderItem& item) {
        const auto* group = std::get_if<RenderGroup>(&item.content);
        return std::holds_alternative<RenderBackdrop>(item.content)
            || (group && group->content && holdsBackdrop(*group->content));
    });
}

} // namespace platform
