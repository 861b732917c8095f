#include "Platform/UIKit/ScrollMotion.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double friction = 2.002; // 1/s: the velocity falls to 0.998 of itself in every millisecond
constexpr double springRate = 11; // 1/s, critically damped: back in half a second
constexpr double rubber = 0.55; // how far the content follows a finger beyond its end, at first

// Where the content shows when it was pulled `way` points beyond its end, in a view of that length.
double given(double way, double length) { return length > 0 ? (1 - 1 / (way * rubber / length + 1)) * length : 0; }

double pulledWay(double shown, double length)
{
    const double part = length > 0 ? std::min(shown / length, 0.99) : 0;
    return (1 / (1 - part) - 1) * length / rubber;
}

} // namespace

ScrollMotion ScrollMotion::glide(double from, double velocity, double now)
{
    ScrollMotion motion;
    motion.start = now;
    motion.from = from;
    motion.velocity = velocity;
    return motion;
}

ScrollMotion ScrollMotion::spring(double from, double velocity, double end, double now)
{
    ScrollMotion motion = glide(from - end, velocity, now);
    motion.springs = true;
    motion.end = end;
    return motion;
}

bool ScrollMotion::step(double time, double low, double high, bool bounces, double& value)
{
    if (!springs) {
        const double fading = std::exp(-friction * std::max(0.0, time - start));
        value = from + velocity / friction * (1 - fading);
        const double speed = velocity * fading;
        if (value >= low && value <= high)
            return std::abs(speed) > restingVelocity;
        const double nearest = std::clamp(value, low, high);
        if (!bounces) {
            value = nearest;
            return false;
        }
        // It ran over the end within this frame: from the end on it swings out and back.
        const double over = std::clamp((value - nearest) / (speed == 0 ? 1 : speed), 0.0, 1.0 / 30);
        *this = spring(nearest, speed, nearest, time - over);
    }
    const double t = std::max(0.0, time - start);
    const double fading = std::exp(-springRate * t);
    const double slope = velocity + springRate * from;
    const double distance = (from + slope * t) * fading;
    const double speed = (velocity - springRate * slope * t) * fading;
    if (std::abs(distance) < 0.25 && std::abs(speed) < restingVelocity) {
        value = end;
        return false;
    }
    value = end + distance;
    return true;
}

void ScrollMotion::shift(double by)
{
    if (!springs)
        from += by;
}

double rubberBanded(double value, double low, double high, double length)
{
    if (value < low)
        return low - given(low - value, length);
    return value > high ? high + given(value - high, length) : value;
}

double rubberUnbanded(double value, double low, double high, double length)
{
    if (value < low)
        return low - pulledWay(low - value, length);
    return value > high ? high + pulledWay(value - high, length) : value;
}

} // namespace platform
