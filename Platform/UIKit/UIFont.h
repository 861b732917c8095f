#pragma once

#include "Platform/CoreGraphics/Text/CTFont.h"

#include <memory>
#include <optional>
#include <string>

namespace platform {

using UIFontWeight = FontWeight;

// A font at a size: an immutable value, cheap to copy. Absence is a std::optional's business. Main thread.
class UIFont {
public:
    // The registered font of that PostScript name (case matters), nothing when there is none. Sizes are points; one that is not
    // above 0 takes the system's text size.
    static std::optional<UIFont> named(const std::string& name, CGFloat size);
    // The system family, which every machine gets.
    static UIFont systemFont(CGFloat size, UIFontWeight weight = UIFontWeight::regular);
    static constexpr CGFloat labelFontSize = 17; // points; what labels and text fields start with
    static constexpr CGFloat buttonFontSize = 18;

    const std::string& fontName() const { return font->postScriptName(); }
    CGFloat pointSize() const { return font->pointSize(); }
    CGFloat ascender() const { return font->ascender(); } // points above the baseline
    CGFloat descender() const { return -font->descender(); } // points, negative below the baseline as on the platform
    CGFloat lineHeight() const { return font->lineHeight(); }
    CGFloat capHeight() const { return font->capHeight(); }
    CGFloat xHeight() const { return font->xHeight(); }
    UIFont withSize(CGFloat size) const;
    const std::shared_ptr<const CTFont>& ctFont() const { return font; } // never null

    // "SourceSansPro-SemiBold 16", as view trees show a font.
    std::string text() const;
    bool operator==(const UIFont&) const = default; // equal name and size share one CTFont

private:
    UIFont(std::shared_ptr<const CTFont> font, std::optional<UIFontWeight> systemWeight);
    std::shared_ptr<const CTFont> font;
    std::optional<UIFontWeight> systemWeight; // of a system font, whose sizes are asked for by weight
};

} // namespace platform
