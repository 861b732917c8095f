#include "Platform/QuartzCore/ListChanges.h"

#include "Platform/QuartzCore/ListPainter.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace platform {

namespace {

PixelRect grownBy(const PixelRect& r, int by) { return { r.x - by, r.y - by, r.width + 2 * by, r.height + 2 * by }; }

bool sameClips(const RenderList& a, int clipA, const RenderList& b, int clipB)
{
    const auto isClip = [](const RenderList& list, int clip) { return clip >= 0 && std::size_t(clip) < list.clips.size(); };
    for (std::size_t steps = 0; isClip(a, clipA) && isClip(b, clipB) && steps <= a.clips.size(); ++steps) {
        RenderClip clip = a.clips[std::size_t(clipA)], other = b.clips[std::size_t(clipB)];
        clipA = std::exchange(clip.parent, -1);
        clipB = std::exchange(other.parent, -1);
        if (clip != other)
            return false;
    }
    return !isClip(a, clipA) && !isClip(b, clipB);
}

// All but what a group holds.
bool looksAlike(const RenderItem& a, const RenderItem& b)
{
    if (a.bounds != b.bounds || a.opacity != b.opacity || a.transform != b.transform || a.rect != b.rect
        || a.cornerRadius != b.cornerRadius || a.corners != b.corners || a.content.index() != b.content.index())
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

bool holdsBackdrop(const RenderList& list)
{
    return std::any_of(list.items.begin(), list.items.end(), [](const RenderItem& item) {
        const auto* group = std::get_if<RenderGroup>(&item.content);
        return std::holds_alternative<RenderBackdrop>(item.content)
            || (group && group->content && holdsBackdrop(*group->content));
    });
}

// The index in the list before of each item of the list now, -1 for a new one. Most frames keep most of the order.
std::vector<int> placesBefore(const RenderList& before, const RenderList& now)
{
    std::vector<int> places(now.items.size(), -1);
    std::unordered_map<std::uint64_t, int> byKey;
    for (std::size_t i = 0, expected = 0; i < now.items.size(); ++i) {
        const std::uint64_t key = now.items[i].key;
        if (expected < before.items.size() && before.items[expected].key == key) {
            places[i] = int(expected++);
            continue;
        }
        if (byKey.empty()) {
            for (std::size_t k = 0; k < before.items.size(); ++k)
                byKey.emplace(before.items[k].key, int(k));
        }
        const auto found = byKey.find(key);
        if (found == byKey.end())
            continue;
        places[i] = found->second;
        expected = std::size_t(found->second) + 1;
    }
    return places;
}

} // namespace

ListChanges::ListChanges(const PixelRect& screenRect, PixelCache& pixelCache)
    : screen(screenRect)
    , cache(pixelCache)
{
}

void ListChanges::compare(const RenderList* before, const RenderList& now)
{
    compareLists(before && before->toPixels == now.toPixels ? before : nullptr, now, rootPath);
    if (before && before->toPixels != now.toPixels)
        changed_.assign(1, screen);
}

bool ListChanges::touches(const PixelRect& r) const
{
    return std::any_of(changed_.begin(), changed_.end(), [&](const PixelRect& c) { return c.intersects(r); });
}

void ListChanges::compareLists(const RenderList* before, const RenderList& now, std::uint64_t path)
{
    if (before == &now && !holdsBackdrop(now))
        return;
    const auto places = before ? placesBefore(*before, now) : std::vector<int>(now.items.size(), -1);
    if (before) {
        std::vector<bool> stays(before->items.size());
        for (int place : places) {
            if (place >= 0)
                stays[std::size_t(place)] = true;
        }
        for (std::size_t i = 0; i < stays.size(); ++i) {
            if (!stays[i])
                changed_.push_back(before->items[i].bounds);
        }
        addReordered(*before, now, places);
    }
    for (std::size_t i = 0; i < now.items.size(); ++i)
        compareItem(before, places[i] < 0 ? nullptr : &before->items[std::size_t(places[i])], now, now.items[i], path);
}

// Two items that changed places damage what they have in common.
void ListChanges::addReordered(const RenderList& before, const RenderList& now, const std::vector<int>& places)
{
    int highest = -1;
    std::optional<bool> reachesFar; // a backdrop looks further than its bounds
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] < 0)
            continue;
        if (places[i] > highest) {
            highest = places[i];
            continue;
        }
        if (!reachesFar)
            reachesFar = holdsBackdrop(now);
        for (std::size_t k = 0; k < i; ++k) {
            if (places[k] <= places[i])
                continue;
            if (*reachesFar) {
                for (const RenderItem* item : { &now.items[i], &now.items[k], &before.items[std::size_t(places[i])],
                         &before.items[std::size_t(places[k])] })
                    changed_.push_back(item->bounds);
            } else if (const PixelRect common = now.items[i].bounds.intersection(now.items[k].bounds); !common.isEmpty()) {
                changed_.push_back(common);
            }
        }
    }
}

void ListChanges::compareItem(
    const RenderList* before, const RenderItem* old, const RenderList& now, const RenderItem& item, std::uint64_t path)
{
    bool isNew = !old || !looksAlike(*old, item) || !sameClips(*before, old->clip, now, item.clip);
    if (std::holds_alternative<RenderBackdrop>(item.content)) {
        // Its blur is of everything changed so far, which is what lies behind it.
        const bool sees = touches(grownBy(item.bounds, backdropReach(item, screen)));
        if (isNew || sees) {
            PixelKey key(PixelKey::backdrop);
            cache.erase(key.add(pathBelow(path, item.key)));
            isNew = true;
        }
    }
    if (isNew) {
        if (old)
            changed_.push_back(old->bounds);
        changed_.push_back(item.bounds);
    }
    if (std::holds_alternative<RenderGroup>(item.content))
        compareGroup(isNew ? nullptr : old, item, pathBelow(path, item.key));
}

void ListChanges::compareGroup(const RenderItem* old, const RenderItem& item, std::uint64_t path)
{
    const auto& group = std::get<RenderGroup>(item.content);
    const auto* oldGroup = old ? &std::get<RenderGroup>(old->content) : nullptr;
    const std::size_t first = changed_.size();
    if (group.content)
        compareLists(oldGroup ? oldGroup->content.get() : nullptr, *group.content, path);
    if (group.mask)
        compareLists(oldGroup ? oldGroup->mask.get() : nullptr, *group.mask, pathBelow(path, maskPathKey));
    if (group.shadow && changed_.size() > first) {
        // Any change of the content may be anywhere in its shadow.
        PixelKey key(PixelKey::groupShadow);
        cache.erase(key.add(path));
        changed_.push_back(item.bounds);
    }
    for (std::size_t i = first; i < changed_.size(); ++i)
        changed_[i] = changed_[i].intersection(item.bounds);
}

} // namespace platform
