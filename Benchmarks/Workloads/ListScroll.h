#pragma once

#include "Benchmarks/Measure.h"

#include <string>

namespace bench {

// W1: a list of cards goes by, 12 pixels a frame. `assets` is a folder with banner00..11.jpg, calendar.png and cards.json, or
// empty for pictures and texts of its own; `picture` names a PNG of the last frame, or is empty.
FrameFigures measureListScroll(int frames, const std::string& assets, const std::string& picture);

// W4: the program starts itself so many times as a process that shows the list's first screen. Milliseconds from each start to
// the first complete frame, and the processes' memory after it.
struct ListStarts {
    std::vector<double> milliseconds, memory; // MiB
};
ListStarts measureListStarts(int runs, const std::string& assets);

// The started process's part: shows the list and prints the milliseconds since that moment, and its memory.
int showFirstList(double startedAt, const std::string& assets);

} // namespace bench
