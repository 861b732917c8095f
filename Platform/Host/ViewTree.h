#pragma once

#include "Platform/Foundation/JSON.h"

namespace platform {

class SimulatedDevice;

// What is on the screen as a tree of views in JSON, for tests and assistive tools: model values (not those of a running
// animation), frames in screen points, colours resolved for the appearance. A key that is left out has its default.
JSONValue viewTree(const SimulatedDevice& device);

} // namespace platform
