#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cmath>

namespace platform {

// Counts taps that belong together, since they follow one another at one place: 1, 2, 3, and from 1 again.
class TapCount {
public:
    // `interval` (seconds) and `slop` (points) from one to the next, at most.
    TapCount(double interval, CGFloat slop)
        : interval(interval)
        , slop(slop)
    {
    }

    int add(CGPoint point, double time)
    {
        const bool goesOn = count > 0 && time - lastTime <= interval && std::hypot(point.x - last.x, point.y - last.y) <= slop;
        last = point;
        lastTime = time;
        return count = goesOn ? count % 3 + 1 : 1;
    }

private:
    double interval;
    CGFloat slop;
    CGPoint last;
    double lastTime = 0; // seconds
    int count = 0;
};

} // namespace platform
