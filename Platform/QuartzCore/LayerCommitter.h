#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class CALayer;
struct RenderList;

// The frame's steps over a forest of layers, called in this order by whoever drives frames. Main thread.
class LayerCommitter {
public:
    // Told once when something changed since the last commit (a setter, an added animation): the moment to ask for a frame.
    static void setOnNeedsFrame(std::function<void()> callback);
    static bool needsFrame();
    // Removes finished animations and runs their completions and those of their transactions. Seconds on the current clock.
    static void finishAnimations(double time);
    // Calls layoutSublayers of every marked layer in these trees, parents first, until none is marked (bounded to 100 rounds).
    static void layout(const std::vector<std::shared_ptr<CALayer>>& roots);
    // Fills the backing stores of marked layers that can be seen.
    static void display(const std::vector<std::shared_ptr<CALayer>>& roots, double scale);
    // Starts waiting animations at this time and flattens what is visible, with every running animation applied.
    static std::shared_ptr<const RenderList> commit(
        const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen);
    // True when a visible layer of the last commit has an animation that is still running: another frame is due.
    static bool hasRunningAnimations();
    // The earliest time at which a waiting or running animation ends or begins; infinity for none.
    static double nextEventTime();
};

} // namespace platform
