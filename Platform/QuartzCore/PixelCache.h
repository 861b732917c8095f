#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGPath.h"

#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

namespace platform {

// What a cached picture shows: its kind, and every number that its pixels depend on.
class PixelKey {
public:
    enum Kind : std::uint64_t {
        corners,
        ring,
        shadow,
        pathShadow,
        shape,
        ramp,
        scaledImage,
        drawing,
        level,
        backdrop,
        groupShadow
    };

    explicit PixelKey(Kind kind) { add(kind); }
    PixelKey& add(std::uint64_t value);
    PixelKey& add(double value);
    PixelKey& add(const CGColor& color);
    PixelKey& add(const CGPath& path); // by content
    bool operator==(const PixelKey&) const = default;
    std::uint64_t hash() const { return high; }

private:
    // Two mixes of all numbers: 128 bits, so that a mistaken identity does not happen.
    std::uint64_t high = 0x9e3779b97f4a7c15, low = 0xc2b2ae3d27d4eb4f;
};

// Pictures that later frames need again, least recently used ones dropped first, and those that no frame has needed for long:
// what a scrolled list shows moves as pixels once it is in sight. Within a frame nothing is dropped.
class PixelCache {
public:
    static constexpr std::size_t capacity = 14u << 20; // bytes
    static constexpr unsigned longestUnused = 20; // painted frames, a third of a second of motion
    // Null when it is not there.
    std::shared_ptr<const Bitmap> find(const PixelKey& key);
    template <typename Make> std::shared_ptr<const Bitmap> findOrMake(const PixelKey& key, const Make& make)
    {
        auto found = find(key);
        if (!found) {
            found = make();
            insert(key, found);
        }
        return found;
    }
    void insert(const PixelKey& key, std::shared_ptr<const Bitmap> bitmap);
    void erase(const PixelKey& key);
    void clear();
    void endFrame(); // drops what is beyond the capacity or has grown old
    std::size_t bytes() const { return bytes_; }

private:
    struct Entry {
        PixelKey key;
        std::shared_ptr<const Bitmap> bitmap;
        unsigned lastUsed; // frame
    };
    struct Hash {
        std::size_t operator()(const PixelKey& key) const { return std::size_t(key.hash()); }
    };
    std::list<Entry> entries; // most recently used first
    std::unordered_map<PixelKey, std::list<Entry>::iterator, Hash> byKey;
    unsigned frame = 0;
    std::size_t bytes_ = 0;
};

} // namespace platform
