#include "Platform/AVFoundation/VideoOutput.h"

#include "Platform/AVFoundation/VideoPixels.h"
#include "Platform/Foundation/MainQueue.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// So many frames may come before the screen's next frame is drawn; after that the layer counts as out of sight.
constexpr int mostUnseen = 3;

// Nearest to `ideal`, and even or odd as `around` is.
int fitted(double ideal, int around)
{
    const int half = int(std::lround((around - ideal) / 2));
    return std::clamp(around - 2 * half, std::min(2 - around % 2, around), around);
}

} // namespace

std::shared_ptr<Bitmap> drawVideo(const VideoFrame& frame, const VideoTarget& target)
{
    const VideoPlanes& planes = frame.planes();
    VideoPart part { 0, 0, double(planes.width), double(planes.height) };
    int width = target.width, height = target.height;
    if (width <= 0 || height <= 0 || planes.width <= 0 || planes.height <= 0)
        return nullptr;
    // Target pixels for each of the video's, across and down.
    const double across = width / (planes.width * frame.pixelAspect()), down = double(height) / planes.height;
    if (target.gravity == AVLayerVideoGravity::resizeAspect) {
        const double scale = std::min(across, down);
        width = fitted(planes.width * frame.pixelAspect() * scale, width);
        height = fitted(planes.height * scale, height);
    } else if (target.gravity == AVLayerVideoGravity::resizeAspectFill) {
        const double scale = std::max(across, down);
        part.width *= across / scale;
        part.height *= down / scale;
        part.x = (planes.width - part.width) / 2;
        part.y = (planes.height - part.height) / 2;
    }
    return drawVideo(planes, part, width, height);
}

VideoOutput::VideoOutput(std::function<void()> function)
    : hasNew(std::move(function))
{
}

void VideoOutput::bring(const std::shared_ptr<const VideoFrame>& newest)
{
    VideoTarget wanted;
    {
        const std::lock_guard lock(mutex);
        frame = newest;
        picture = nullptr;
        isDrawn = false;
        if (unseen < mostUnseen && ++unseen < mostUnseen)
            wanted = target;
        isDrawing = wanted.width > 0;
    }
    auto drawing = drawVideo(*newest, wanted); // meanwhile the target may change, which is why it is compared
    const std::lock_guard lock(mutex);
    drawn += drawing ? 1 : 0;
    if (drawing && frame == newest && target == wanted) {
        picture = std::move(drawing);
        isDrawn = true;
    }
    isDrawing = false;
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
    picture = nullptr;
    isDrawn = false;
}

std::shared_ptr<const Bitmap> VideoOutput::take()
{
    const std::lock_guard lock(mutex);
    return std::exchange(picture, nullptr);
}

std::shared_ptr<const Bitmap> VideoOutput::see(const VideoTarget& wanted)
{
    std::shared_ptr<const VideoFrame> newest;
    {
        const std::lock_guard lock(mutex);
        unseen = 0;
        if (std::exchange(target, wanted) == wanted && (isDrawn || isDrawing))
            return std::exchange(picture, nullptr);
        newest = frame;
        picture = nullptr;
        isDrawn = true;
    }
    auto drawing = newest ? drawVideo(*newest, wanted) : nullptr;
    const std::lock_guard lock(mutex);
    drawn += drawing ? 1 : 0;
    return drawing;
}

long VideoOutput::drawnCount() const
{
    const std::lock_guard lock(mutex);
    return drawn;
}

} // namespace platform
