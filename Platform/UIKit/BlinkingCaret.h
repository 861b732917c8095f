#pragma once

#include "Platform/QuartzCore/CALayer.h"

#include <memory>

namespace platform {

class NSTimer;

// The upright line that shows where typed text goes. It is lit and dark for half a second each; a change of that is all that is
// drawn, and while it does not blink there is no timer. Main thread.
class BlinkingCaret {
public:
    static constexpr CGFloat width = 2; // points

    BlinkingCaret();
    ~BlinkingCaret() { stop(); }
    BlinkingCaret(const BlinkingCaret&) = delete;
    BlinkingCaret& operator=(const BlinkingCaret&) = delete;

    const std::shared_ptr<CALayer>& layer() const { return layer_; }
    bool isBlinking() const { return bool(timer); }
    void restart(); // lit at first
    void stop(); // and hide

private:
    const std::shared_ptr<CALayer> layer_ = make<CALayer>();
    std::shared_ptr<NSTimer> timer;
};

} // namespace platform
