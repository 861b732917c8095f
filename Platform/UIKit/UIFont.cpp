#include "Platform/UIKit/UIFont.h"

#include <cstdio>

namespace platform {

namespace {
constexpr CGFloat systemTextSize = 14; // points

CGFloat usableSize(CGFloat size) { return size > 0 ? size : systemTextSize; } // not a number fails the comparison too
}

UIFont::UIFont(std::shared_ptr<const CTFont> wrapped, std::optional<UIFontWeight> weight)
    : font(std::move(wrapped))
    , systemWeight(weight)
{
}

std::optional<UIFont> UIFont::named(const std::string& name, CGFloat size)
{
    auto font = CTFont::named(name, usableSize(size));
    if (!font)
        return std::nullopt;
    return UIFont(std::move(font), std::nullopt);
}

UIFont UIFont::systemFont(CGFloat size, UIFontWeight weight) { return { CTFont::system(usableSize(size), weight), weight }; }

UIFont UIFont::withSize(CGFloat size) const
{
    if (systemWeight)
        return systemFont(size, *systemWeight);
    auto resized = CTFont::named(font->postScriptName(), usableSize(size));
    return resized ? UIFont(std::move(resized), std::nullopt) : *this;
}

std::string UIFont::text() const
{
    char size[32];
    std::snprintf(size, sizeof size, " %g", pointSize());
    return fontName() + size;
}

} // namespace platform
