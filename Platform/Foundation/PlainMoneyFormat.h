#pragma once

#include <optional>
#include <string>

namespace platform {

// Writes an amount of a currency whose sign every American knows, without ICU, which would cost 25 ms to open for the prices on
// the first screen. The same text as ICU's for American English. Nothing for other currencies and for amounts of a million
// millions and more.
std::optional<std::string> plainCurrencyString(double value, const std::string& code, bool grouping);

} // namespace platform
