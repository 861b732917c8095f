#pragma once

#include "Platform/QuartzCore/AnimationTrack.h"
#include "Platform/QuartzCore/KeyTimes.h"

#include <array>
#include <vector>

namespace platform {

// A point that moves along a path: from key to key by each curve's own parameter, or paced, evenly along its length.
class MotionPathTrack final : public AnimationTrack {
public:
    // Null when the path has no points or the key path is no point.
    static std::unique_ptr<AnimationTrack> make(const CAKeyframeAnimation& animation, AnimationKeyPath keyPath);
    using AnimationTrack::AnimationTrack;

    void apply(double progress, LayerPresentation& presentation) const override;

private:
    static constexpr std::size_t chordCount = 32; // a segment; the error of the length stays under a thousandth

    struct Segment {
        CGPoint start, control1, control2, end;
        bool straight = false;
        std::array<double, chordCount + 1> lengths {}; // from its start to each chord's end; filled for paced ones
        CGPoint at(double t) const;
        double measure();
        double parameterAt(double lengthPart) const;
    };

    void addSegments(const CGPath& path);

    CGPoint start;
    std::vector<Segment> segments;
    KeyTimes times;
    bool paced = false;
    bool additive = false;
};

} // namespace platform
