#include "Platform/QuartzCore/AnimationTrack.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/MotionPathTrack.h"
#include "Platform/QuartzCore/NumberTrack.h"
#include "Platform/QuartzCore/ObjectTrack.h"

namespace platform {

namespace {

template <typename Animation> std::unique_ptr<AnimationTrack> trackOfValues(const Animation& animation, AnimationKeyPath keyPath)
{
    return keyPath.isPath() || keyPath.isContents() ? ObjectTrack::make(animation, keyPath)
                                                    : NumberTrack::make(animation, keyPath);
}

} // namespace

std::unique_ptr<AnimationTrack> AnimationTrack::make(const CAPropertyAnimation& animation)
{
    const auto keyPath = AnimationKeyPath::parse(animation.keyPath);
    if (!keyPath) {
        NSLog("animation of \"" + animation.keyPath + "\" shows nothing: no such key path");
        return nullptr;
    }
    std::unique_ptr<AnimationTrack> track;
    if (const auto* basic = dynamic_cast<const CABasicAnimation*>(&animation))
        track = trackOfValues(*basic, *keyPath);
    else if (const auto* keyframes = dynamic_cast<const CAKeyframeAnimation*>(&animation))
        track = keyframes->path ? MotionPathTrack::make(*keyframes, *keyPath) : trackOfValues(*keyframes, *keyPath);
    if (!track)
        NSLog("animation of \"" + animation.keyPath + "\" shows nothing: its values do not fit");
    return track;
}

} // namespace platform
