#include "Platform/AVFoundation/VideoOutput.h"

#include "Platform/Foundation/MainQueue.h"

#include <utility>

namespace platform {

VideoOutput::VideoOutput(std::function<void()> function)
    : hasNew(std::move(function))
{
}

void VideoOutput::bring(std::shared_ptr<const VideoFrame> newest)
{
    const std::lock_guard lock(mutex);
    frame.swap(newest);
    tell();
}

// Under the lock.
void VideoOutput::tell()
{
    if (std::exchange(isTold, true))
        return;
    MainQueue::shared().async([self = shared_from_this()] {
        {
            const std::lock_guard lock(self->mutex);
            self->isTold = false;
        }
        if (const auto call = self->hasNew)
            call();
    });
}

void VideoOutput::close()
{
    hasNew = nullptr;
    clear();
}

void VideoOutput::clear()
{
    const std::lock_guard lock(mutex);
    frame = nullptr;
}

std::shared_ptr<const VideoFrame> VideoOutput::newest() const
{
    const std::lock_guard lock(mutex);
    return frame;
}

} // namespace platform
