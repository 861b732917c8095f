#include "Platform/CoreGraphics/Bitmap.h"

#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sys/mman.h>
#include <vector>

namespace platform {
namespace {
constexpr int maximumSide = 32767; // Cairo's and pixman's limit
constexpr std::size_t rowAlignment = 64; // bytes; a cache line
constexpr std::size_t smallestBlock = 4096;
constexpr std::size_t smallestMapped = 64u << 10; // bytes
constexpr std::size_t hugePage = 2u << 20; // bytes
constexpr int stepsPerDoubling = 4; // so that at most a fifth of a block is unused
constexpr std::size_t mostKept = 12u << 20; // bytes; a phone's frame

struct FreeBlock {
    std::uint8_t* data;
    std::uint64_t released; // a count that grows
};

// Released blocks by size class.
struct Pool {
    std::mutex mutex;
    std::array<std::vector<FreeBlock>, 64 * stepsPerDoubling> free; // the newest last
    std::size_t used = 0;
    std::size_t kept = 0;
    std::uint64_t releases = 0;
};

Pool& pool()
{
    static auto& shared = *new Pool; // never destroyed: bitmaps in statics outlive it otherwise
    return shared;
}

struct SizeClass {
    std::size_t index;
    std::size_t bytes;
};

SizeClass sizeClassFor(std::size_t bytes)
{
    bytes = std::max(bytes, smallestBlock);
    const auto exponent = std::size_t(std::bit_width(bytes) - 1);
    const std::size_t base = std::size_t(1) << exponent, step = base / stepsPerDoubling;
    const std::size_t steps = (bytes - base + step - 1) / step; // 0 to 4; the fourth is the next doubling's first
    return { exponent * stepsPerDoubling + steps, base + steps * step };
}

std::size_t classBytes(std::size_t index)
{
    const std::size_t base = std::size_t(1) << (index / stepsPerDoubling);
    return base + index % stepsPerDoubling * (base / stepsPerDoubling);
}

// All but small blocks have pages of their own, which go back to the system when they are released: a heap would keep them, in
// pieces that fit nobody. Frames and pictures begin on a huge page and ask for such pages: their first touch takes one fault for
// 2 MiB instead of 512, and passes over them miss fewer translations.
std::uint8_t* mapPages(std::size_t bytes)
{
    if (bytes < hugePage) {
        void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return pages == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(pages);
    }
    const std::size_t room = bytes + hugePage;
    void* mapped = mmap(nullptr, room, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        return nullptr;
    auto* start = static_cast<std::uint8_t*>(mapped);
    const std::size_t before = (hugePage - reinterpret_cast<std::uintptr_t>(start) % hugePage) % hugePage;
    if (before > 0)
        munmap(start, before);
    munmap(start + before + bytes, room - before - bytes);
#ifdef MADV_HUGEPAGE
    madvise(start + before, bytes / hugePage * hugePage, MADV_HUGEPAGE); // a hint; the pages are there without it too
#endif
    return start + before;
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool hasOwnPages(std::size_t) { return false; } // so that a write past the end is noticed
#else
constexpr bool hasOwnPages(std::size_t bytes)
{
    return bytes >= smallestMapped;
} // a class this large is a multiple of the page size
#endif

std::uint8_t* allocate(std::size_t bytes)
{
    if (hasOwnPages(bytes))
        return mapPages(bytes);
    void* block = nullptr;
    return posix_memalign(&block, rowAlignment, bytes) == 0 ? static_cast<std::uint8_t*>(block) : nullptr;
}

void release(std::uint8_t* block, std::size_t bytes)
{
    if (hasOwnPages(bytes))
        munmap(block, bytes);
    else
        std::free(block);
}

std::uint8_t* takeBlock(const SizeClass& size)
{
    auto& p = pool();
    const std::lock_guard lock(p.mutex);
    auto& blocks = p.free[size.index];
    std::uint8_t* block = nullptr;
    if (!blocks.empty()) {
        block = blocks.back().data;
        blocks.pop_back();
        p.kept -= size.bytes;
    } else {
        block = allocate(size.bytes);
    }
    if (block)
        p.used += size.bytes;
    return block;
}

void giveBlock(std::uint8_t* block, std::size_t bytes)
{
    auto& p = pool();
    const std::lock_guard lock(p.mutex);
    p.used -= bytes;
    p.free[sizeClassFor(bytes).index].push_back({ block, ++p.releases });
    p.kept += bytes;
    // What has waited longest gives way: a film's pictures, which come back for every frame, stay.
    while (p.kept > mostKept) {
        std::size_t oldest = 0;
        std::uint64_t released = p.releases + 1;
        for (std::size_t index = 0; index < p.free.size(); ++index) {
            if (!p.free[index].empty() && p.free[index].front().released < released) {
                released = p.free[index].front().released;
                oldest = index;
            }
        }
        auto& blocks = p.free[oldest];
        release(blocks.front().data, classBytes(oldest));
        blocks.erase(blocks.begin());
        p.kept -= classBytes(oldest);
    }
}
}

std::shared_ptr<Bitmap> Bitmap::make(int width, int height, PixelFormat format, bool clear)
{
    if (width <= 0 || height <= 0 || width > maximumSide || height > maximumSide)
        return nullptr;
    const std::size_t rowBytes = std::size_t(width) * (format == PixelFormat::alpha ? 1 : 4);
    const std::size_t stride = (rowBytes + rowAlignment - 1) / rowAlignment * rowAlignment;
    const auto size = sizeClassFor(stride * std::size_t(height));
    auto* block = takeBlock(size);
    if (!block)
        return nullptr;
    std::shared_ptr<Bitmap> bitmap(new Bitmap);
    bitmap->width_ = width;
    bitmap->height_ = height;
    bitmap->stride_ = int(stride);
    bitmap->format_ = format;
    bitmap->data_ = block;
    bitmap->capacity = size.bytes;
    if (clear)
        std::memset(block, 0, bitmap->byteCount());
    return bitmap;
}

void Bitmap::noteExtents()
{
    extents.assign(std::size_t(height_), {});
    for (int y = 0; y < height_; ++y) {
        const std::uint32_t* pixels = row(y);
        int first = 0, end = width_;
        while (end > 0 && pixels[end - 1] == 0)
            --end;
        while (first < end && pixels[first] == 0)
            ++first;
        extents[std::size_t(y)] = { first, end };
    }
}

Bitmap::~Bitmap() { giveBlock(data_, capacity); }

std::size_t PixelPool::bytesInUse()
{
    const std::lock_guard lock(pool().mutex);
    return pool().used;
}

std::size_t PixelPool::bytesKept()
{
    const std::lock_guard lock(pool().mutex);
    return pool().kept;
}

void PixelPool::trim(std::size_t keepBytes)
{
    auto& p = pool();
    const std::lock_guard lock(p.mutex);
    for (std::size_t index = p.free.size(); index-- > 0;) { // the largest first
        auto& blocks = p.free[index];
        while (!blocks.empty() && p.kept > keepBytes) {
            release(blocks.back().data, classBytes(index));
            blocks.pop_back();
            p.kept -= classBytes(index);
        }
    }
}

} // namespace platform
