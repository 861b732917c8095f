#pragma once

#include "Platform/QuartzCore/CAAnimation.h"

#include <cstddef>
#include <string>
#include <vector>

namespace platform {

// At which fraction of an animation each of its keys is reached, and how one key becomes the next.
class KeyTimes {
public:
    struct Place {
        std::size_t from = 0, to = 0; // keys
        double part = 0; // of the way, eased; 0 to 1 but for curves that overshoot
    };

    KeyTimes() = default;
    // From the first key to the second one (a basic animation).
    static KeyTimes fromStartToEnd();
    // The animation's key times and curves for that many keys (at least 1). Unusable key times become even steps, said once on
    // the console.
    static KeyTimes of(const CAKeyframeAnimation& animation, std::size_t keyCount);
    // Even speed, given the distances from key to key.
    static KeyTimes paced(const std::vector<double>& distances);

    Place at(double fraction) const;

private:
    std::vector<double> times; // as many as keys
    std::vector<CAMediaTimingFunction> curves; // of the ways between keys; those left out are linear
    bool discrete = false;
};

} // namespace platform
