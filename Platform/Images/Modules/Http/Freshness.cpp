#include "Platform/Images/Modules/Http/Freshness.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace platform::http {

namespace {

constexpr double longestFreshness = 365 * 86400.0; // seconds
constexpr double longestGuess = 86400; // seconds, where the server says no more than when the picture was made

// Seconds since 1970 of a header that holds a date; nothing when it is not there or none.
std::optional<double> dateHeader(SoupMessageHeaders* headers, const char* name)
{
    const char* text = soup_message_headers_get_one(headers, name);
    auto* date = text ? soup_date_time_new_from_http_string(text) : nullptr;
    if (!date)
        return std::nullopt;
    const auto seconds = double(g_date_time_to_unix(date));
    g_date_time_unref(date);
    return seconds;
}

} // namespace

std::optional<double> freshness(SoupMessageHeaders* headers)
{
    const char* control = soup_message_headers_get_list(headers, "Cache-Control");
    const std::unique_ptr<GHashTable, void (*)(GHashTable*)> rules(
        soup_header_parse_param_list(control ? control : ""), soup_header_free_param_list);
    const auto says = [&](const char* rule) { return g_hash_table_contains(rules.get(), rule) == TRUE; };
    const char* vary = soup_message_headers_get_list(headers, "Vary");
    if (says("no-store") || (vary && std::string_view(vary).find('*') != std::string_view::npos))
        return std::nullopt;
    if (says("no-cache"))
        return 0;
    const double now = double(g_get_real_time()) / G_USEC_PER_SEC;
    const double date = dateHeader(headers, "Date").value_or(now);
    double lifetime = 0;
    if (const auto* age = static_cast<const char*>(g_hash_table_lookup(rules.get(), "max-age")))
        lifetime = double(g_ascii_strtoull(age, nullptr, 10));
    else if (soup_message_headers_get_one(headers, "Expires"))
        lifetime = dateHeader(headers, "Expires").value_or(0) - date;
    else if (const auto made = dateHeader(headers, "Last-Modified"))
        lifetime = std::min((date - *made) / 10, longestGuess);
    const char* age = soup_message_headers_get_one(headers, "Age");
    const double passed = age ? double(g_ascii_strtoull(age, nullptr, 10)) : 0;
    return std::clamp(lifetime - passed, 0.0, longestFreshness);
}

} // namespace platform::http
