#pragma once

#include "Platform/AVFoundation/VideoPixels.h"
#include "Platform/QuartzCore/CALayer.h"

namespace platform {

class AVPlayer;
class VideoOutput;

// A layer that shows what a player plays. A frame is converted and scaled, to exactly the layer's pixels, where the screen is
// painted: once, and again only in parts where something above it changes. When the player goes, the last frame stays. Main
// thread.
class AVPlayerLayer final : public CALayer {
public:
    AVPlayerLayer();
    ~AVPlayerLayer() override;

    const std::shared_ptr<AVPlayer>& player() const { return player_; }
    void setPlayer(std::shared_ptr<AVPlayer> player); // null for none
    AVLayerVideoGravity videoGravity() const { return videoGravity_; }
    void setVideoGravity(AVLayerVideoGravity gravity); // resizeAspect at first
    // Pixels converted so far: what the layer costs.
    long convertedPixelCount() const { return *pixelsRead; }

protected:
    // CALayer
    void display(CGFloat scale) override;

private:
    std::shared_ptr<VideoOutput> output;
    VideoPixels::Counter pixelsRead = std::make_shared<std::atomic<long>>(0);
    std::shared_ptr<const VideoFrame> shown; // with that target
    VideoTarget target;
    std::shared_ptr<AVPlayer> player_;
    AVLayerVideoGravity videoGravity_ = AVLayerVideoGravity::resizeAspect;
};

} // namespace platform
