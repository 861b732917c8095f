#pragma once

#include "Benchmarks/Measure.h"

#include <string>

namespace bench {

// W3: a hundred icons fly over a still picture that fills a phone. `assets` is a folder with backdrop.jpg, icon0..3.png and
// reactions.json, or empty for pictures and curves of its own; `picture` names a PNG of the last frame, or is empty.
FrameFigures measureReactions(int frames, const std::string& assets, const std::string& picture);

} // namespace bench
