#pragma once

#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/RunningAnimation.h"

#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace platform {

struct CALayer::Animations {
    std::vector<std::shared_ptr<RunningAnimation>> list; // in the order they were added

    bool animates(LayerProperty property) const;
    LayerPresentation presentation(const CALayer& layer, double time) const;
};

// Every animation of the process, from being added to its end. Whom an end concerns is told by finish alone, so that no callback
// comes in the middle of somebody's work. Main thread.
class AnimationTimeline {
public:
    static AnimationTimeline& shared(); // never destroyed, since layers of static objects end late

    void add(CALayer& layer, const CAAnimation& animation, const std::string& key);
    void remove(CALayer& layer, const std::string& key);
    void removeAll(CALayer& layer);
    void noteDetached() { someDetached = true; } // a layer was taken out of a tree

    // The frame's steps.
    void finish(double time);
    void start(const std::vector<std::shared_ptr<CALayer>>& roots, double time);

    double now() const { return now_; } // of the last step, in seconds
    // When the next running animation begins or ends; infinity for none.
    double nextEventTime() const;
    // By the next finish.
    void callLater(std::function<void()> callback);
    bool hasCallbacks() const { return !callbacks.empty(); }

private:
    void takeOff(RunningAnimation& animation);
    void announceEnd(RunningAnimation& animation, bool finished);
    bool isDetached(const RunningAnimation& animation) const;
    void forgetTakenOff();

    std::vector<std::shared_ptr<RunningAnimation>> all; // those taken off included until the next step
    std::vector<std::function<void()>> callbacks; // for the next finish
    double now_ = 0;
    std::uint64_t lastOrder = 0;
    bool someDetached = false;
};

} // namespace platform
