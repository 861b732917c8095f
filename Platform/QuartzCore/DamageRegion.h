#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <vector>

namespace platform {

// Turns the rectangles that changed into a few that do not overlap: as they are while they are few, and rounded to a grid of
// small squares when there are many, such as a flock of icons.
std::vector<PixelRect> disjointDamage(const std::vector<PixelRect>& changed, const PixelRect& screen);

} // namespace platform
