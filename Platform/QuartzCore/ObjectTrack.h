#pragma once

#include "Platform/QuartzCore/AnimationTrack.h"
#include "Platform/QuartzCore/KeyTimes.h"

#include <vector>

namespace platform {

// Values that are no numbers: a layer's picture, which fades from one to the next, and paths, which bend from one to the next
// when they are built alike and else jump.
class ObjectTrack final : public AnimationTrack {
public:
    // Null when a value is neither a picture nor a path, as the key path asks.
    static std::unique_ptr<AnimationTrack> make(const CABasicAnimation& animation, AnimationKeyPath keyPath);
    static std::unique_ptr<AnimationTrack> make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath);
    using AnimationTrack::AnimationTrack;

    void apply(double progress, LayerPresentation& presentation) const override;

private:
    bool addKey(const CAValue& value);
    void applyContents(const KeyTimes::Place& place, LayerPresentation& presentation) const;
    void applyPath(const KeyTimes::Place& place, std::shared_ptr<const CGPath>& shown) const;

    std::vector<CAValue> keys; // monostate: what the layer shows
    KeyTimes times;
};

// The path that far between two that have the same verbs; the later one when they have not.
std::shared_ptr<const CGPath> pathBetween(
    const std::shared_ptr<const CGPath>& from, const std::shared_ptr<const CGPath>& to, double part);

} // namespace platform
