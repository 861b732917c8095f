#pragma once

#include <compare>

namespace platform {

// A moment, with no zone or calendar attached.
struct Date {
    double secondsSince1970 = 0; // UTC, fractions kept

    static Date now(); // by the current clock

    auto operator<=>(const Date&) const = default;
    Date operator+(double seconds) const { return { secondsSince1970 + seconds }; }
    Date operator-(double seconds) const { return { secondsSince1970 - seconds }; }
    double operator-(Date earlier) const { return secondsSince1970 - earlier.secondsSince1970; } // seconds
};

} // namespace platform
