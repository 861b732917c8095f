#pragma once

#include <vector>

namespace bench {

double wallMilliseconds(); // on a clock that never falls, the same for all processes
double cpuMilliseconds(); // user and system time of this process so far
double peakMemoryMiB(); // the proportional set size now (shared pages count in part)
double median(std::vector<double> values); // 0 for none
double percentile(std::vector<double> values, double share); // share from 0 to 1

// What a run of frames cost. Times are milliseconds.
struct FrameFigures {
    int frames = 0;
    double cpuPerFrame = 0;
    double wallMedian = 0, wallP99 = 0, wallMax = 0;
    double memory = 0; // MiB, the higher of before and after
};

// Draws frames with `drawFrame(number)`; the first `warmUp` full frames do not count.
template <typename DrawFrame> FrameFigures measureFrames(int frames, int warmUp, const DrawFrame& drawFrame)
{
    for (int frame = 0; frame < warmUp; ++frame)
        drawFrame(frame);
    FrameFigures figures { .frames = frames, .memory = peakMemoryMiB() };
    std::vector<double> walls;
    const double cpu = cpuMilliseconds();
    for (int frame = warmUp; frame < warmUp + frames; ++frame) {
        const double start = wallMilliseconds();
        drawFrame(frame);
        walls.push_back(wallMilliseconds() - start);
    }
    figures.cpuPerFrame = (cpuMilliseconds() - cpu) / frames;
    figures.wallMedian = median(walls);
    figures.wallP99 = percentile(walls, 0.99);
    figures.wallMax = percentile(walls, 1);
    const double memory = peakMemoryMiB();
    if (memory > figures.memory)
        figures.memory = memory;
    return figures;
}

} // namespace bench
