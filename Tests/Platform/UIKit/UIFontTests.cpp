#include "Platform/UIKit/UIFont.h"

#include "Tests/Platform/UIKit/KitResources.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

TEST(UIFont, findsARegisteredFontByItsExactName)
{
    registerKitFonts();
    const auto font = UIFont::named("SourceSansPro-SemiBold", 16);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->text(), "SourceSansPro-SemiBold 16");
    EXPECT_NEAR(font->lineHeight(), 16 * (0.984 + 0.273), 1e-6);
    EXPECT_LT(font->descender(), 0);
    EXPECT_FALSE(UIFont::named("sourcesanspro-semibold", 16)) << "case matters";
    EXPECT_FALSE(UIFont::named("NoSuchFont", 16));
}

TEST(UIFont, comparesByNameAndSize)
{
    registerKitFonts();
    EXPECT_EQ(*UIFont::named("SourceSansPro-Bold", 18), *UIFont::named("SourceSansPro-Bold", 18));
    EXPECT_FALSE(*UIFont::named("SourceSansPro-Bold", 18) == *UIFont::named("SourceSansPro-Bold", 17));
    EXPECT_FALSE(UIFont::systemFont(18, UIFontWeight::bold) == UIFont::systemFont(18));
}

TEST(UIFont, keepsItsFamilyAndWeightInAnotherSize)
{
    registerKitFonts();
    EXPECT_EQ(UIFont::named("SourceSansPro-Bold", 18)->withSize(12.5).text(), "SourceSansPro-Bold 12.5");
    EXPECT_EQ(UIFont::systemFont(18, UIFontWeight::semibold).withSize(10), UIFont::systemFont(10, UIFontWeight::semibold));
}

TEST(UIFont, takesTheSystemSizeForOneThatIsNoSize)
{
    EXPECT_EQ(UIFont::systemFont(0), UIFont::systemFont(14));
    EXPECT_EQ(UIFont::systemFont(-3), UIFont::systemFont(14));
    EXPECT_EQ(UIFont::systemFont(std::nan("")), UIFont::systemFont(14));
}

} // namespace
} // namespace platform
