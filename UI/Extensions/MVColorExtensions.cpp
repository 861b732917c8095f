#include "UI/Extensions/MVColorExtensions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>

namespace mv {

namespace {

UIColor colorFromRGB(std::uint32_t rgb)
{
    return { double(rgb >> 16 & 255) / 255, double(rgb >> 8 & 255) / 255, double(rgb & 255) / 255 };
}

// From A to Z.
constexpr std::array<std::uint32_t, 26> letterColors = { 0x5a8770, 0xb2b7bb, 0x6fa9ab, 0xf5af29, 0x0088b9, 0xf18636, 0xd93a37,
    0xa6b12e, 0x5c9bbc, 0xf5888d, 0x9a89b5, 0x407887, 0x9a89b5, 0x5a8770, 0xd33f33, 0xa2b01f, 0xf0b126, 0x0087bf, 0xf18636,
    0x0087bf, 0xb2b7bb, 0x72acae, 0x9c8ab4, 0x5a8770, 0xeeb424, 0x407887 };

UIColor adjusted(const UIColor& color, double factor)
{
    auto hsb = color.hsb();
    hsb.brightness *= factor;
    return UIColor::fromHSB(hsb);
}

} // namespace

UIColor colorWithHex(std::string_view hex)
{
    if (hex.starts_with('#'))
        hex.remove_prefix(1);
    std::string digits(hex);
    if (digits.size() == 3)
        digits = { hex[0], hex[0], hex[1], hex[1], hex[2], hex[2] };
    std::uint32_t rgb = 0;
    const auto end = digits.data() + digits.size();
    const bool isWhole = digits.size() == 6 && std::from_chars(digits.data(), end, rgb, 16).ptr == end;
    return isWhole ? colorFromRGB(rgb) : UIColor::white(1, 0);
}

UIColor colorFromCharacter(std::optional<std::string_view> character)
{
    // A letter from A to Z is one byte in UTF-8, and no other character begins with such a byte.
    if (!character || character->empty() || character->front() < 'A' || character->front() > 'Z')
        return UIColor::systemBlue();
    return colorFromRGB(letterColors[std::size_t(character->front() - 'A')]);
}

UIColor lighter(const UIColor& color, double factor) { return adjusted(color, factor); }

UIColor darker(const UIColor& color, double factor) { return adjusted(color, factor); }

} // namespace mv
