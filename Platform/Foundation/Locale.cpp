#include "Platform/Foundation/Locale.h"

#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleLoader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace platform {

namespace {

struct Chosen {
    std::optional<Locale> locale;
    std::optional<TimeZone> zone;
    std::vector<std::string> languages;
    unsigned changes = 0;
};

Chosen& chosen()
{
    static Chosen choices;
    return choices;
}

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

// "de_AT.UTF-8@euro" -> "de_AT"
std::string withoutSuffixes(const std::string& identifier) { return identifier.substr(0, identifier.find_first_of(".@")); }

std::string environmentLocale()
{
    for (const char* name : { "LC_ALL", "LANG" }) {
        const std::string identifier = withoutSuffixes(environment(name));
        if (identifier == "C" || identifier == "POSIX")
            break;
        if (!identifier.empty())
            return identifier;
    }
    return "en_US";
}

// A zone's name from a path into the zone database, such as the one that /etc/localtime links to.
std::string zoneOfPath(const std::string& path)
{
    constexpr std::string_view database = "zoneinfo/";
    const std::size_t start = path.rfind(database);
    return start == std::string::npos ? std::string() : path.substr(start + database.size());
}

std::string environmentTimeZone()
{
    std::string named = environment("TZ");
    if (named.starts_with(':'))
        named.erase(0, 1);
    if (named.starts_with('/'))
        named = zoneOfPath(named);
    if (named.empty()) {
        std::error_code error;
        named = zoneOfPath(std::filesystem::read_symlink("/etc/localtime", error).string());
    }
    return named.empty() ? "UTC" : named;
}

} // namespace

Locale Locale::current()
{
    static const Locale environments { environmentLocale() };
    return chosen().locale.value_or(environments);
}

void Locale::setCurrent(std::optional<Locale> locale)
{
    chosen().locale = std::move(locale);
    ++chosen().changes;
}

std::vector<std::string> Locale::preferredLanguages()
{
    return chosen().languages.empty() ? std::vector { current().languageTag() } : chosen().languages;
}

void Locale::setPreferredLanguages(std::vector<std::string> languages)
{
    chosen().languages = std::move(languages);
    ++chosen().changes;
}

unsigned Locale::changes() { return chosen().changes; }

std::string Locale::languageTag() const
{
    std::string tag = withoutSuffixes(identifier);
    std::replace(tag.begin(), tag.end(), '_', '-');
    return tag;
}

std::optional<std::string> Locale::currencyCode() const
{
    IcuModule* const icu = loadModule<IcuModule>("icu");
    return icu ? icu->currencyCode(languageTag()) : std::nullopt;
}

bool Locale::isRightToLeft() const
{
    constexpr std::array scripts = { "Arab", "Hebr", "Syrc", "Thaa", "Nkoo", "Adlm", "Rohg" };
    constexpr std::array languages = { "ar", "he", "iw", "fa", "ur", "ps", "sd", "ug", "yi", "dv", "ckb", "nqo", "syr" };
    const std::string tag = languageTag();
    const std::size_t end = tag.find('-');
    const std::string second = end == std::string::npos ? "" : tag.substr(end + 1, tag.find('-', end + 1) - end - 1);
    if (second.size() == 4) // a script, which decides
        return std::find(scripts.begin(), scripts.end(), second) != scripts.end();
    return std::find(languages.begin(), languages.end(), tag.substr(0, end)) != languages.end();
}

TimeZone TimeZone::current()
{
    static const TimeZone environments = environment();
    return chosen().zone.value_or(environments);
}

void TimeZone::setCurrent(std::optional<TimeZone> zone) { chosen().zone = std::move(zone); }

TimeZone TimeZone::environment() { return { environmentTimeZone() }; }

} // namespace platform
