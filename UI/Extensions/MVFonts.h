#pragma once

#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIFont.h"
#include "UI/Utils/MVEntry.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace platform {
class Bundle;
}

namespace mv {

// The fonts that the kit carries, in the order in which they are registered.
enum class MVFontsName {
    sourceSansProBold,
    sourceSansProRegular,
    sourceSansProSemiBold,
    robotoBold,
    robotoMedium,
    robotoRegular,
};
inline constexpr std::array allMVFontsNames = { MVFontsName::sourceSansProBold, MVFontsName::sourceSansProRegular,
    MVFontsName::sourceSansProSemiBold, MVFontsName::robotoBold, MVFontsName::robotoMedium, MVFontsName::robotoRegular };
// The font's PostScript name, which is its file's name without extension too.
const char* rawValue(MVFontsName name);
std::optional<MVFontsName> fontsNameFromRawValue(std::string_view text);

// Makes fonts of the kit's typeface. Its one instance registers the kit's font files; a font that is not there is replaced by the
// system's of the same size and weight. Sizes are points.
class MVFonts final : public NSObject {
public:
    static MVFonts& instance(); // made once, at the first use of any kit font

    static UIFont regularFont(CGFloat size);
    static UIFont semiBoldFont(CGFloat size);
    static UIFont boldFont(CGFloat size);

private:
    MVFonts();
    void loadFont(const Bundle& bundle, const std::string& name) const;
    UIFont getRegularFont(CGFloat size) const;
    UIFont getSemiBoldFont(CGFloat size) const;
    UIFont getBoldFont(CGFloat size) const;
};

// Ready-made fonts, replaceable by the host.
class MVFont {
public:
    static inline MVEntry<UIFont> normalSizeRegularFont { [] { return MVFonts::regularFont(18); } };
    static inline MVEntry<UIFont> mediumSizeRegularFont { [] { return MVFonts::regularFont(16); } };
    static inline MVEntry<UIFont> largeSizeSemiboldFont { [] { return MVFonts::semiBoldFont(20); } };
    static inline MVEntry<UIFont> normalSizeSemiBoldFont { [] { return MVFonts::semiBoldFont(18); } };
    static inline MVEntry<UIFont> mediumSizeSemiBoldFont { [] { return MVFonts::semiBoldFont(16); } };
    static inline MVEntry<UIFont> normalSizeBoldFont { [] { return MVFonts::boldFont(18); } };
};

// The same by name alone: without registration and without a stand-in. An entry first read before the font is known stays absent.
class MVFont2 {
public:
    using Entry = MVEntry<std::optional<UIFont>>;
    static inline Entry normalSizeRegularFont { [] { return UIFont::named("SourceSansPro-Regular", 18); } };
    static inline Entry mediumSizeRegularFont { [] { return UIFont::named("SourceSansPro-Regular", 16); } };
    static inline Entry largeSizeSemiboldFont { [] { return UIFont::named("SourceSansPro-SemiBold", 20); } };
    static inline Entry normalSizeSemiBoldFont { [] { return UIFont::named("SourceSansPro-SemiBold", 18); } };
    static inline Entry mediumSizeSemiBoldFont { [] { return UIFont::named("SourceSansPro-SemiBold", 16); } };
    static inline Entry normalSizeBoldFont { [] { return UIFont::named("SourceSansPro-Bold", 18); } };
};

} // namespace mv
