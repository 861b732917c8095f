#include "Platform/QuartzCore/PixelCache.h"

#include <bit>

namespace platform {

PixelKey& PixelKey::add(std::uint64_t value)
{
    high = std::rotl((high ^ value) * 0xff51afd7ed558ccd, 31) + low;
    low = std::rotl((low + value) * 0xc4ceb9fe1a85ec53, 29) ^ high;
    return *this;
}

PixelKey& PixelKey::add(double value)
{
    return add(std::bit_cast<std::uint64_t>(value + 0.0)); // no negative zero
}

PixelKey& PixelKey::add(const CGColor& color) { return add(color.red).add(color.green).add(color.blue).add(color.alpha); }

PixelKey& PixelKey::add(const CGPath& path)
{
    for (const auto& element : path.elements()) {
        add(std::uint64_t(element.verb));
        for (const CGPoint& p : element.points)
            add(p.x).add(p.y);
    }
    return *this;
}

std::shared_ptr<const Bitmap> PixelCache::find(const PixelKey& key)
{
    const auto found = byKey.find(key);
    if (found == byKey.end())
        return nullptr;
    entries.splice(entries.begin(), entries, found->second);
    found->second->lastUsed = frame;
    return found->second->bitmap;
}

void PixelCache::insert(const PixelKey& key, std::shared_ptr<const Bitmap> bitmap)
{
    erase(key);
    if (!bitmap)
        return;
    bytes_ += bitmap->byteCount();
    entries.push_front({ key, std::move(bitmap), frame });
    byKey.emplace(key, entries.begin());
}

void PixelCache::erase(const PixelKey& key)
{
    const auto found = byKey.find(key);
    if (found == byKey.end())
        return;
    bytes_ -= found->second->bitmap->byteCount();
    entries.erase(found->second);
    byKey.erase(found);
}

void PixelCache::clear()
{
    byKey.clear();
    entries.clear();
    bytes_ = 0;
}

void PixelCache::endFrame()
{
    ++frame;
    while (bytes_ > capacity || (!entries.empty() && frame - entries.back().lastUsed > longestUnused)) {
        bytes_ -= entries.back().bitmap->byteCount();
        byKey.erase(entries.back().key);
        entries.pop_back();
    }
}

} // namespace platform
