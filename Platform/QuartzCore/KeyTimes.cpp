#include "Platform/QuartzCore/KeyTimes.h"

#include "Platform/Foundation/NSLog.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

std::vector<double> evenTimes(std::size_t keyCount, bool discrete)
{
    const double steps = double(discrete ? keyCount : std::max<std::size_t>(keyCount, 2) - 1);
    std::vector<double> times(keyCount);
    for (std::size_t i = 0; i < keyCount; ++i)
        times[i] = double(i) / steps;
    return times;
}

bool rises(const std::vector<double>& times)
{
    return std::ranges::all_of(times, [](double time) { return std::isfinite(time); }) && std::ranges::is_sorted(times);
}

} // namespace

KeyTimes KeyTimes::fromStartToEnd()
{
    KeyTimes result;
    result.times = { 0, 1 };
    return result;
}

KeyTimes KeyTimes::of(const CAKeyframeAnimation& animation, std::size_t keyCount)
{
    KeyTimes result;
    result.discrete = animation.calculationMode == CAAnimationCalculationMode::discrete;
    result.curves = animation.timingFunctions;
    const auto& given = animation.keyTimes;
    const bool countFits = given.size() == keyCount || (result.discrete && given.size() == keyCount + 1);
    if (countFits && rises(given)) {
        result.times.assign(given.begin(), given.begin() + std::ptrdiff_t(keyCount));
        return result;
    }
    if (!given.empty()) {
        NSLog("animation of \"" + animation.keyPath + "\" takes even steps: " + std::to_string(given.size()) + " key times for "
            + std::to_string(keyCount) + " keys" + (countFits ? ", not rising" : ""));
    }
    result.times = evenTimes(keyCount, result.discrete);
    return result;
}

KeyTimes KeyTimes::paced(const std::vector<double>& distances)
{
    KeyTimes result;
    result.times = { 0 };
    for (const double distance : distances)
        result.times.push_back(result.times.back() + distance);
    const double whole = result.times.back();
    if (whole <= 0)
        result.times = evenTimes(distances.size() + 1, false);
    else
        std::ranges::for_each(result.times, [whole](double& time) { time /= whole; });
    return result;
}

KeyTimes::Place KeyTimes::at(double fraction) const
{
    const std::size_t last = times.size() - 1;
    const auto after = std::ranges::upper_bound(times, fraction);
    if (after == times.begin())
        return {};
    const std::size_t from = std::size_t(after - times.begin()) - 1;
    if (from == last || discrete)
        return { from, from, 0 };
    const double part = (fraction - times[from]) / (times[from + 1] - times[from]);
    return { from, from + 1, from < curves.size() ? curves[from].evaluate(part) : part };
}

} // namespace platform
