#include "Platform/UIKit/NSAttributedString.h"

#include "Tests/Platform/UIKit/KitResources.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

NSAttributes colored(const UIColor& color)
{
    NSAttributes attributes;
    attributes.foregroundColor = color;
    return attributes;
}

TEST(NSAttributedString, joinsNeighboursOfEqualLook)
{
    NSAttributedString text("Ada: ", colored(UIColor::red()));
    text.append(NSAttributedString("hello ", colored(UIColor::white())));
    text.append(NSAttributedString("there", colored(UIColor::white())));
    text.append(NSAttributedString());
    ASSERT_EQ(text.runs().size(), 2u);
    EXPECT_EQ(text.runs()[1].text, "hello there");
    EXPECT_EQ(text.string(), "Ada: hello there");
    text.append(text);
    EXPECT_EQ(text.string(), "Ada: hello thereAda: hello there");
}

TEST(NSAttributedString, isEmptyWithoutText)
{
    EXPECT_TRUE(NSAttributedString("", colored(UIColor::red())).isEmpty());
    EXPECT_EQ(NSAttributedString("", colored(UIColor::red())), NSAttributedString());
}

TEST(NSAttributedString, handsTheTextEngineResolvedColorsAndItsTallestFont)
{
    UITraitCollection dark;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    NSAttributes large = colored(UIColor::label());
    large.font = kitFont("Bold", 24);
    large.link = "https://example.com";
    large.shadow = NSShadow { UIColor::label(), 1, {} };
    NSAttributedString text("plain ");
    text.append(NSAttributedString("large", large));
    const UIFont base = kitFont("Regular", 16);
    const TextParagraph paragraph = text.paragraph(base, UIColor::systemBlue(), dark);
    EXPECT_EQ(paragraph.font, large.font->ctFont());
    EXPECT_EQ(paragraph.runs[0].font, base.ctFont());
    EXPECT_FALSE(paragraph.runs[0].color) << "it takes the paragraph's";
    EXPECT_EQ(paragraph.color, UIColor::systemBlue().cgColor(dark));
    EXPECT_EQ(paragraph.runs[1].color, UIColor::white().cgColor());
    EXPECT_EQ(paragraph.runs[1].link, "https://example.com");
    ASSERT_TRUE(paragraph.shadow);
    EXPECT_EQ(paragraph.shadow->color, UIColor::white().cgColor());
}

} // namespace
} // namespace platform
