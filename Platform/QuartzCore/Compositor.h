#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGGeometry.h"

#include <memory>
#include <vector>

namespace platform {

struct RenderList;

// Pixels that went from one place of the frame to another, before the damage was drawn.
struct PixelMove {
    PixelRect from; // where they were
    int dx = 0, dy = 0; // pixels they went
};

struct FrameChange {
    std::vector<PixelMove> moves; // in order
    std::vector<PixelRect> damage; // do not overlap
    bool isEmpty() const { return moves.empty() && damage.empty(); }
};

// Draws render lists into one frame, repainting only what differs from the list before.
class Compositor {
public:
    Compositor();
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    // A new size (pixels) makes everything damaged. Under everything lies opaque black.
    void setSize(int width, int height);
    // The next frame is painted whole.
    void invalidate();
    FrameChange composite(const std::shared_ptr<const RenderList>& list);
    // The last frame, opaque (xrgb). Valid until the next composite or setSize.
    const std::shared_ptr<const Bitmap>& frame() const;
    // Drops the picture caches, for instance on memory pressure.
    void dropCaches();
    std::size_t cachedBytes() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
