#pragma once

#include "Platform/AVFoundation/VideoFrame.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// What a look at a medium shows.
struct MediaFacts {
    std::string problem; // why nothing could be read; empty when something could
    std::string unplayable; // why what was read cannot be played; empty when it can
    bool isProtected = false;
    double duration = 0; // seconds; infinity when it has no known end
    int width = 0; // pixels as shown; 0 without a picture
    int height = 0;
};

// Hears from one player's pipeline, on the media library's threads, never two at a time but for mediaDidShow.
class MediaListener {
public:
    virtual ~MediaListener() = default;
    // Once, when the first picture is decoded: duration and size are known.
    virtual void mediaDidBecomeReady(const MediaFacts& facts) = 0;
    // At most once; nothing follows.
    virtual void mediaDidFail(const std::string& problem) = 0;
    // The time of this frame has come.
    virtual void mediaDidShow(std::shared_ptr<const VideoFrame> frame) = 0;
    // Answers MediaPipeline::step: the frame was shown before, unless it was already. `next` is the time of the one after it, in
    // seconds; absent when that was the last.
    virtual void mediaDidStep(std::uint64_t id, std::optional<double> next) = 0;
    // Answers seek. False when a later one took its place, or it cannot be done.
    virtual void mediaDidSeek(std::uint64_t id, bool finished) = 0;
    // Plays from now on; at `clock` seconds of the real clock it was at `time`.
    virtual void mediaDidStart(double time, double clock) = 0;
    virtual void mediaDidStall() = 0; // waits for data; mediaDidStart follows
    virtual void mediaDidEnd() = 0;
};

// One medium being played. Its end closes everything, on the library's thread, after which the listener is let go. Calls return
// at once and take effect in their order.
class MediaPipeline {
public:
    virtual ~MediaPipeline() = default;
    virtual void play() = 0;
    virtual void pause() = 0;
    // To exactly that time, or to the nearest frame that decodes alone. Held between 0 and just under the duration.
    virtual void seek(std::uint64_t id, double seconds, bool isExact) = 0;
    // In steps only: shows the frame of that time, which must not lie before the last one asked for since the last seek.
    virtual void step(std::uint64_t id, double seconds) = 0;
    virtual void setVolume(double volume, bool isMuted) = 0; // 0 to 1
    // The loudest sample that reached the sound device since the last call, 0 to 1.
    virtual double takeAudioPeak() = 0;
};

// How a medium is played.
enum class MediaPace : unsigned char {
    realTime, // with sound, frames at their times on the real clock, late ones left out
    steps, // without sound, frame by frame as asked for
};

// The media library, as a loadable module.
class MediaModule {
public:
    static constexpr const char* moduleInterface = "media 1";
    virtual ~MediaModule() = default;
    // Calls back once, on the library's thread.
    virtual void examine(const std::string& address, std::function<void(const MediaFacts& facts)> done) = 0;
    virtual std::unique_ptr<MediaPipeline> open(
        const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener)
        = 0;
};

} // namespace platform
