#pragma once

#include "Platform/AVFoundation/VideoOutput.h"
#include "Platform/QuartzCore/CALayer.h"

namespace platform {

class AVPlayer;

// A layer that shows what a player plays. A frame is converted and scaled once, to exactly the layer's pixels, and only while the
// layer can be seen; the screen's frames copy it. When the player goes, the last frame stays. Main thread.
class AVPlayerLayer final : public CALayer {
public:
    AVPlayerLayer();
    ~AVPlayerLayer() override;

    const std::shared_ptr<AVPlayer>& player() const { return player_; }
    void setPlayer(std::shared_ptr<AVPlayer> player); // null for none
    AVLayerVideoGravity videoGravity() const { return videoGravity_; }
    void setVideoGravity(AVLayerVideoGravity gravity); // resizeAspect at first
    // Frames converted so far: what the layer costs.
    long convertedFrameCount() const { return output->drawnCount(); }

protected:
    // CALayer
    void display(CGFloat scale) override;

private:
    void hasNewFrame();
    void show(std::shared_ptr<const Bitmap> picture);

    std::shared_ptr<VideoOutput> output;
    std::shared_ptr<AVPlayer> player_;
    AVLayerVideoGravity videoGravity_ = AVLayerVideoGravity::resizeAspect;
};

} // namespace platform
