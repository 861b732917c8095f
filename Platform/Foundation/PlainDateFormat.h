#pragma once

#include "Platform/Foundation/Date.h"

#include <optional>
#include <string>

namespace platform {

// Writes a date by a literal pattern in American English without ICU, which would cost 25 ms to open for the dates on the first
// screen. The zone is UTC or the environment's own (for which the C library has the rules). Nothing for another zone, or for a
// pattern with a letter beyond y, M, d, E, H, h, m, s and a.
std::optional<std::string> plainDateString(Date date, const std::string& pattern, const std::string& zone);

} // namespace platform
