#pragma once

#include <cstdint>

namespace platform {

// A decoded picture: brightness at full size, two colour differences at half (4:2:0). One byte a sample.
struct VideoPlanes {
    const std::uint8_t* y = nullptr;
    const std::uint8_t* u = nullptr;
    const std::uint8_t* v = nullptr;
    int yStride = 0; // bytes
    int uStride = 0;
    int vStride = 0;
    int width = 0; // pixels
    int height = 0;
    bool isHighDefinition = false; // BT.709 rather than BT.601
    bool isFullRange = false; // black is 0 and white 255, rather than 16 and 235
};

// A decoded picture and its time. Immutable; any thread. Its memory goes back to the decoder with it.
class VideoFrame {
public:
    virtual ~VideoFrame() = default;
    const VideoPlanes& planes() const { return planes_; }
    double time() const { return time_; } // seconds from the beginning of the medium
    double pixelAspect() const { return pixelAspect_; } // how much wider than high a pixel is shown

protected:
    VideoPlanes planes_;
    double time_ = 0;
    double pixelAspect_ = 1;
};

} // namespace platform
