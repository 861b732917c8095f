#pragma once

#include <array>
#include <string>

#include "Showroom/Media/Picture.h"

namespace showroom::media {

// Wall from top left to bottom right, what decorates it, and the floor from its edge to the front.
struct Palette {
    Color wall;
    Color wallEnd;
    Color accent;
    Color floor;
    Color floorEnd;
};

// Paints the whole picture: arches, hills, mountains, podiums, rays, rings, window, tiles or clouds. `floor` is the height, in
// pixels from the top, at which the floor meets the wall. Throws std::runtime_error for another style.
void drawBackdrop(const Picture& picture, const std::string& style, const Palette& palette, double floor);

// Paints a calm studio corner for a single product.
void drawStudio(const Picture& picture, const Color& wall, const Color& tint);

} // namespace showroom::media
