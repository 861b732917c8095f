#include "Platform/QuartzCore/CAAnimation.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// One coordinate of a cubic from 0 to 1 with two inner controls, and its slope.
double cubic(double p1, double p2, double s) { return ((1 + 3 * p1 - 3 * p2) * s + 3 * p2 - 6 * p1) * s * s + 3 * p1 * s; }
double slope(double p1, double p2, double s) { return (3 + 9 * p1 - 9 * p2) * s * s + (6 * p2 - 12 * p1) * s + 3 * p1; }

constexpr double accuracy = 1e-10; // of the elapsed fraction; far below a pixel on any screen

// The curve's parameter at which its x is t. x never falls, so halving finds it where the slope leads nowhere.
double parameterAt(double x1, double x2, double t)
{
    double s = t;
    for (int step = 0; step < 8; ++step) {
        const double error = cubic(x1, x2, s) - t;
        if (std::abs(error) < accuracy)
            return s;
        const double rise = slope(x1, x2, s);
        if (rise < 1e-4)
            break;
        s = std::clamp(s - error / rise, 0.0, 1.0);
    }
    double low = 0, high = 1;
    while (high - low > accuracy) {
        s = (low + high) / 2;
        (cubic(x1, x2, s) < t ? low : high) = s;
    }
    return s;
}

template <typename T> std::shared_ptr<CAAnimation> copyOf(const T& source)
{
    auto result = make<T>();
    result->assign(source);
    return result;
}

} // namespace

double CAMediaTimingFunction::evaluate(double t) const
{
    t = std::clamp(t, 0.0, 1.0);
    if ((x1 == y1 && x2 == y2) || t == 0 || t == 1)
        return t;
    return cubic(y1, y2, parameterAt(std::clamp(x1, 0.0, 1.0), std::clamp(x2, 0.0, 1.0), t));
}

void CAAnimation::assign(const CAAnimation& other)
{
    beginTime = other.beginTime;
    duration = other.duration;
    speed = other.speed;
    timeOffset = other.timeOffset;
    repeatCount = other.repeatCount;
    autoreverses = other.autoreverses;
    fillMode = other.fillMode;
    timingFunction = other.timingFunction;
    removedOnCompletion = other.removedOnCompletion;
    onStop = other.onStop;
}

void CAPropertyAnimation::assign(const CAPropertyAnimation& other)
{
    CAAnimation::assign(other);
    keyPath = other.keyPath;
    additive = other.additive;
}

std::shared_ptr<CABasicAnimation> CABasicAnimation::withKeyPath(std::string keyPath)
{
    auto animation = make<CABasicAnimation>();
    animation->keyPath = std::move(keyPath);
    return animation;
}

std::shared_ptr<CAAnimation> CABasicAnimation::copy() const { return copyOf(*this); }

void CABasicAnimation::assign(const CABasicAnimation& other)
{
    CAPropertyAnimation::assign(other);
    fromValue = other.fromValue;
    toValue = other.toValue;
    byValue = other.byValue;
}

std::shared_ptr<CAKeyframeAnimation> CAKeyframeAnimation::withKeyPath(std::string keyPath)
{
    auto animation = make<CAKeyframeAnimation>();
    animation->keyPath = std::move(keyPath);
    return animation;
}

std::shared_ptr<CAAnimation> CAKeyframeAnimation::copy() const { return copyOf(*this); }

void CAKeyframeAnimation::assign(const CAKeyframeAnimation& other)
{
    CAPropertyAnimation::assign(other);
    values = other.values;
    path = other.path;
    keyTimes = other.keyTimes;
    timingFunctions = other.timingFunctions;
    calculationMode = other.calculationMode;
}

std::shared_ptr<CAAnimation> CAAnimationGroup::copy() const { return copyOf(*this); }

void CAAnimationGroup::assign(const CAAnimationGroup& other)
{
    CAAnimation::assign(other);
    animations.clear();
    for (const auto& animation : other.animations) {
        if (animation)
            animations.push_back(animation->copy());
    }
}

} // namespace platform
