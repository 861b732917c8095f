#pragma once

#include "Platform/QuartzCore/CAAnimation.h"

#include <optional>

namespace platform {

// When an animation runs, and how far it is at a moment. Times are the parent's: the clock's seconds, or a group's own time.
struct AnimationTiming {
    double begin = 0;
    double duration = 0; // of one leg, in its own time; more than 0
    double speed = 1;
    double timeOffset = 0;
    double repeatCount = 1;
    bool autoreverses = false;
    CAMediaTimingFillMode fillMode = CAMediaTimingFillMode::removed;
    CAMediaTimingFunction curve;

    // Odd values (not a number, a negative duration or count) count as absent. An absent duration takes the other one.
    static AnimationTiming of(const CAAnimation& animation, double defaultDuration);

    double activeDuration() const; // all legs, in its own time; may be infinite
    double end() const; // in the parent's time; infinite when it repeats for ever or stands still
    // The eased progress from 0 to 1, or nothing at a time at which the animation does not show. At its very end it shows still
    // when the moment of the end belongs to it, as it does inside a group.
    std::optional<double> progressAt(double time, bool includesEnd) const;

private:
    double positionInLeg(double elapsed) const;
};

} // namespace platform
