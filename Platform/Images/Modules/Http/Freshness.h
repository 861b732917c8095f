#pragma once

#include <libsoup/soup.h>

#include <optional>

namespace platform::http {

// For how many seconds an answer holds from now on, as its headers say; nothing when it must not be kept.
std::optional<double> freshness(SoupMessageHeaders* headers);

} // namespace platform::http
