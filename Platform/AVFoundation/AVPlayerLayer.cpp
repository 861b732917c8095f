#include "Platform/AVFoundation/AVPlayerLayer.h"

#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/VideoOutput.h"

#include <cmath>
#include <utility>

namespace platform {

AVPlayerLayer::AVPlayerLayer()
    : output(std::make_shared<VideoOutput>([weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->setNeedsDisplay(); // which waits until the layer can be seen
    }))
{
    setContentsGravity(CALayerContentsGravity::center);
    setDrawsContent(true); // what it draws are its contents
}

AVPlayerLayer::~AVPlayerLayer()
{
    if (player_)
        player_->removeOutput(output);
    output->close();
}

void AVPlayerLayer::setPlayer(std::shared_ptr<AVPlayer> player)
{
    if (player_ == player)
        return;
    if (player_)
        player_->removeOutput(output);
    player_ = std::move(player);
    if (player_)
        player_->addOutput(output);
}

void AVPlayerLayer::setVideoGravity(AVLayerVideoGravity gravity)
{
    if (std::exchange(videoGravity_, gravity) != gravity)
        setNeedsDisplay();
}

void AVPlayerLayer::display(CGFloat scale)
{
    const CGSize size = bounds().size();
    const auto pixels = [scale](CGFloat points) { return int(std::lround(std::min(points * scale, 16384.0))); };
    const VideoTarget wanted { pixels(size.width), pixels(size.height), videoGravity_ };
    setContentsScale(scale);
    auto newest = output->newest();
    if (!newest || (newest == shown && wanted == target))
        return;
    shown = std::move(newest);
    target = wanted;
    if (auto picture = VideoPixels::fitted(shown, target, pixelsRead))
        setContents(CGImage::fromLazyPixels(std::move(picture)));
}

} // namespace platform
