#pragma once

#include "Benchmarks/Measure.h"

#include <string>

namespace bench {

// W5: a screen of header, chat and product strip over a still picture turns from portrait to landscape and back; each turn takes
// one frame. `assets` is a folder with the pictures and texts, or empty; `picture` names a PNG of the last frame, or is empty.
FrameFigures measureRotation(int turns, const std::string& assets, const std::string& picture);

} // namespace bench
