#include "Platform/Foundation/PlainDateFormat.h"

#include "Platform/Foundation/Locale.h"

#include <array>
#include <cmath>
#include <ctime>
#include <string_view>

namespace platform {

namespace {

constexpr std::array<std::string_view, 12> months = { "January", "February", "March", "April", "May", "June", "July", "August",
    "September", "October", "November", "December" };
constexpr std::array<std::string_view, 7> weekdays
    = { "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday" };

// Dates from 1970 to 2100 are written here; the calendar's turns before that are ICU's business.
constexpr double earliest = 0;
constexpr double latest = 4102444800;

std::optional<std::tm> calendarFields(Date date, const std::string& zone)
{
    if (!(date.secondsSince1970 >= earliest && date.secondsSince1970 < latest))
        return std::nullopt;
    const auto seconds = static_cast<std::time_t>(date.secondsSince1970);
    std::tm fields {};
    if (zone == "UTC" || zone == "GMT" || zone == "Etc/UTC")
        return ::gmtime_r(&seconds, &fields) ? std::optional(fields) : std::nullopt;
    static const TimeZone environments = TimeZone::environment();
    if (zone != environments.identifier)
        return std::nullopt;
    ::tzset();
    // The C library takes a zone that it does not know for UTC, with a name that is no zone's.
    if (!::localtime_r(&seconds, &fields) || (fields.tm_gmtoff == 0 && zone.starts_with(fields.tm_zone)))
        return std::nullopt;
    return fields;
}

std::string padded(int number, std::size_t width)
{
    const std::string digits = std::to_string(number);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

// One field of `count` equal letters; nothing for what is not known here.
std::optional<std::string> field(char letter, std::size_t count, const std::tm& time)
{
    const int twelve = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
    switch (letter) {
    case 'y':
        return count == 2 ? padded((time.tm_year + 1900) % 100, 2) : padded(time.tm_year + 1900, count);
    case 'd':
        return count <= 2 ? std::optional(padded(time.tm_mday, count)) : std::nullopt;
    case 'H':
        return count <= 2 ? std::optional(padded(time.tm_hour, count)) : std::nullopt;
    case 'h':
        return count <= 2 ? std::optional(padded(twelve, count)) : std::nullopt;
    case 'm':
        return count <= 2 ? std::optional(padded(time.tm_min, count)) : std::nullopt;
    case 's':
        return count <= 2 ? std::optional(padded(time.tm_sec, count)) : std::nullopt;
    case 'a':
        return count <= 3 ? std::optional<std::string>(time.tm_hour < 12 ? "AM" : "PM") : std::nullopt;
    case 'M': {
        const auto month = static_cast<std::size_t>(time.tm_mon);
        if (count <= 2)
            return padded(time.tm_mon + 1, count);
        return count <= 4 ? std::optional<std::string>(months[month].substr(0, count == 3 ? 3 : std::string_view::npos))
                          : std::nullopt;
    }
    case 'E': {
        const auto day = static_cast<std::size_t>(time.tm_wday);
        return count <= 4 ? std::optional<std::string>(weekdays[day].substr(0, count <= 3 ? 3 : std::string_view::npos))
                          : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

} // namespace

std::optional<std::string> plainDateString(Date date, const std::string& pattern, const std::string& zone)
{
    if (pattern.find('\'') != std::string::npos)
        return std::nullopt; // quoted words
    const auto time = calendarFields(date, zone);
    if (!time)
        return std::nullopt;
    std::string text;
    for (std::size_t i = 0; i < pattern.size();) {
        if (!isLetter(pattern[i])) {
            text += pattern[i++];
            continue;
        }
        const std::size_t end = std::min(pattern.find_first_not_of(pattern[i], i), pattern.size());
        const auto written = field(pattern[i], end - i, *time);
        if (!written)
            return std::nullopt;
        text += *written;
        i = end;
    }
    return text;
}

} // namespace platform
