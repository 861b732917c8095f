#include "Platform/Foundation/Data.h"

#include <array>

namespace platform {

namespace {

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int noDigit = -1;

int base64Digit(char c)
{
    static const auto values = [] {
        std::array<signed char, 256> table;
        table.fill(noDigit);
        for (std::size_t i = 0; i < base64Digits.size(); ++i)
            table[static_cast<unsigned char>(base64Digits[i])] = static_cast<signed char>(i);
        return table;
    }();
    return values[static_cast<unsigned char>(c)];
}

} // namespace

Data dataFromText(std::string_view text) { return Data(text.begin(), text.end()); }

std::string_view textView(const Data& data) { return { reinterpret_cast<const char*>(data.data()), data.size() }; }

std::string base64(const Data& data)
{
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, data.size() - i);
        unsigned bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? data[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? base64Digits[bits >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

std::optional<Data> dataFromBase64(std::string_view text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
        ++padding;

    Data data;
    data.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const std::size_t digits = i + 4 == text.size() ? 4 - padding : 4;
        unsigned bits = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            const int digit = k < digits ? base64Digit(text[i + k]) : 0;
            if (digit == noDigit)
                return std::nullopt;
            bits = bits << 6 | static_cast<unsigned>(digit);
        }
        const unsigned unused = digits == 4 ? 0 : digits == 3 ? 0xff : 0xffff;
        if (bits & unused)
            return std::nullopt; // bits that no encoder writes
        for (std::size_t k = 0; k + 1 < digits; ++k)
            data.push_back(static_cast<std::uint8_t>(bits >> (16 - 8 * k)));
    }
    return data;
}

} // namespace platform
