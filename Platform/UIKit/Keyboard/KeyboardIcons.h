#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGGeometry.h"

namespace platform {

class CGContext;
struct KeyboardKey;

// Draws the sign of a key that shows no text, in a square of that side (points) around the point.
void drawKeyboardIcon(CGContext& context, const KeyboardKey& key, CGPoint middle, CGFloat side, const CGColor& color);

} // namespace platform
