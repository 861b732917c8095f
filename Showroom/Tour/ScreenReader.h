#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <optional>
#include <string_view>

namespace platform {
class SimulatedDevice;
}

namespace showroom {

// Where the viewer finds something to touch: the uppermost view (or drawn part of one, as a key of the keyboard) of that name, or
// that shows that text, whose middle is on the screen inside its safe area with nothing in front of it. Nothing when there is
// none. In screen points.
std::optional<platform::CGRect> findOnScreen(const platform::SimulatedDevice& device, std::string_view nameOrText);

} // namespace showroom
