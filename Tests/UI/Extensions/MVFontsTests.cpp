#include "UI/Extensions/MVFonts.h"

#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/NSLog.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

// The kit's fonts are registered once in the life of a process, so each of these stories gets a process of its own.
void inOwnProcess(const std::function<bool()>& story)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit(story() ? 0 : 1), testing::ExitedWithCode(0), "");
}

bool registerAgain(const std::string& name)
{
    auto bytes = kitBundle().contentsOfResource(name, "ttf");
    return bytes && CTFontManager::registerGraphicsFont(CTFontManager::graphicsFont(std::move(*bytes)));
}

TEST(MVFonts, registersItsSixFontsAtTheFirstUse)
{
    inOwnProcess([] {
        const LogCapture console;
        bool allAbsent = true, allThere = true;
        for (const auto name : allMVFontsNames)
            allAbsent = allAbsent && !CTFontManager::isRegistered(rawValue(name));
        const auto font = MVFonts::semiBoldFont(14);
        for (const auto name : allMVFontsNames)
            allThere = allThere && CTFontManager::isRegistered(rawValue(name));
        MVFonts::boldFont(20);
        return allAbsent && allThere && font.text() == "SourceSansPro-SemiBold 14" && console.lines().empty();
    });
}

TEST(MVFonts, standsInWithTheSystemFontWhenFilesAreMissing)
{
    inOwnProcess([] {
        const LogCapture console;
        setKitBundlePath("no such bundle");
        return MVFonts::boldFont(18) == UIFont::systemFont(18, UIFontWeight::bold)
            && MVFonts::semiBoldFont(18) == UIFont::systemFont(18, UIFontWeight::semibold)
            && MVFonts::regularFont(18) == UIFont::systemFont(18, UIFontWeight::regular) && console.lines().empty();
    });
}

TEST(MVFonts, saysOncePerFileThatTheHostHasRegisteredItBefore)
{
    inOwnProcess([] {
        const LogCapture console;
        for (const auto name : allMVFontsNames) {
            if (!registerAgain(rawValue(name)))
                return false;
        }
        const auto font = MVFonts::regularFont(12);
        const std::string line = "Failed to register font - register graphics font failed - this font may have already been "
                                 "registered in the main bundle.";
        return console.lines() == std::vector<std::string>(6, line) && font.fontName() == "SourceSansPro-Regular";
    });
}

TEST(MVFonts, plainEntriesStayAbsentWhenReadBeforeTheRegistration)
{
    inOwnProcess([] {
        const bool before = MVFont2::normalSizeBoldFont().has_value();
        MVFonts::instance();
        return !before && !MVFont2::normalSizeBoldFont()
            && MVFont2::normalSizeRegularFont()->text() == "SourceSansPro-Regular 18";
    });
}

TEST(MVFonts, assigningAnEntryRegistersTooAndIsKept)
{
    inOwnProcess([] {
        MVFont::largeSizeSemiboldFont = UIFont::systemFont(33);
        return CTFontManager::isRegistered("SourceSansPro-Bold") && MVFont::largeSizeSemiboldFont() == UIFont::systemFont(33);
    });
}

TEST(MVFonts, readyMadeFontsHaveTheirSizesAndWeights)
{
    EXPECT_EQ(MVFont::normalSizeRegularFont().text(), "SourceSansPro-Regular 18");
    EXPECT_EQ(MVFont::mediumSizeRegularFont().text(), "SourceSansPro-Regular 16");
    EXPECT_EQ(MVFont::largeSizeSemiboldFont().text(), "SourceSansPro-SemiBold 20");
    EXPECT_EQ(MVFont::normalSizeSemiBoldFont().text(), "SourceSansPro-SemiBold 18");
    EXPECT_EQ(MVFont::mediumSizeSemiBoldFont().text(), "SourceSansPro-SemiBold 16");
    EXPECT_EQ(MVFont::normalSizeBoldFont().text(), "SourceSansPro-Bold 18");
}

TEST(MVFontsName, convertsToAndFromItsText)
{
    EXPECT_EQ(fontsNameFromRawValue("Roboto-Medium"), MVFontsName::robotoMedium);
    for (const auto name : allMVFontsNames)
        EXPECT_EQ(fontsNameFromRawValue(rawValue(name)), name);
    for (const char* none : { "roboto-medium", "", "Roboto", "Roboto-Medium " })
        EXPECT_FALSE(fontsNameFromRawValue(none));
}

} // namespace
} // namespace mv
