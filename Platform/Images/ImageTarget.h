#pragma once

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/Data.h"

#include <string>
#include <tuple>

namespace platform {

// How a picture is brought to a size.
enum class ImageFit : unsigned char {
    fill, // covers it; what is over is cut off evenly
    fit, // lies whole inside it
    stretch, // takes it, whatever its proportions
    natural, // keeps its own size, whatever is asked for
};

// The pixels that a view needs of a picture.
struct ImageTarget {
    int width = 0; // pixels, at least 1 (but for natural)
    int height = 0;
    ImageFit fit = ImageFit::fill;

    bool operator==(const ImageTarget&) const = default;
    bool operator<(const ImageTarget& other) const // any order, for keys
    {
        return std::tie(width, height, fit) < std::tie(other.width, other.height, other.fit);
    }
};

// Unpacks a file's bytes to what the target asks for, ready to be copied to the screen. Null after one console line that names
// the picture. Any thread; takes milliseconds.
std::shared_ptr<const CGImage> decodeImage(const Data& bytes, const std::string& name, const ImageTarget& target);

} // namespace platform
