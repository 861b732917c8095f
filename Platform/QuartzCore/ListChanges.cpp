#include "Platform/QuartzCore/ListChanges.h"

#include "Platform/QuartzCore/ItemLooks.h"
#include "Platform/QuartzCore/ListPainter.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace platform {

namespace {

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
    const auto touchesIt = [&](const PixelRect& c) { return c.intersects(r); };
    return std::any_of(changed_.begin(), changed_.end(), touchesIt) || std::any_of(moved_.begin(), moved_.end(), touchesIt);
}

void ListChanges::compareLists(const RenderList* before, const RenderList& now, std::uint64_t path)
{
    if (before == &now && !holdsBackdrop(now))
        return;
    const auto places = before ? placesBefore(*before, now) : std::vector<int>(now.items.size(), -1);
    const bool isRoot = path == rootPath;
    if (before && isRoot)
        findMoves(*before, now, places);
    if (before) {
        std::vector<bool> stays(before->items.size());
        for (int place : places) {
            if (place >= 0)
                stays[std::size_t(place)] = true;
        }
        for (std::size_t i = 0; i < stays.size(); ++i) {
            if (!stays[i])
                addBefore(before->items[i], isRoot ? moveOf(i, &ScrollMove::before) : nullptr);
        }
        addReordered(*before, now, places);
    }
    std::size_t nextMove = 0;
    for (std::size_t i = 0; i < now.items.size(); ++i) {
        const RenderItem* old = places[i] < 0 ? nullptr : &before->items[std::size_t(places[i])];
        if (!isRoot || moves_.empty()) {
            compareItem(before, old, now, now.items[i], path);
            continue;
        }
        if (nextMove < moves_.size() && i == moves_[nextMove].now.first)
            moved_.push_back(moves_[nextMove++].clip); // for the backdrops in it and in front of it
        const ScrollMove* move = moveOf(i, &ScrollMove::now);
        const ScrollMove* oldMove = old ? moveOf(std::size_t(places[i]), &ScrollMove::before) : move;
        if (!move && !oldMove)
            compareItem(before, old, now, now.items[i], path);
        else
            compareMoved(before, old, now, now.items[i], move, oldMove);
    }
}

// Two items that changed places damage what they have in common.
void ListChanges::addReordered(const RenderList& before, const RenderList& now, const std::vector<int>& places)
{
    int highest = -1;
    std::optional<bool> reachesFar; // a blur spreads what two have in common over all its bounds
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
    bool isNew = !old || !looksAlike(*before, *old, now, item);
    if (std::holds_alternative<RenderBackdrop>(item.content)) {
        // Its blur is of everything changed so far, which is what lies behind it.
        const bool sees = touches(item.bounds);
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

// An item inside something that scrolls now, or did before.
void ListChanges::compareMoved(const RenderList* before, const RenderItem* old, const RenderList& now, const RenderItem& item,
    const ScrollMove* move, const ScrollMove* oldMove)
{
    if (old && move == oldMove && looksAlikeMoved(*before, *old, now, item, *move))
        return;
    if (std::holds_alternative<RenderBackdrop>(item.content)) {
        PixelKey key(PixelKey::backdrop);
        cache.erase(key.add(pathBelow(rootPath, item.key)));
    }
    if (old)
        addBefore(*old, oldMove);
    changed_.push_back(item.bounds);
    if (std::holds_alternative<RenderGroup>(item.content))
        compareGroup(nullptr, item, pathBelow(rootPath, item.key));
}

// Where an item was, or where its pixels have gone.
void ListChanges::addBefore(const RenderItem& old, const ScrollMove* move)
{
    changed_.push_back(move ? move->moved(old.bounds) : old.bounds);
}

const ScrollMove* ListChanges::moveOf(std::size_t item, ItemRange ScrollMove::*range) const
{
    for (const ScrollMove& move : moves_) {
        if ((move.*range).holds(item))
            return &move;
    }
    return nullptr;
}

void ListChanges::findMoves(const RenderList& before, const RenderList& now, const std::vector<int>& places)
{
    for (ScrollMove& move : scrollMoves(before, now)) {
        const auto crosses = [&](const ScrollMove& other) { return other.clip.intersects(move.clip); };
        if (std::any_of(moves_.begin(), moves_.end(), crosses))
            continue;
        const auto repainted = standingStill(before, now, places, move);
        long pixels = 0;
        for (const PixelRect& r : repainted)
            pixels += r.area();
        if (pixels > move.clip.area() / 2)
            continue; // painting all of it is as cheap
        changed_.insert(changed_.end(), repainted.begin(), repainted.end());
        moves_.push_back(move);
    }
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
