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
    // Told once when something changed since the last commit (a setter, an added animation, a callback that is due): the moment
    // to ask for a frame. When it comes while a frame is being made, this frame's commit covers it.
    static void setOnNeedsFrame(std::function<void()> callback);
    static bool needsFrame();
    // Removes finished animations and runs their onStop, in the order in which they ended, each followed by the completion of its
    // transaction if that waited for it alone. What was removed since the last step is told first. Then the display links are
    // called. Seconds on the current clock.
    static void finishAnimations(double time);
    // Calls layoutSublayers of every marked layer in these trees, parents first, until none is marked (bounded to 100 rounds,
    // after which one console line says so).
    static void layout(const std::vector<std::shared_ptr<CALayer>>& roots);
    // Fills the backing stores of marked layers that can be seen.
    static void display(const std::vector<std::shared_ptr<CALayer>>& roots, double scale);
    // Starts waiting animations of layers in these trees at this time and flattens what is visible, with every running animation
    // applied. When nothing changed and nothing runs, it is the very list of the commit before. Animations of layers that were
    // taken out of their tree since the last commit, and not put back, end unfinished unless they are not removedOnCompletion.
    static std::shared_ptr<const RenderList> commit(
        const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen);
    // A commit for whoever does not look at this moment: animations start and go on, but nothing is displayed and there is no
    // list. Marks stay for the next display.
    static void pass(const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen);
    // True when a visible layer of the last commit has an animation that is still running, or a display link runs: another frame
    // is due.
    static bool hasRunningAnimations();
    // The earliest time at which a running animation, visible or not, ends, or a delayed one begins; infinity for none.
    static double nextEventTime();
    // How many layers the last list was made from: what a commit costs.
    static std::size_t visitedLayerCount();

private:
    static std::shared_ptr<const RenderList> take(
        const std::vector<std::shared_ptr<CALayer>>& roots, double time, double scale, PixelRect screen, bool isPainted);
    static void displaySubtree(CALayer& layer, const CGAffineTransform& outside, const CGRect& clip, double scale);
};

} // namespace platform
