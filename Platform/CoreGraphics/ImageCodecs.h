#pragma once

#include "Platform/CoreGraphics/CGImage.h"

// The picture formats, one .cpp each. Every reader gives null and the reason for what is broken, cut off or too large.
namespace platform::codecs {

constexpr double maximumPixels = 64e6;

struct Bytes {
    const std::uint8_t* data;
    std::size_t count;
};

bool looksLikePNG(Bytes bytes);
std::shared_ptr<Bitmap> readPNG(Bytes bytes, std::string& reason);
bool looksLikeJPEG(Bytes bytes);
std::shared_ptr<Bitmap> readJPEG(Bytes bytes, const std::optional<PixelSize>& enough, std::string& reason);
bool looksLikeSVG(Bytes bytes);
std::shared_ptr<const CGImage> readSVG(Bytes bytes, std::string& reason);

} // namespace platform::codecs
