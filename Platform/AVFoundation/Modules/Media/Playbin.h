#pragma once

#include "Platform/AVFoundation/Modules/Media/PlaybinElements.h"

#include <cstdint>

namespace platform {

// One player's pipeline: in what order it does what was asked for, and what its listener hears of it. Lives on the worker's
// thread; frames come from a thread of the library.
class Playbin final : public std::enable_shared_from_this<Playbin>, private PlaybinElements::Owner {
public:
    Playbin(const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener);

    void open();
    void close();
    void play();
    void pause();
    void seek(std::uint64_t id, double seconds, bool isExact);
    void step(std::uint64_t id, double seconds);
    void setVolume(double volume, bool isMuted) { elements.setVolume(volume, isMuted); }
    double takeAudioPeak() { return elements.takeAudioPeak(); } // any thread

private:
    struct Seek {
        std::uint64_t id;
        double seconds;
        bool isExact;
    };
    struct Step {
        std::uint64_t id;
        double seconds;
    };

    // PlaybinElements::Owner
    void didSettle() override;
    void didRun() override;
    void didBuffer(int percent) override;
    void didEnd() override;
    void didFail(const std::string& problem) override;
    void didShow(std::shared_ptr<const VideoFrame> frame) override;
    void didQueue() override;

    void setRunning();
    void becomeReady();
    void beginSeek(const Seek& wanted);
    void pump();

    const bool isStepped;
    const std::shared_ptr<MediaListener> listener;
    MediaFacts facts;
    bool isReady = false, hasFailed = false, isEnded = false;
    bool wantsToPlay = false, isBuffering = false;
    std::optional<Seek> seeking, nextSeek;
    // In steps.
    std::optional<Step> stepping;
    std::shared_ptr<const VideoFrame> upcoming; // the first frame that is not shown yet
    std::shared_ptr<const VideoFrame> reached; // the last frame taken for the step under way
    bool hasShown = false; // since the last seek; or is about to
    PlaybinElements elements; // first to go: its threads call the rest
};

} // namespace platform
