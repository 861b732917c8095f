#include "Platform/Foundation/PlainMoneyFormat.h"

#include <charconv>
#include <cmath>

namespace platform {

namespace {

constexpr struct Currency {
    const char* code;
    const char* sign;
    std::size_t decimals;
} currencies[] = { { "USD", "$", 2 }, { "EUR", "€", 2 }, { "GBP", "£", 2 }, { "JPY", "¥", 0 }, { "CAD", "CA$", 2 },
    { "AUD", "A$", 2 }, { "INR", "₹", 2 }, { "KRW", "₩", 0 } };

// The shortest decimal text that reads back as the value, as people would write it: it is that text which is rounded.
std::string shortestDecimal(double value)
{
    char text[64];
    return { text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr };
}

void addOne(std::string& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
}

// All digits without the point, the last `decimals` of them behind it; a tie goes to the even digit.
std::string roundedDigits(const std::string& text, std::size_t decimals)
{
    const auto point = std::min(text.find('.'), text.size());
    std::string digits = text.substr(0, point);
    const std::string fraction = point < text.size() ? text.substr(point + 1) : "";
    digits += fraction.substr(0, decimals);
    digits.append(decimals - std::min(decimals, fraction.size()), '0');
    if (fraction.size() <= decimals)
        return digits;
    const std::string rest = fraction.substr(decimals);
    const bool isTie = rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    const bool isOdd = (digits.back() - '0') % 2;
    if (isTie ? isOdd : rest[0] >= '5')
        addOne(digits);
    return digits;
}

} // namespace

std::optional<std::string> plainCurrencyString(double value, const std::string& code, bool grouping)
{
    for (const auto& currency : currencies) {
        if (code != currency.code || !(std::abs(value) < 1e12))
            continue;
        std::string digits = roundedDigits(shortestDecimal(std::abs(value)), currency.decimals);
        const std::size_t whole = digits.size() - currency.decimals;
        if (currency.decimals > 0)
            digits.insert(whole, ".");
        for (std::size_t i = whole; grouping && i > 3; i -= 3)
            digits.insert(i - 3, ",");
        return (std::signbit(value) ? "-" : "") + (currency.sign + digits);
    }
    return std::nullopt;
}

} // namespace platform
