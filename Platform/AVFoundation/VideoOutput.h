#pragma once

#include "Platform/AVFoundation/VideoFrame.h"

#include <functional>
#include <memory>
#include <mutex>

namespace platform {

// Between the media library's threads, which bring frames, and a layer, which shows the newest.
class VideoOutput final : public std::enable_shared_from_this<VideoOutput> {
public:
    // `hasNew` is called on the main thread when another frame has come.
    explicit VideoOutput(std::function<void()> hasNew);

    // Media thread.
    void bring(std::shared_ptr<const VideoFrame> frame);

    // Main thread.
    void close(); // nothing is called any more
    void clear(); // forgets the frame: another medium comes
    std::shared_ptr<const VideoFrame> newest() const; // null before the first

private:
    void tell();

    std::function<void()> hasNew; // main thread
    mutable std::mutex mutex;
    std::shared_ptr<const VideoFrame> frame; // the newest
    bool isTold = false; // a call is on its way
};

} // namespace platform
