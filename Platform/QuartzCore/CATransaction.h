#pragma once

#include "Platform/QuartzCore/CAAnimation.h"

#include <functional>
#include <memory>

namespace platform {

// Groups the changes of one turn. Its completion runs once, after every animation added inside it has ended or been removed; with
// none, at the next frame's clock step. Main thread.
class CATransaction {
public:
    static void begin();
    static void commit(); // of the innermost begin; too many are ignored with one console line
    static void setCompletionBlock(std::function<void()> completion);
    static void setAnimationDuration(double seconds); // for animations added inside without a duration of their own
    static double animationDuration(); // 0.25 by default
    static void setAnimationTimingFunction(std::shared_ptr<const CAMediaTimingFunction> function);
    static void setDisableActions(bool disabled);
    static bool disableActions();
};

} // namespace platform
