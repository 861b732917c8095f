#include "Platform/Host/FrameDriver.h"

#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Platform/UIKit/UIApplication.h"

#include <limits>

namespace platform {

void FrameDriver::setScreen(int width, int height, double newScale)
{
    if (screen == PixelRect { 0, 0, width, height } && scale == newScale)
        return;
    screen = { 0, 0, width, height };
    scale = newScale;
    compositor.setSize(width, height);
    drawn = false;
}

FrameChange FrameDriver::drawFrame(double time)
{
    const auto layers = beginFrame(time);
    LayerCommitter::display(layers, scale);
    drawn = true;
    behind = false;
    return compositor.composite(LayerCommitter::commit(layers, time, scale, screen));
}

void FrameDriver::passFrame(double time)
{
    LayerCommitter::pass(beginFrame(time), time, scale, screen);
    behind = true;
}

std::vector<std::shared_ptr<CALayer>> FrameDriver::beginFrame(double time)
{
    LayerCommitter::finishAnimations(time);
    auto& application = UIApplication::shared();
    application.layoutWindows();
    return application.windowLayers();
}

bool FrameDriver::hasChanged() const { return (!drawn && !behind) || LayerCommitter::needsFrame(); }

bool FrameDriver::isMoving() const { return LayerCommitter::hasRunningAnimations(); }

double FrameDriver::nextFrameTime() const { return LayerCommitter::nextEventTime(); }

} // namespace platform
