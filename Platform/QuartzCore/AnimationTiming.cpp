#include "Platform/QuartzCore/AnimationTiming.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr double roundingShare = 1e-9; // of a cycle: what sums of steps lose

double orElse(double value, bool usable, double otherwise) { return usable ? value : otherwise; }

} // namespace

AnimationTiming AnimationTiming::of(const CAAnimation& animation, double defaultDuration)
{
    AnimationTiming timing;
    timing.begin = orElse(animation.beginTime, std::isfinite(animation.beginTime), 0);
    timing.duration = orElse(animation.duration, std::isfinite(animation.duration) && animation.duration > 0, defaultDuration);
    timing.speed = orElse(animation.speed, std::isfinite(animation.speed), 1);
    timing.timeOffset = orElse(animation.timeOffset, std::isfinite(animation.timeOffset), 0);
    timing.repeatCount = orElse(animation.repeatCount, animation.repeatCount > 0, 1);
    timing.autoreverses = animation.autoreverses;
    timing.fillMode = animation.fillMode;
    if (animation.timingFunction)
        timing.curve = *animation.timingFunction;
    return timing;
}

double AnimationTiming::activeDuration() const { return duration * (autoreverses ? 2 : 1) * repeatCount; }

double AnimationTiming::end() const
{
    return speed == 0 ? std::numeric_limits<double>::infinity() : begin + activeDuration() / std::abs(speed);
}

std::optional<double> AnimationTiming::progressAt(double time, bool includesEnd) const
{
    const double active = activeDuration();
    double elapsed = (time - begin) * std::abs(speed);
    if (time < begin) {
        if (fillMode != CAMediaTimingFillMode::backwards && fillMode != CAMediaTimingFillMode::both)
            return std::nullopt;
        elapsed = 0;
    } else if (elapsed > active || (elapsed == active && !includesEnd)) {
        if (fillMode != CAMediaTimingFillMode::forwards && fillMode != CAMediaTimingFillMode::both)
            return std::nullopt;
        elapsed = active;
    }
    return curve.evaluate(positionInLeg(elapsed) / duration);
}

// Where in one leg the animation is. The time offset shifts the phase and wraps; a negative speed plays from the end.
double AnimationTiming::positionInLeg(double elapsed) const
{
    const double active = activeDuration();
    const double cycle = duration * (autoreverses ? 2 : 1);
    const double phase = std::max((speed < 0 && std::isfinite(active) ? active - elapsed : elapsed) + timeOffset, 0.0);
    double inCycle = std::fmod(phase, cycle);
    // A whole number of cycles at the end is the end of the last one, not the start of another.
    const bool onBoundary = inCycle < cycle * roundingShare || inCycle > cycle * (1 - roundingShare);
    if (onBoundary && phase > 0 && phase > active - cycle * roundingShare)
        inCycle = cycle;
    return autoreverses && inCycle > duration ? cycle - inCycle : std::min(inCycle, duration);
}

} // namespace platform
