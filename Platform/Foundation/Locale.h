#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform {

// A language and region with their customs, by identifier: "en_US", "pt_BR", "ar", "zh_Hant_TW". Main thread.
struct Locale {
    std::string identifier; // '-' and '_' are both understood

    // The device's: the host's choice, else the environment's (LC_ALL, LANG), "en_US" where that says nothing.
    static Locale current();
    static void setCurrent(std::optional<Locale> locale); // nothing goes back to the environment's

    // The viewer's languages, the best first, as tags such as "de-AT"; by default the current locale's language. `changes` counts
    // the calls of the setters, for caches.
    static std::vector<std::string> preferredLanguages();
    static void setPreferredLanguages(std::vector<std::string> languages); // empty goes back to the default
    static unsigned changes();

    std::string languageTag() const; // "en-US", without any keywords or character set
    std::optional<std::string> currencyCode() const; // of its region: "USD"
    bool isRightToLeft() const; // of its language

    bool operator==(const Locale&) const = default;
};

// A time zone by its name: "Europe/Berlin". Main thread.
struct TimeZone {
    std::string identifier;

    // The device's: the host's choice, else the environment's, "UTC" where that says nothing.
    static TimeZone current();
    static void setCurrent(std::optional<TimeZone> zone); // nothing goes back to the environment's
    static TimeZone environment();

    bool operator==(const TimeZone&) const = default;
};

} // namespace platform
