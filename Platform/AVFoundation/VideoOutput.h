#pragma once

#include "Platform/AVFoundation/VideoFrame.h"
#include "Platform/CoreGraphics/Bitmap.h"

#include <functional>
#include <memory>
#include <mutex>

namespace platform {

// How a video lies in its layer: stretched over it, whole inside of it, or covering it and cut at its edges.
enum class AVLayerVideoGravity : unsigned char { resize, resizeAspect, resizeAspectFill };

// What a layer needs of a frame.
struct VideoTarget {
    int width = 0; // pixels of the layer; 0 while they are not known
    int height = 0;
    AVLayerVideoGravity gravity = AVLayerVideoGravity::resizeAspect;
    bool operator==(const VideoTarget&) const = default;
};

// The frame's picture for that layer: all of the layer's pixels, or fewer where the video does not cover it, by an even number so
// that it can lie in the middle. Null for an empty target.
std::shared_ptr<Bitmap> drawVideo(const VideoFrame& frame, const VideoTarget& target);

// Between the media library's threads, which bring a frame, and the layer, which shows it: draws it on the thread that brings it,
// as long as the layer shows what it gets.
class VideoOutput final : public std::enable_shared_from_this<VideoOutput> {
public:
    // `hasNew` is called on the main thread when there is something to take.
    explicit VideoOutput(std::function<void()> hasNew);

    // Media thread.
    void bring(const std::shared_ptr<const VideoFrame>& frame);

    // Main thread.
    void close(); // nothing is called any more
    void clear(); // forgets the frame: another medium comes
    // The picture of the newest frame, once; null when it was taken, or not drawn since nobody looks.
    std::shared_ptr<const Bitmap> take();
    // The layer is seen, with these pixels. Draws the newest frame if its picture is not there in this shape.
    std::shared_ptr<const Bitmap> see(const VideoTarget& target);
    long drawnCount() const; // pictures so far

private:
    void tell();

    mutable std::mutex mutex;
    std::function<void()> hasNew; // main thread
    VideoTarget target;
    std::shared_ptr<const VideoFrame> frame; // the newest
    std::shared_ptr<const Bitmap> picture; // of the newest frame, until it is taken
    bool isDrawing = false; // on the media thread, the newest frame, for the target
    bool isDrawn = false;
    bool isTold = false; // a call is on its way
    int unseen = 0; // frames since the layer was seen
    long drawn = 0;
};

} // namespace platform
