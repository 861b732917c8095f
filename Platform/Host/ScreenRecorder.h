#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/Host/RecorderModule.h"

#include <memory>
#include <string>

namespace platform {

class HeadlessHost;

// Films what a host without a display shows, frame by frame of its own clock, as an MP4 file at half of the screen's pixels. A
// film so shows every movement at its right pace, however long the frames took to draw. Main thread.
class ScreenRecorder {
public:
    static constexpr int framesPerSecond = 30;

    // Null, after one console line, when the file or the media library is not to be had.
    static std::unique_ptr<ScreenRecorder> open(const std::string& path, const HeadlessHost& host);
    ~ScreenRecorder();
    ScreenRecorder(const ScreenRecorder&) = delete;
    ScreenRecorder& operator=(const ScreenRecorder&) = delete;

    void add(const Bitmap& frame);
    // False, after one console line, when the film is not whole. Nothing is added afterwards.
    bool finish();
    int frameCount() const { return frames; }

private:
    ScreenRecorder(std::unique_ptr<FilmEncoder> encoder, std::string path);

    std::unique_ptr<FilmEncoder> encoder; // null once finished
    std::string path;
    int frames = 0;
};

} // namespace platform
