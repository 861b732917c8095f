#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/Text/TextLayout.h"

namespace platform {

// Where a layout goes: upright, at one scale in both directions.
struct TextPlacement {
    CGPoint origin; // pixels, of the layout's left top corner
    double scale; // pixels a point
    double opacity; // 0 to 1
};

// The pixels that drawing would touch, shadow included.
PixelRect textBounds(const TextLayout& text, const TextPlacement& placement);
// Blends the glyphs into a colour bitmap, inside the clip. Baselines lie on whole pixels, glyphs on quarters of one.
void drawText(Bitmap& target, const PixelRect& clip, const TextLayout& text, const TextPlacement& placement);

} // namespace platform
