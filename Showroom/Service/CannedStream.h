#pragma once

#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Service/MVVideoStreamConfig.h"

#include <functional>
#include <memory>
#include <string>

namespace showroom {

// A host's live picture and sound: a film that begins anew at its end, drawn into the view that the kit gives. It ends with this
// object. Main thread.
class CannedStream final {
public:
    // `onPicture` when it has something to show, `onFailure` with a sentence when it never will; neither while the stream is
    // made.
    CannedStream(const platform::URL& film, const mv::MVVideoStreamConfig& config, std::function<void()> onPicture,
        std::function<void(const std::string&)> onFailure);
    ~CannedStream();
    CannedStream(const CannedStream&) = delete;
    CannedStream& operator=(const CannedStream&) = delete;

    // The host goes away and comes back. The film goes on where it was.
    void drop();
    void resume();

    const std::shared_ptr<platform::AVPlayer>& player() const { return player_; }

private:
    std::shared_ptr<platform::AVPlayer> player_;
    std::shared_ptr<platform::UIView> screen; // fills the kit's view; null when that shows nothing
    platform::NotificationToken endObserver;
};

} // namespace showroom
