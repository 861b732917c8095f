#pragma once

#include <string>

#include "Showroom/Media/Picture.h"

namespace showroom::media {

// Where an object stands: the middle of its foot, and the height of the square it is drawn in, in pixels.
struct Placement {
    double x = 0;
    double y = 0;
    double size = 0;
    double turn = 0; // degrees clockwise
    double hue = 0; // degrees by which its colours are turned
    bool floats = false; // casts no shadow on the floor
};

// Draws an object from an SVG file with a soft shadow. Throws std::runtime_error when the file cannot be read.
void drawObject(const Picture& picture, const std::string& svgFile, const Placement& placement);

// Draws a host's shoulders in a shirt, to be covered by the head. (x, y) is the bottom middle, `size` as of the whole bust.
void drawShoulders(const Picture& picture, const Placement& placement, const Color& skin, const Color& shirt);

} // namespace showroom::media
