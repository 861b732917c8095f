#pragma once

#include "Platform/AVFoundation/AVURLAsset.h"

namespace platform {

enum class AVPlayerItemStatus : unsigned char { unknown, readyToPlay, failed };

// A medium in a player, and how far it has come there. Main thread.
class AVPlayerItem final : public NSObject {
public:
    // Posted with the item as the sender when it has been played to its end.
    static constexpr const char* didPlayToEndTimeNotification = "AVPlayerItemDidPlayToEndTimeNotification";

    explicit AVPlayerItem(std::shared_ptr<AVURLAsset> asset);
    explicit AVPlayerItem(URL url);

    const std::shared_ptr<AVURLAsset>& asset() const { return asset_; }
    // Becomes ready, or fails, after the item is a player's; a medium that breaks off while it plays fails then.
    AVPlayerItemStatus status() const { return status_; }
    const std::string& error() const { return error_; } // of a failed one
    double duration() const { return duration_; } // seconds; 0 until ready, infinity when it has no known end
    CGSize presentationSize() const { return size; } // pixels as shown; empty until ready and without a picture
    std::function<void(AVPlayerItemStatus status)> onStatusChange;

private:
    friend class AVPlayer;
    void becomeReady(const MediaFacts& facts);
    void fail(const std::string& problem);
    void setStatus(AVPlayerItemStatus status);

    const std::shared_ptr<AVURLAsset> asset_;
    AVPlayerItemStatus status_ = AVPlayerItemStatus::unknown;
    std::string error_;
    double duration_ = 0;
    CGSize size;
};

} // namespace platform
