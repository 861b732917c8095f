#include "Platform/UIKit/BlinkingCaret.h"

#include "Platform/Foundation/NSTimer.h"

namespace platform {

namespace {
constexpr double halfPeriod = 0.5; // seconds
}

BlinkingCaret::BlinkingCaret()
{
    layer_->setCornerRadius(width / 2);
    layer_->setHidden(true);
}

void BlinkingCaret::restart()
{
    stop();
    layer_->setHidden(false);
    timer = NSTimer::scheduledTimer(halfPeriod, Repeats::yes, [weakLayer = std::weak_ptr(layer_)](NSTimer& fired) {
        if (const auto layer = weakLayer.lock())
            layer->setHidden(!layer->isHidden());
        else
            fired.invalidate();
    });
}

void BlinkingCaret::stop()
{
    if (timer)
        timer->invalidate();
    timer = nullptr;
    layer_->setHidden(true);
}

} // namespace platform
