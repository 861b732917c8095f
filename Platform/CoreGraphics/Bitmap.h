#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

enum class PixelFormat : unsigned char {
    argb, // one native-endian 32-bit word 0xAARRGGBB a pixel, premultiplied
    xrgb, // the same without alpha: opaque
    alpha, // one byte of coverage a pixel
};

// Columns of a row, the end exclusive.
struct RowExtent {
    int first = 0, end = 0;
};

// Pixels in memory that came from the pool and go back to it. Its rows begin 64-byte aligned. Any thread, one at a time.
class Bitmap {
public:
    // Contents are undefined until written, unless clear is asked for. A size of 0 or less, or beyond 32,767 a side, gives null.
    static std::shared_ptr<Bitmap> make(int width, int height, PixelFormat format, bool clear = false);
    ~Bitmap();
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;

    int width() const { return width_; }
    int height() const { return height_; }
    int stride() const { return stride_; } // bytes from row to row
    PixelFormat format() const { return format_; }
    PixelRect bounds() const { return { 0, 0, width_, height_ }; }
    std::size_t byteCount() const { return std::size_t(stride_) * std::size_t(height_); }
    std::uint8_t* data() { return data_; }
    const std::uint8_t* data() const { return data_; }
    std::uint32_t* row(int y) { return reinterpret_cast<std::uint32_t*>(data_ + std::size_t(y) * std::size_t(stride_)); }
    const std::uint32_t* row(int y) const
    {
        return reinterpret_cast<const std::uint32_t*>(data_ + std::size_t(y) * std::size_t(stride_));
    }
    const std::uint8_t* alphaRow(int y) const { return data_ + std::size_t(y) * std::size_t(stride_); }
    std::uint8_t* alphaRow(int y) { return data_ + std::size_t(y) * std::size_t(stride_); }

    // Notes which part of each row is not clear, so that whoever draws it can leave out the rest, which is half of most texts.
    // For argb pixels that do not change any more.
    void noteExtents();
    // That part of a row; all of it when it was not noted.
    RowExtent extent(int y) const { return extents.empty() ? RowExtent { 0, width_ } : extents[std::size_t(y)]; }

private:
    Bitmap() = default;
    int width_ = 0;
    int height_ = 0;
    int stride_ = 0;
    PixelFormat format_ = PixelFormat::argb;
    std::uint8_t* data_ = nullptr;
    std::size_t capacity = 0;
    std::vector<RowExtent> extents;
};

// The one home of pixel memory: a released block is kept for the next request of its size class, because the first touch of fresh
// memory costs more than composing a frame into it.
class PixelPool {
public:
    static std::size_t bytesInUse();
    static std::size_t bytesKept(); // released, waiting for reuse
    static void trim(std::size_t keepBytes); // gives kept blocks beyond that back to the system
};

} // namespace platform
