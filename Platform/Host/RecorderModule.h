#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

// A film in the making. Main thread.
class FilmEncoder {
public:
    virtual ~FilmEncoder() = default;
    // The next frame (rows of 0xXXRRGGBB words, `stride` bytes apart). Waits while the encoder is behind. False when the film has
    // failed.
    virtual bool add(const std::uint32_t* pixels, int stride, int width, int height) = 0;
    // Ends the film; true when the file is whole. `problem` says otherwise why it is not.
    virtual bool finish(std::string& problem) = 0;
};

// The media library, as a loadable module.
class RecorderModule {
public:
    static constexpr const char* moduleInterface = "recorder 1";
    virtual ~RecorderModule() = default;
    // An MP4 file of H.264 pictures of that size (even numbers of pixels) at so many frames a second; a frame of another shape is
    // fitted between black bars. Null when it cannot be made; `problem` then says why.
    virtual std::unique_ptr<FilmEncoder> open(
        const std::string& path, int width, int height, int framesPerSecond, std::string& problem)
        = 0;
};

} // namespace platform
