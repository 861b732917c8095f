#pragma once

#include "Platform/CoreGraphics/Bitmap.h"

#include <memory>

namespace platform::pixels {

// Half the size (rounded up) by averages of 2 by 2; argb or xrgb.
std::shared_ptr<Bitmap> halved(const Bitmap& source);
// Exactly that size: halved while that leaves enough, then by area where it shrinks and bilinear where it grows.
std::shared_ptr<Bitmap> resampled(const Bitmap& source, int width, int height);

} // namespace platform::pixels
