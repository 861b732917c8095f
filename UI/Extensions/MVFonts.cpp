#include "UI/Extensions/MVFonts.h"

#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/NSLog.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

UIFont font(MVFontsName name, CGFloat size, UIFontWeight weight)
{
    const auto named = UIFont::named(rawValue(name), size);
    return named ? *named : UIFont::systemFont(size, weight);
}

} // namespace

const char* rawValue(MVFontsName name)
{
    switch (name) {
    case MVFontsName::sourceSansProBold:
        return "SourceSansPro-Bold";
    case MVFontsName::sourceSansProRegular:
        return "SourceSansPro-Regular";
    case MVFontsName::sourceSansProSemiBold:
        return "SourceSansPro-SemiBold";
    case MVFontsName::robotoBold:
        return "Roboto-Bold";
    case MVFontsName::robotoMedium:
        return "Roboto-Medium";
    case MVFontsName::robotoRegular:
        return "Roboto-Regular";
    }
    return "";
}

std::optional<MVFontsName> fontsNameFromRawValue(std::string_view text)
{
    for (const auto name : allMVFontsNames) {
        if (text == rawValue(name))
            return name;
    }
    return std::nullopt;
}

MVFonts& MVFonts::instance()
{
    static MVFonts fonts;
    return fonts;
}

MVFonts::MVFonts()
{
    for (const auto name : allMVFontsNames)
        loadFont(kitBundle(), rawValue(name));
}

void MVFonts::loadFont(const Bundle& bundle, const std::string& name) const
{
    const auto path = bundle.pathForResource(name, "ttf");
    if (!path)
        return;
    const auto graphicsFont = CTFontManager::graphicsFontOfFile(*path);
    if (!graphicsFont)
        return;
    if (!CTFontManager::registerGraphicsFont(graphicsFont))
        NSLog("Failed to register font - register graphics font failed - this font may have already been registered in the main "
              "bundle.");
}

UIFont MVFonts::regularFont(CGFloat size) { return instance().getRegularFont(size); }

UIFont MVFonts::semiBoldFont(CGFloat size) { return instance().getSemiBoldFont(size); }

UIFont MVFonts::boldFont(CGFloat size) { return instance().getBoldFont(size); }

UIFont MVFonts::getRegularFont(CGFloat size) const
{
    return font(MVFontsName::sourceSansProRegular, size, UIFontWeight::regular);
}

UIFont MVFonts::getSemiBoldFont(CGFloat size) const
{
    return font(MVFontsName::sourceSansProSemiBold, size, UIFontWeight::semibold);
}

UIFont MVFonts::getBoldFont(CGFloat size) const { return font(MVFontsName::sourceSansProBold, size, UIFontWeight::bold); }

} // namespace mv
