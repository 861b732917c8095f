#include "Platform/Foundation/DateFormatter.h"

#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/PlainDateFormat.h"

#include <cmath>
#include <set>

namespace platform {

namespace {

bool isAmericanEnglish(const std::string& tag) { return tag == "en-US" || tag == "en-US-POSIX"; }

// The zone, or "UTC" after one console line for each name that nobody knows.
std::string knownZone(const std::string& zone, const IcuModule& icu)
{
    if (icu.isKnownTimeZone(zone))
        return zone;
    static std::set<std::string> unknown;
    if (unknown.insert(zone).second)
        NSLog("time zone \"" + zone + "\" is not known: dates are shown in UTC");
    return "UTC";
}

} // namespace

std::string DateFormatter::string(Date date) const
{
    if (dateFormat.empty() || !std::isfinite(date.secondsSince1970))
        return "";
    const std::string tag = locale.value_or(Locale::current()).languageTag();
    const std::string zone = timeZone.value_or(TimeZone::current()).identifier;
    if (isAmericanEnglish(tag)) {
        if (auto text = plainDateString(date, dateFormat, zone))
            return *text;
    }
    if (IcuModule* const icu = loadModule<IcuModule>("icu")) {
        if (auto text = icu->formatDate(date.secondsSince1970, dateFormat, tag, knownZone(zone, *icu)))
            return *text;
        NSLog("date not written: pattern \"" + dateFormat + "\" is malformed");
        return "";
    }
    return plainDateString(date, dateFormat, "UTC").value_or("");
}

} // namespace platform
