#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

// A film in the making. Main thread.
class FilmEncoder {
public:
    virtual ~FilmEncoder() = default;
    // What is shown from that frame of the film on, later than the one before (rows of 0xXXRRGGBB words, `stride` bytes apart).
    // While the encoder is behind it waits if it may, else the picture is left out. False when it was left out or the film has
    // failed.
    virtual bool add(std::int64_t number, const std::uint32_t* pixels, int stride, int width, int height, bool mayWait) = 0;
    // Ends the film; true when the file is whole. `problem` says otherwise why it is not.
    virtual bool finish(std::string& problem) = 0;
};

// The media library, as a loadable module.
class RecorderModule {
public:
    static constexpr const char* moduleInterface = "recorder 1";
    virtual ~RecorderModule() = default;
    // An MP4 file of H.264 pictures of that size (even numbers of pixels) at so many frames a second; what is shown longer than
    // one is repeated, and what has another shape is fitted between black bars. Null when it cannot be made; `problem` then says
    // why.
    virtual std::unique_ptr<FilmEncoder> open(
        const std::string& path, int width, int height, int framesPerSecond, std::string& problem)
        = 0;
};

} // namespace platform
