#pragma once

#include <cstdint>
#include <memory>

namespace platform {

// Opaque pixels that are computed where they are drawn rather than kept in memory, such as a video frame's. Immutable; any
// thread.
class LazyPixels {
public:
    // One pass over them, which may keep what neighbouring rows have in common. One thread; not longer than the pixels.
    class Reader {
    public:
        virtual ~Reader() = default;
        // `count` words of alpha 255, from pixel (x, y) to the right. They depend on their places alone; passes from top to
        // bottom over columns that stay the same are cheapest.
        virtual void read(std::uint32_t* to, int x, int y, int count) = 0;
    };

    virtual ~LazyPixels() = default;
    int width() const { return width_; } // pixels
    int height() const { return height_; }
    virtual std::unique_ptr<Reader> reader() const = 0;

protected:
    LazyPixels(int width, int height)
        : width_(width)
        , height_(height)
    {
    }

private:
    int width_;
    int height_;
};

} // namespace platform
