#pragma once

#include "Platform/QuartzCore/CAAnimation.h"

#include <functional>
#include <memory>

namespace platform {

class TransactionRecord;

// Groups the changes of one turn. Its completion runs once, after every animation added inside it (and inside transactions
// within) has ended or been removed; with none, at the next frame's clock step. What is said outside of begin and commit counts
// up to the frame's commit. Main thread.
class CATransaction {
public:
    static void begin();
    static void commit(); // of the innermost begin; too many are ignored with one console line
    // For animations added from here on; a block set earlier keeps those added up to here.
    static void setCompletionBlock(std::function<void()> completion);
    static void setAnimationDuration(double seconds); // for animations added inside without a duration of their own
    static double animationDuration(); // 0.25 by default
    static void setAnimationTimingFunction(std::shared_ptr<const CAMediaTimingFunction> function); // where they have none
    static const std::shared_ptr<const CAMediaTimingFunction>& animationTimingFunction(); // null: linear
    static void setDisableActions(bool disabled);
    static bool disableActions();

private:
    friend class AnimationTimeline;
    friend class LayerCommitter;
    static const std::shared_ptr<TransactionRecord>& currentRecord(); // what an added animation reports its end to; may be null
    static void endImplicit();
};

} // namespace platform
