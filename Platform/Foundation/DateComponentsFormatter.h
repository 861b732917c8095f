#pragma once

#include <optional>
#include <string>

namespace platform {

enum class ZeroFormatting {
    dropLeading, // 65 -> "1:05", 5 -> "0:05" (minutes and seconds are always shown)
    pad, // 65 -> "01:05"; with hours "00:01:05"
};

// Writes durations in the positional style of a media player: minutes and seconds, or hours, minutes and seconds. Digits are the
// plain ones in every locale.
class DateComponentsFormatter {
public:
    // Without hours the minutes count on: 3725 -> "62:05".
    void setAllowsHours(bool allowed) { allowsHours = allowed; }
    void setZeroFormatting(ZeroFormatting value) { zeroFormatting = value; }

    // Fractions of a second are cut off. Nothing for a duration that is negative, not finite or beyond 10^15 seconds.
    std::optional<std::string> string(double seconds) const;

private:
    bool allowsHours = true;
    ZeroFormatting zeroFormatting = ZeroFormatting::dropLeading;
};

} // namespace platform
