#pragma once

#include "Platform/AVFoundation/VideoFrame.h"
#include "Platform/AVFoundation/VideoRows.h"
#include "Platform/CoreGraphics/LazyPixels.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace platform {

// How a video lies in its layer: stretched over it, whole inside of it, or covering it and cut at its edges.
enum class AVLayerVideoGravity : unsigned char { resize, resizeAspect, resizeAspectFill };

// What a layer needs of a frame.
struct VideoTarget {
    int width = 0; // pixels of the layer
    int height = 0;
    AVLayerVideoGravity gravity = AVLayerVideoGravity::resizeAspect;
    bool operator==(const VideoTarget&) const = default;
};

// A part of a decoded frame, scaled to exactly so many pixels; where it shrinks to less than half, from halved planes. Holds the
// frame, and counts the pixels that are read of it.
class VideoPixels final : public LazyPixels {
public:
    using Counter = std::shared_ptr<std::atomic<long>>;

    VideoPixels(
        std::shared_ptr<const VideoFrame> frame, const VideoPart& part, int width, int height, Counter pixelsRead = nullptr);
    ~VideoPixels() override;
    // The frame as a layer shows it: all of the layer's pixels, or fewer where the video does not cover it, by an even number so
    // that it can lie in the middle. Null for an empty target.
    static std::shared_ptr<const VideoPixels> fitted(
        std::shared_ptr<const VideoFrame> frame, const VideoTarget& target, Counter pixelsRead);

    // LazyPixels
    std::unique_ptr<Reader> reader() const override;

private:
    struct HalvedPlanes;
    class RowsReader;
    void halve() const;

    const std::shared_ptr<const VideoFrame> frame;
    const Counter pixelsRead;
    mutable std::once_flag isHalved;
    mutable std::unique_ptr<HalvedPlanes> halved; // null where the frame's own planes do
    mutable VideoPart part; // of the planes that are read
};

} // namespace platform
