#pragma once

#include <vector>

namespace bench {

// The yardstick: the median processor time to copy one phone frame (1179x2556 pixels of 4 bytes) over another that is warm in the
// caches.
double frameCopyMilliseconds();

// What it costs to paint one whole frame of that size.
struct CompositionFigure {
    const char* name; // what the frame is made of
    double milliseconds; // median of processor time
    double copies; // in frame copies of the same run
};
std::vector<CompositionFigure> measureComposition();

} // namespace bench
