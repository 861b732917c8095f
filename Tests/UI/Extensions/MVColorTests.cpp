#include "UI/Extensions/GradientView.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVColorExtensions.h"

#include "Platform/UIKit/UIDevice.h"

#include <gtest/gtest.h>

#include <thread>

namespace mv {
namespace {

const UITraitCollection light { .userInterfaceStyle = UIUserInterfaceStyle::light };
const UITraitCollection dark { .userInterfaceStyle = UIUserInterfaceStyle::dark };

std::string text(const UIColor& color, const UITraitCollection& traits = light) { return hexText(color.cgColor(traits)); }

TEST(MVColorExtensions, readsHexadecimalColours)
{
    for (const char* same : { "#abc", "abc", "aabbcc", "#AABBCC", "#aBc" }) {
        SCOPED_TRACE(same);
        EXPECT_EQ(text(colorWithHex(same)), "#aabbccff");
    }
    EXPECT_EQ(colorWithHex("#fafafa").cgColor().red, 250.0 / 255);
    EXPECT_EQ(text(colorWithHex("#010203")), "#010203ff");
}

TEST(MVColorExtensions, givesTransparentWhiteForWhatIsNoColour)
{
    for (const char* none : { "", "#", "##abc", "##aabbcc", "abcd", "#abcd", "aabbccd", "#aabbccdd", "aabbccdd", "xyz", "12345g",
             "-12345", "+1a2b3", "0x1234", " abc", "äöü", "👍👍👍", "\xff\xfe\xfd" }) {
        SCOPED_TRACE(none);
        EXPECT_EQ(text(colorWithHex(none)), "#ffffff00");
    }
}

TEST(MVColorExtensions, knowsAColourForEachCapitalLetter)
{
    EXPECT_EQ(text(colorFromCharacter("A")), "#5a8770ff");
    EXPECT_EQ(text(colorFromCharacter("J")), "#f5888dff");
    EXPECT_EQ(text(colorFromCharacter("S")), "#f18636ff");
    EXPECT_EQ(text(colorFromCharacter("Z")), "#407887ff");
    EXPECT_EQ(text(colorFromCharacter("A\u0301")), "#5a8770ff"); // an accent of its own: the first scalar counts
    for (const std::optional<std::string_view> other :
        std::vector<std::optional<std::string_view>> { "a", "1", "@", "[", "Ä", "", {} })
        EXPECT_EQ(colorFromCharacter(other), UIColor::systemBlue());
}

TEST(MVColorExtensions, changesBrightnessOnly)
{
    const auto half = UIColor::fromHSB({ .hue = 0.6, .saturation = 0.4, .brightness = 0.5, .alpha = 0.7 });
    EXPECT_NEAR(lighter(half).hsb().brightness, 0.675, 1e-9);
    EXPECT_NEAR(darker(half).hsb().brightness, 0.47, 1e-9);
    EXPECT_NEAR(darker(half, 0.5).hsb().brightness, 0.25, 1e-9);
    const auto changed = lighter(half).hsb();
    EXPECT_NEAR(changed.hue, 0.6, 1e-9);
    EXPECT_NEAR(changed.saturation, 0.4, 1e-9);
    EXPECT_NEAR(changed.alpha, 0.7, 1e-9);
    EXPECT_NEAR(lighter(half, 4).hsb().brightness, 1, 1e-9);
}

TEST(MVDefaultColors, differByAppearanceSinceTheThirteenthPlatform)
{
    using Colors = MVDefaultColors;
    struct Case {
        UIColor (*color)();
        const char *light, *dark, *before;
    };
    const Case cases[] = {
        { Colors::backgroundColor, "#fafafaff", "#000000ff", "#fafafaff" },
        { Colors::cardBackgroundColor, "#ffffffff", "#0c0c0eff", "#ffffffff" },
        { Colors::shadowColor, "#d1d1d6ff", "#3a3a3cff", "#fafafaff" },
        { Colors::primaryTextColor, "#000000ff", "#ffffffff", "#000000ff" },
        { Colors::secondaryTextColor, "#3c3c4399", "#ebebf599", "#8d8d93ff" },
        { Colors::seperatorColor, "#3c3c434a", "#54545899", "#3c3c434a" },
        { Colors::systemGray5, "#e5e5eaff", "#2c2c2eff", "#e5e5eaff" },
    };
    const auto version = UIDevice::current().systemVersion();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.light);
        EXPECT_EQ(text(c.color()), c.light);
        EXPECT_EQ(text(c.color(), UITraitCollection()), c.light) << "an unspecified appearance is light";
        EXPECT_EQ(text(c.color(), dark), c.dark);
        UIDevice::current().setSystemVersion("12.4");
        EXPECT_FALSE(c.color().isDynamic());
        EXPECT_EQ(text(c.color(), dark), c.before);
        UIDevice::current().setSystemVersion(version);
    }
    EXPECT_EQ(text(MVColor::accentColor(), dark), "#007affff") << "the accent is the same in both appearances";
}

TEST(MVEntry, makesItsFirstValueOnceAndKeepsWhatTheHostAssigns)
{
    static int made = 0;
    MVEntry<int> read { [] { return ++made; } };
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(read(), 1);
    read = 7;
    EXPECT_EQ(read(), 7);

    MVEntry<int> assigned { [] { return ++made; } };
    assigned = 9;
    EXPECT_EQ(assigned(), 9);
    EXPECT_EQ(made, 2) << "the first value is made at the first access, also when that is an assignment";

    static std::atomic_int racers = 0;
    MVEntry<int> raced { [] { return ++racers; } };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { EXPECT_EQ(raced(), 1); });
    for (auto& thread : threads)
        thread.join();
}

TEST(GradientView, runsFromTopToBottom)
{
    const auto view = make<GradientView>(CGRect { 0, 0, 10, 20 });
    const auto& layer = static_cast<CAGradientLayer&>(*view->layer());
    EXPECT_FALSE(view->colors());
    EXPECT_TRUE(layer.colors().empty());

    view->setColors(std::vector { UIColor::red(), UIColor::black(), UIColor::white() });
    EXPECT_EQ(layer.colors().size(), 3u);
    EXPECT_EQ(layer.locations(), (std::vector<double> { 0, 1 }));
    EXPECT_EQ(layer.startPoint(), (CGPoint { 0.5, 0 }));
    EXPECT_EQ(layer.endPoint(), (CGPoint { 0.5, 1 }));

    view->setColors(std::nullopt);
    EXPECT_TRUE(layer.colors().empty());
}

TEST(GradientView, fadesToOtherColoursAndLeavesItsOwnAlone)
{
    const auto view = make<GradientView>();
    view->setColors(std::vector { UIColor::red(), UIColor::black() });
    view->animateColors({ UIColor::white(), UIColor::white() });
    view->animateColors({ UIColor::black(), UIColor::white() });
    EXPECT_EQ(view->layer()->animationKeys(), std::vector<std::string> { "colorChange" });
    const auto animation = std::dynamic_pointer_cast<CABasicAnimation>(view->layer()->animation("colorChange"));
    ASSERT_TRUE(animation);
    EXPECT_EQ(animation->keyPath, "colors");
    EXPECT_EQ(animation->duration, 0.25);
    EXPECT_EQ(animation->fillMode, CAMediaTimingFillMode::forwards);
    EXPECT_FALSE(animation->removedOnCompletion);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(animation->fromValue));
    EXPECT_EQ(view->colors()->front(), UIColor::red());
    EXPECT_EQ(static_cast<CAGradientLayer&>(*view->layer()).colors().front(), UIColor::red().cgColor());
}

} // namespace
} // namespace mv
