#pragma once

#include "Platform/Foundation/Locale.h"

#include <optional>
#include <string>

namespace platform {

// Writes amounts of money as a locale's readers expect them. Main thread.
class NumberFormatter {
public:
    void setUsesGroupingSeparator(bool uses) { grouping = uses; }
    void setLocale(Locale value) { locale = std::move(value); } // default: the current one at each call
    void setCurrencyCode(std::optional<std::string> code) { currencyCode = std::move(code); } // absent: the locale's own

    // Nothing for an amount that is not finite and for a code that is not three letters.
    std::optional<std::string> currencyString(double value) const;

private:
    bool grouping = true;
    std::optional<Locale> locale;
    std::optional<std::string> currencyCode;
};

} // namespace platform
