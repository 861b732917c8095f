#pragma once

#include "Platform/Foundation/Date.h"
#include "Platform/Foundation/Locale.h"

#include <optional>
#include <string>

namespace platform {

// Writes dates by a literal pattern of the Unicode date letters, such as "MMM d, h:mm a". The spaces are the pattern's own, the
// one before AM and PM too. Main thread.
class DateFormatter {
public:
    void setDateFormat(std::string pattern) { dateFormat = std::move(pattern); }
    void setLocale(Locale value) { locale = std::move(value); } // default: the current one at each call
    void setTimeZone(TimeZone value) { timeZone = std::move(value); } // default: the current one at each call

    // A zone that nobody knows gives one console line and counts as UTC. An empty pattern or a date that is not finite gives "".
    std::string string(Date date) const;

private:
    std::string dateFormat;
    std::optional<Locale> locale;
    std::optional<TimeZone> timeZone;
};

} // namespace platform
