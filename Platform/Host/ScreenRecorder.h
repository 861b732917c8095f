#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/Host/RecorderModule.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class HeadlessHost;

// Films what a host without a display shows as an MP4 file at half of the screen's pixels. With the host's manual time the film
// shows every movement at its right pace, however long the frames took to draw; with real time it shows what came when, and the
// host never waits for it. Main thread.
class ScreenRecorder {
public:
    static constexpr int framesPerSecond = 30;

    // Null, after one console line, when the file or the media library is not to be had.
    static std::unique_ptr<ScreenRecorder> open(const std::string& path, const HeadlessHost& host);
    ~ScreenRecorder();
    ScreenRecorder(const ScreenRecorder&) = delete;
    ScreenRecorder& operator=(const ScreenRecorder&) = delete;

    // What the screen shows from that time on, in seconds from the film's beginning; a gray disc marks where a finger touches it,
    // in points. False when it was left out: the film's frame of that time is taken, or, in real time, the encoder is behind.
    bool add(const Bitmap& frame, double time, std::optional<CGPoint> touch = std::nullopt);
    // False, after one console line, when the film is not whole. Nothing is added afterwards.
    bool finish();
    std::int64_t frameCount() const { return nextFrame; } // the film's, up to what was added last
    int leftOutCount() const { return leftOut; } // because the encoder was behind

private:
    ScreenRecorder(std::unique_ptr<FilmEncoder> encoder, std::string path, const HeadlessHost& host);

    std::unique_ptr<FilmEncoder> encoder; // null once finished
    std::string path;
    const double pixelsPerPoint; // of the film
    const bool mayWait;
    std::int64_t nextFrame = 0;
    int leftOut = 0;
};

} // namespace platform
