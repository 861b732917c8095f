#include "Platform/UIKit/UIColor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace platform {
namespace {

UITraitCollection appearance(UIUserInterfaceStyle style)
{
    UITraitCollection traits;
    traits.userInterfaceStyle = style;
    return traits;
}

const UITraitCollection light = appearance(UIUserInterfaceStyle::light);
const UITraitCollection dark = appearance(UIUserInterfaceStyle::dark);

TEST(UIColor, holdsComponentsToTheirRange)
{
    EXPECT_EQ(UIColor(2, -1, 0.5, 7).cgColor(), (CGColor { 1, 0, 0.5, 1 }));
    EXPECT_EQ(UIColor(std::nan(""), 0, 0).cgColor(), (CGColor { 0, 0, 0, 1 }));
}

TEST(UIColor, systemPaletteIsTheAgreedOneInBothAppearances)
{
    struct Case {
        const char* name;
        UIColor color;
        const char* light;
        const char* dark;
    };
    const Case cases[] = {
        { "label", UIColor::label(), "#000000ff", "#ffffffff" },
        { "red", UIColor::systemRed(), "#ff3b30ff", "#ff453aff" },
        { "blue", UIColor::systemBlue(), "#007affff", "#0a84ffff" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(hexText(c.color.cgColor(light)), c.light);
        EXPECT_EQ(hexText(c.color.cgColor(dark)), c.dark);
        EXPECT_EQ(hexText(c.color.cgColor(UITraitCollection())), c.light) << "an unspecified appearance is light";
    }
}

TEST(UIColor, resolvesInTheCurrentTraitsWhenNoneAreNamed)
{
    const UITraitCollection former = UITraitCollection::current();
    const UIColor label = UIColor::label();
    dark.performAsCurrent([&] {
        EXPECT_EQ(label.cgColor(), UIColor::white().cgColor());
        light.performAsCurrent([&] { EXPECT_EQ(label.cgColor(), UIColor::black().cgColor()); });
        EXPECT_EQ(label.cgColor(), UIColor::white().cgColor()) << "after a block inside a block";
    });
    EXPECT_EQ(UITraitCollection::current(), former);
}

TEST(UIColor, followsADynamicColorInsideADynamicColor)
{
    const UIColor outer = UIColor::dynamic([](const UITraitCollection&) { return UIColor::systemGray4(); });
    EXPECT_EQ(hexText(outer.cgColor(dark)), "#3a3a3cff");
    EXPECT_FALSE(outer.resolved(dark).isDynamic());
}

TEST(UIColor, givesUpOnAColorThatAnswersWithItself)
{
    std::optional<UIColor> loop;
    loop = UIColor::dynamic([&](const UITraitCollection&) { return *loop; });
    EXPECT_EQ(loop->cgColor(light), UIColor::black().cgColor());
    EXPECT_EQ(UIColor::dynamic(nullptr), UIColor::black());
}

TEST(UIColor, keepsADynamicColorDynamicUnderAnotherAlpha)
{
    const UIColor faint = UIColor::label().withAlphaComponent(0.5);
    EXPECT_EQ(faint.cgColor(light), (CGColor { 0, 0, 0, 0.5 }));
    EXPECT_EQ(faint.cgColor(dark), (CGColor { 1, 1, 1, 0.5 }));
    EXPECT_EQ(UIColor::red().withAlphaComponent(0.25), UIColor(1, 0, 0, 0.25));
}

TEST(UIColor, isEqualByComponentsOrBySharedFunction)
{
    EXPECT_EQ(UIColor::white(0.5), UIColor(0.5, 0.5, 0.5));
    EXPECT_EQ(UIColor::label(), UIColor::label());
    EXPECT_FALSE(UIColor::label() == UIColor::black()) << "they differ in the dark";
    EXPECT_FALSE(UIColor::systemRed() == UIColor::systemBlue());
}

TEST(UIColor, comesBackFromHueSaturationBrightness)
{
    for (int red = 0; red <= 255; red += 51)
        for (int green = 0; green <= 255; green += 51)
            for (int blue = 0; blue <= 255; blue += 51) {
                const UIColor color(red / 255.0, green / 255.0, blue / 255.0, 0.5);
                const UIColor::HSB hsb = color.hsb();
                EXPECT_GE(hsb.hue, 0);
                EXPECT_LT(hsb.hue, 1);
                EXPECT_EQ(hexText(UIColor::fromHSB(hsb).cgColor()), hexText(color.cgColor()));
            }
}

TEST(UIColor, readsHueSaturationBrightness)
{
    const UIColor::HSB hsb = UIColor(0.25, 0.5, 0.5, 0.75).hsb();
    EXPECT_NEAR(hsb.hue, 0.5, 1e-12);
    EXPECT_NEAR(hsb.saturation, 0.5, 1e-12);
    EXPECT_NEAR(hsb.brightness, 0.5, 1e-12);
    EXPECT_NEAR(hsb.alpha, 0.75, 1e-12);
    EXPECT_EQ(UIColor::white(0.3).hsb().saturation, 0);
    EXPECT_EQ(UIColor::black().hsb().brightness, 0);
}

TEST(UIColor, takesABrightnessAboveOneAsOne)
{
    EXPECT_EQ(UIColor::fromHSB({ 0, 0, 1.35, 1 }), UIColor::white());
    EXPECT_EQ(hexText(UIColor::fromHSB({ 2.0 / 3, 1, 1.7, 1 }).cgColor()), "#0000ffff");
    EXPECT_EQ(hexText(UIColor::fromHSB({ 5.0 / 3, 1, 1, 1 }).cgColor()), "#0000ffff") << "a hue goes round";
}

} // namespace
} // namespace platform
