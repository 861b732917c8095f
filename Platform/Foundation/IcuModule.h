#pragma once

#include <optional>
#include <string>

namespace platform {

// What Foundation asks of ICU, which is a loadable module. Formatters are cached inside. Main thread.
class IcuModule {
public:
    static constexpr const char* moduleInterface = "icu 2";
    virtual ~IcuModule() = default;

    virtual bool isKnownTimeZone(const std::string& zone) const = 0;
    // Nothing when the pattern is malformed. An unknown zone would silently be UTC: ask first.
    virtual std::optional<std::string> formatDate(
        double secondsSince1970, const std::string& pattern, const std::string& locale, const std::string& zone)
        = 0;
    // Nothing when ICU cannot write it. The code is three capital letters.
    virtual std::optional<std::string> formatCurrency(
        double value, const std::string& locale, const std::string& currencyCode, bool grouping)
        = 0;
    virtual std::optional<std::string> currencyCode(const std::string& locale) const = 0;
    // A host's name (UTF-8) in the letters of the domain name system, as "xn--mnchen-3ya.de"; nothing for what is no such name.
    virtual std::optional<std::string> asciiHost(const std::string& host) const = 0;
};

} // namespace platform
