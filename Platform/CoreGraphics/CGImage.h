#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/LazyPixels.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// Whole pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
};

// An immutable picture: pixels, in memory or computed as they are drawn, or a drawing that renders at any pixel size (an SVG).
// Shared as `std::shared_ptr<const CGImage>`; any thread.
class CGImage {
public:
    // Renders the drawing at exactly that many pixels; null when it cannot.
    using Render = std::function<std::shared_ptr<const Bitmap>(int width, int height)>;

    static std::shared_ptr<const CGImage> fromBitmap(std::shared_ptr<const Bitmap> pixels);
    static std::shared_ptr<const CGImage> fromLazyPixels(std::shared_ptr<const LazyPixels> pixels);
    // A drawing of that natural size (in its own units, at least 1 by 1).
    static std::shared_ptr<const CGImage> fromDrawing(double width, double height, Render render);
    // Reads PNG, JPEG or SVG by content. Null after one console line that says which input (by its name) and why. A picture of
    // more than 64 million pixels is refused, a truncated one too. Where `enough` is given, a JPEG at least twice as large comes
    // out at a half, quarter or eighth that still has so many pixels each way: that is several times faster.
    static std::shared_ptr<const CGImage> decode(
        const std::vector<std::uint8_t>& bytes, const std::string& name, const std::optional<PixelSize>& enough = {});

    std::uint64_t id() const { return id_; } // never reused in a process
    double width() const { return width_; } // pixels of a bitmap, natural units of a drawing
    double height() const { return height_; }
    bool isDrawing() const { return bool(render); }
    bool isOpaque() const { return lazy || (pixels_ && pixels_->format() == PixelFormat::xrgb); }
    // A bitmap image's own pixels; null for a drawing. Lazy ones are computed at the first call and kept with the image.
    const std::shared_ptr<const Bitmap>& pixels() const;
    // Null unless the image was made of them.
    const std::shared_ptr<const LazyPixels>& lazyPixels() const { return lazy; }
    // The picture at exactly that many pixels, well filtered (a bitmap is scaled by area and bilinear steps). Not cached here.
    std::shared_ptr<const Bitmap> rendered(int width, int height) const;

private:
    std::uint64_t id_ = 0;
    double width_ = 0;
    double height_ = 0;
    std::shared_ptr<const LazyPixels> lazy;
    mutable std::once_flag isComputed; // of lazy pixels
    mutable std::shared_ptr<const Bitmap> pixels_;
    Render render;
};

// Writes the pixels as PNG, false (after one console line) when the file cannot be written.
bool writePNG(const Bitmap& bitmap, const std::string& path);

} // namespace platform
