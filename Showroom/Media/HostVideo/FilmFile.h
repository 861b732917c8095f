#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Showroom/Media/Picture.h"

namespace showroom::media {

// What a film is made of.
struct FilmFormat {
    int width = 0; // pixels, even
    int height = 0;
    int framesPerSecond = 0;
    int bitsPerSecond = 0; // of the pictures
    int soundRate = 0; // samples a second, of pairs of left and right
};

// An MP4 file of H.264 pictures and Opus sound. Equal input gives equal bytes. Everything throws std::runtime_error when the file
// cannot be made.
class FilmFile {
public:
    FilmFile(const std::string& path, const FilmFormat& format, std::vector<std::int16_t> sound);
    ~FilmFile();

    void add(const Picture& frame); // waits while the encoder is behind
    void finish();

private:
    struct Impl; // the media library's objects
    std::unique_ptr<Impl> impl;
};

} // namespace showroom::media
