#pragma once

#include <memory>

namespace platform {
class AVPlayer;
class AVPlayerLayer;
class UIView;
}

namespace bench {

// The shop's video, 720 x 1280 at 30 frames a second, played from its file until the object goes.
class PlayingVideo {
public:
    static constexpr double secondsAFrame = 1.0 / 30;

    // Fills the view behind what comes into it later; null: nobody looks.
    explicit PlayingVideo(platform::UIView* view);
    ~PlayingVideo();

private:
    std::shared_ptr<platform::AVPlayer> player;
    std::shared_ptr<platform::AVPlayerLayer> layer;
};

} // namespace bench
