#pragma once

#include "Platform/AVFoundation/MediaModule.h"

#include <memory>
#include <optional>
#include <string>

namespace platform {

// What Playbin uses of the media library: a pipeline for one medium with its two ends, set up and listened to. Made, called and
// closed on the worker's thread.
class PlaybinElements {
public:
    // What the pipeline tells, on the worker's thread unless it says otherwise.
    class Owner {
    public:
        virtual void didSettle() = 0; // opened, or sought, as asked for
        virtual void didRun() = 0; // plays from now on
        virtual void didBuffer(int percent) = 0;
        virtual void didEnd() = 0;
        virtual void didFail(const std::string& problem) = 0;
        // On a thread of the library. In real time a frame whose time has come, in steps that there is one to pull.
        virtual void didShow(std::shared_ptr<const VideoFrame> frame) = 0;
        virtual void didQueue() = 0;

    protected:
        ~Owner() = default;
    };

    PlaybinElements(const std::string& address, MediaPace pace, Owner& owner);
    ~PlaybinElements(); // closes

    // Until the first picture is decoded, which didSettle tells. False when the library lacks a part.
    bool open();
    // Returns when the library's threads have let go; nothing is told any more. All that follows does nothing.
    void close();
    void setRunning(bool isRunning); // or paused
    bool seek(double seconds, bool isExact); // false when it cannot be done; otherwise didSettle follows
    std::shared_ptr<const VideoFrame> pull(); // the oldest frame that waits; null for none
    void setVolume(double volume, bool isMuted); // 0 to 1

    MediaFacts facts() const; // once it has settled
    std::optional<double> position() const; // seconds
    // Where the last picture or sound since the last seek ended, seconds of the medium.
    double dataEnd() const;
    // The loudest sample since the last call, 0 to 1. Any thread.
    double takeAudioPeak();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
