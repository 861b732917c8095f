#pragma once

#include "Platform/UIKit/Keyboard/KeyboardKey.h"
#include "Platform/UIKit/Keyboard/KeyboardMetrics.h"

namespace platform {

// The keys of a plane at their places. `mirrored`: the strip of editing keys begins at the right, as in an interface from right
// to left; letters and the keys around them stay where fingers know them. `scale` (pixels a point): caps lie on whole pixels.
KeyboardKeys keyboardKeys(const KeyboardMetrics& metrics, const KeyboardPlane& plane, bool mirrored, CGFloat scale);

} // namespace platform
