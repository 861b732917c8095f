#include "Platform/AVFoundation/AVPlayerLayer.h"

#include "Platform/AVFoundation/AVPlayer.h"

#include <cmath>
#include <utility>

namespace platform {

AVPlayerLayer::AVPlayerLayer()
    : output(std::make_shared<VideoOutput>([weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->hasNewFrame();
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
    setContentsScale(scale);
    show(output->see({ pixels(size.width), pixels(size.height), videoGravity_ }));
}

void AVPlayerLayer::hasNewFrame()
{
    show(output->take());
    // The next frame in which the layer can be seen asks for what is missing, and so tells that somebody looks.
    setNeedsDisplay();
}

void AVPlayerLayer::show(std::shared_ptr<const Bitmap> picture)
{
    if (picture)
        setContents(CGImage::fromBitmap(std::move(picture)));
}

} // namespace platform
