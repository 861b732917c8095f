#pragma once

#include "Platform/QuartzCore/AnimationTiming.h"
#include "Platform/QuartzCore/AnimationTrack.h"
#include "Platform/QuartzCore/CAAnimation.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class CALayer;
struct LayerPresentation;
class TransactionRecord;

// An animation or group made ready to run, with its members.
struct AnimationNode {
    AnimationTiming timing;
    std::unique_ptr<AnimationTrack> track; // null for a group and for what has no effect
    std::vector<AnimationNode> members;

    static AnimationNode of(const CAAnimation& animation, double defaultDuration);
    // Writes what shows at the parent's time over the presentation.
    void apply(double time, bool includesEnd, LayerPresentation& presentation) const;
    bool animates(LayerProperty property) const;
};

// An animation on a layer.
struct RunningAnimation {
    enum class State : unsigned char { waiting, running, finished };
    // What it can do to a layer that is out of sight.
    enum class Reach : unsigned char {
        still, // nothing
        turning, // spin it about its anchor
        anywhere, // bring it into sight
    };

    CALayer* layer = nullptr; // null once it is off its layer
    std::string key;
    std::shared_ptr<CAAnimation> animation; // our copy
    AnimationNode node; // its begin is the clock's time once it runs
    std::shared_ptr<TransactionRecord> transaction; // null for none
    std::uint64_t order = 0; // of being added
    State state = State::waiting;
    Reach reach = Reach::still;

    void apply(double time, LayerPresentation& presentation) const;
    bool isUnderWay(double time) const; // changes something from this moment to the next
};

} // namespace platform
