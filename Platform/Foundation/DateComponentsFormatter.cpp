#include "Platform/Foundation/DateComponentsFormatter.h"

#include <cmath>
#include <cstdint>

namespace platform {

namespace {

std::string number(std::int64_t value, bool padded)
{
    const std::string digits = std::to_string(value);
    return padded && value < 10 ? '0' + digits : digits;
}

} // namespace

std::optional<std::string> DateComponentsFormatter::string(double seconds) const
{
    constexpr double longest = 1e15;
    if (!(seconds >= 0 && seconds <= longest))
        return std::nullopt;
    const auto whole = static_cast<std::int64_t>(seconds);
    const std::int64_t hours = allowsHours ? whole / 3600 : 0;
    const std::int64_t minutes = whole / 60 - hours * 60;
    const bool pads = zeroFormatting == ZeroFormatting::pad;
    const bool showsHours = hours > 0 || (allowsHours && pads);

    std::string text = showsHours ? number(hours, pads) + ':' : "";
    text += number(minutes, pads || showsHours) + ':';
    return text + number(whole % 60, true);
}

} // namespace platform
