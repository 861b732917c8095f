#pragma once

#include "Platform/QuartzCore/AnimationKeyPath.h"
#include "Platform/QuartzCore/CAAnimation.h"

#include <memory>

namespace platform {

struct LayerPresentation;

// A property animation made ready to run: the key path parsed, the values as numbers, a path measured.
class AnimationTrack {
public:
    explicit AnimationTrack(AnimationKeyPath path)
        : target(path)
    {
    }
    virtual ~AnimationTrack() = default;
    AnimationTrack(const AnimationTrack&) = delete;
    AnimationTrack& operator=(const AnimationTrack&) = delete;

    // Null, after one console line, for an animation that cannot have an effect.
    static std::unique_ptr<AnimationTrack> make(const CAPropertyAnimation& animation);

    // Writes the value at that progress (0 to 1, eased) over what the presentation shows so far.
    virtual void apply(double progress, LayerPresentation& presentation) const = 0;
    AnimationKeyPath keyPath() const { return target; }

protected:
    const AnimationKeyPath target;
};

} // namespace platform
