#pragma once

#include "Platform/QuartzCore/Compositor.h"

namespace platform {

class CALayer;

// Takes the application's windows through a frame: animations' ends, layout, drawing, commit, composition. A host owns one, gives
// it the screen's size and the time, and shows what has changed. Main thread.
class FrameDriver {
public:
    // Pixels of the screen, and pixels a point.
    void setScreen(int width, int height, double scale);
    // The frame of that time (seconds, never falling). Callbacks of ended animations run inside.
    FrameChange drawFrame(double time);
    // The same but for the pixels: what moves has moved and callbacks have run, and the next drawFrame draws it all.
    void passFrame(double time);
    // True when something has changed since the last frame.
    bool hasChanged() const;
    // True when a frame was passed since the last one that was drawn.
    bool isBehind() const { return behind; }
    // True when something visible moves by itself, so that every later time has a frame of its own.
    bool isMoving() const;
    bool needsFrame() const { return hasChanged() || isMoving(); }
    // The earliest time at which a frame is due although nothing changes until then (an animation that waits for its beginning);
    // infinity for none.
    double nextFrameTime() const;
    // The last frame; null before the first one.
    std::shared_ptr<const Bitmap> frame() const { return drawn ? compositor.frame() : nullptr; }

private:
    static std::vector<std::shared_ptr<CALayer>> beginFrame(double time);

    Compositor compositor;
    PixelRect screen;
    double scale = 1;
    bool drawn = false;
    bool behind = false;
};

} // namespace platform
