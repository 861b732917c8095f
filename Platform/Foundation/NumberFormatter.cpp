#include "Platform/Foundation/NumberFormatter.h"

#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/PlainMoneyFormat.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>

namespace platform {

namespace {

// Capital letters, or nothing when it is not three letters.
std::optional<std::string> normalisedCode(std::string code)
{
    const auto toCapital = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; };
    std::transform(code.begin(), code.end(), code.begin(), toCapital);
    const bool isCode = code.size() == 3 && std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    return isCode ? std::optional(std::move(code)) : std::nullopt;
}

// "USD 1,234.50": what every reader understands, for when there is no ICU.
std::string plainAmount(double value, const std::string& code, bool grouping)
{
    struct Commas : std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::ostringstream text;
    text.imbue(grouping ? std::locale(std::locale::classic(), new Commas) : std::locale::classic());
    text << code << (code.empty() ? "" : " ") << std::fixed << std::setprecision(2) << value;
    return text.str();
}

} // namespace

std::optional<std::string> NumberFormatter::currencyString(double value) const
{
    if (!std::isfinite(value))
        return std::nullopt;
    std::optional<std::string> code;
    if (currencyCode && !(code = normalisedCode(*currencyCode)))
        return std::nullopt;

    std::string tag = locale.value_or(Locale::current()).languageTag();
    if (tag == "en-US-POSIX")
        tag = "en-US"; // the fixed locale for dates has no customs for money
    if (tag == "en-US") {
        if (auto plain = plainCurrencyString(value, code.value_or("USD"), grouping))
            return plain;
    }
    IcuModule* const icu = loadModule<IcuModule>("icu");
    if (!icu)
        return plainAmount(value, code.value_or(""), grouping);
    if (!code)
        code = icu->currencyCode(tag);
    return code ? icu->formatCurrency(value, tag, *code, grouping) : std::nullopt;
}

} // namespace platform
