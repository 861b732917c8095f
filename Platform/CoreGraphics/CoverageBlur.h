#pragma once

#include "Platform/CoreGraphics/Bitmap.h"

namespace platform::pixels {

// A gaussian blur of coverage in place; sigma in pixels. What should fade out beyond the edges needs room there: 3 sigma.
void blurCoverage(Bitmap& coverage, double sigma);

} // namespace platform::pixels
