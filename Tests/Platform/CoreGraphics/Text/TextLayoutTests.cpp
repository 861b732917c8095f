#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

namespace platform {
using testing::glyphs;
using testing::kitFont;
using testing::layoutOf;
using testing::paragraph;
using testing::unlimited;
using testing::widthOf;

namespace {
using TextLayoutTest = QuietTest;

constexpr auto pangram = "The quick brown fox jumps over the lazy dog";

std::vector<std::vector<std::uint32_t>> allGlyphs(const TextLayout& layout)
{
    std::vector<std::vector<std::uint32_t>> lines;
    for (std::size_t i = 0; i < layout.lines().size(); ++i)
        lines.push_back(glyphs(layout, i));
    return lines;
}

std::vector<std::vector<std::uint32_t>> linesOf(const std::vector<std::string>& texts)
{
    std::vector<std::vector<std::uint32_t>> lines;
    for (const auto& text : texts)
        lines.push_back(glyphs(text));
    return lines;
}
}

TEST_F(TextLayoutTest, measuresByTheFontAskedFor)
{
    const auto plain = layoutOf(paragraph("Hamburg"));
    EXPECT_DOUBLE_EQ(plain->firstBaseline(), 16 * 0.984);
    EXPECT_DOUBLE_EQ(plain->lines()[0].rect.height, 16 * 1.257);
    EXPECT_DOUBLE_EQ(plain->size().height, 20.5); // 20.112 rounded up to half points
    EXPECT_GE(plain->size().width, plain->lines()[0].rect.width);
    EXPECT_LT(plain->size().width, plain->lines()[0].rect.width + 0.5);
    EXPECT_DOUBLE_EQ(plain->size().width * 2, std::round(plain->size().width * 2));
    // Fallback fonts with taller lines do not change the line's height.
    EXPECT_EQ(layoutOf(paragraph("\xd9\x85\xe0\xa4\x95\xf0\x9f\x98\x80"))->size().height, 20.5);
    // Widths scale exactly, as nothing is hinted or rounded.
    auto large = paragraph("Hamburg");
    large.font = kitFont("SourceSansPro-Regular", 160);
    EXPECT_NEAR(layoutOf(large)->lines()[0].rect.width, 10 * plain->lines()[0].rect.width, 0.01);
}

TEST_F(TextLayoutTest, anEmptyTextIsOneEmptyLine)
{
    auto none = paragraph("");
    for (const int runs : { 1, 0 }) {
        none.runs.resize(std::size_t(runs));
        const auto layout = layoutOf(none, 100);
        EXPECT_EQ(layout->size(), (CGSize { 0, 20.5 }));
        EXPECT_EQ(layout->lines().size(), 1u);
        EXPECT_FALSE(layout->isTruncated());
    }
}

TEST_F(TextLayoutTest, wrapsAtWords)
{
    const auto layout = layoutOf(paragraph(pangram, 0), widthOf("The quick brown"));
    EXPECT_EQ(allGlyphs(*layout), linesOf({ "The quick brown", "fox jumps over", "the lazy dog" }));
    EXPECT_NEAR(layout->lastBaseline() - layout->firstBaseline(), 2 * 16 * 1.257, 1e-9);
    auto spaced = paragraph(pangram, 0);
    spaced.lineSpacing = 4;
    EXPECT_NEAR(layoutOf(spaced, widthOf("The quick brown"))->size().height, 60.5 + 8, 0.5);
}

TEST_F(TextLayoutTest, keepsAddressesWhole)
{
    const std::string address = "https://lumenlane.example/care", text = "Care guide: " + address;
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph(text, 0), widthOf(address) + 1)), linesOf({ "Care guide:", address }));
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph(text, 0), widthOf(address) - 1)),
        linesOf({ "Care guide:", "https://lumenlane.example/", "care" }));
    EXPECT_EQ(
        allGlyphs(*layoutOf(paragraph("cups and/or jugs", 0), widthOf("cups and/o"))), linesOf({ "cups", "and/or", "jugs" }));
}

TEST_F(TextLayoutTest, breaksWordsThatAreWiderThanTheLineAndAlwaysGoesOn)
{
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph("abcdef", 0), widthOf("abcd"))), linesOf({ "abcd", "ef" }));
    for (const double width : { 1.0, 0.0, -5.0 }) {
        const auto narrow = layoutOf(paragraph("one tw", 0), width);
        EXPECT_EQ(allGlyphs(*narrow), linesOf({ "o", "n", "e", "t", "w" })) << width;
    }
    // A family of four is one character.
    EXPECT_EQ(layoutOf(paragraph("\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466!", 0), 1)->lines().size(), 2u);
    auto anywhere = paragraph("The quick", 0);
    anywhere.lineBreakMode = NSLineBreakMode::byCharWrapping;
    EXPECT_EQ(allGlyphs(*layoutOf(anywhere, widthOf("The qu"))), linesOf({ "The qu", "ick" }));
}

TEST_F(TextLayoutTest, lineBreaksInTheTextBeginNewLines)
{
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph("a\nb\r\nc\rd\u2028e", 0))), linesOf({ "a", "b", "c", "d", "e" }));
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph("a\n\nb", 0))), linesOf({ "a", "", "b" }));
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph("a\nb", 1))), linesOf({ "a\u2026" }));
    EXPECT_EQ(allGlyphs(*layoutOf(paragraph("a\n \n", 1))), linesOf({ "a" })); // nothing to see is left out
    EXPECT_NEAR(widthOf("a\tb"), widthOf("a    b"), 1e-3);
    EXPECT_EQ(widthOf("a\x01\x7f"
                      "b"),
        widthOf("ab"));
}

TEST_F(TextLayoutTest, truncatesTheLastLineInEveryMode)
{
    struct Case {
        const char* why;
        NSLineBreakMode mode;
        int lines;
        const char* widthOfText;
        std::vector<std::string> shown;
    };
    const std::string dots = "\u2026";
    const Case cases[] = {
        { "tail", NSLineBreakMode::byTruncatingTail, 1, "The quick bro\u2026", { "The quick bro" + dots } },
        { "no space before the dots", NSLineBreakMode::byTruncatingTail, 1, "The quick \u2026", { "The quick" + dots } },
        { "head", NSLineBreakMode::byTruncatingHead, 1, "\u2026e lazy dog", { dots + "e lazy dog" } },
        { "middle", NSLineBreakMode::byTruncatingMiddle, 1, "The qu\u2026zy dog", { "The q" + dots + "azy dog" } },
        { "second line", NSLineBreakMode::byTruncatingTail, 2, "The quick brown", { "The quick brown", "fox jumps ove" + dots } },
        { "head of the second", NSLineBreakMode::byTruncatingHead, 2, "The quick brown",
            { "The quick brown", dots + "er the lazy dog" } },
        { "words only", NSLineBreakMode::byWordWrapping, 2, "The quick brown", { "The quick brown", "fox jumps over" } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        auto text = paragraph(pangram, c.lines);
        text.lineBreakMode = c.mode;
        const double width = widthOf(c.widthOfText) + 1; // room for the kerning of the dots
        const auto layout = layoutOf(text, width);
        EXPECT_EQ(allGlyphs(*layout), linesOf(c.shown));
        EXPECT_TRUE(layout->isTruncated());
        EXPECT_TRUE(layout->lines().back().truncated);
        EXPECT_EQ(layout->lines().size(), std::size_t(c.lines));
        for (const auto& line : layout->lines())
            EXPECT_LE(line.rect.width, width + 0.02);
        EXPECT_EQ(layout->lines().size() > 1 && layout->lines()[0].truncated, false);
    }
    EXPECT_FALSE(layoutOf(paragraph(pangram), widthOf(pangram))->isTruncated()); // it fits what it was measured to have
    EXPECT_EQ(glyphs(*layoutOf(paragraph(pangram), 3)), glyphs(dots)); // not even the dots fit
}

TEST_F(TextLayoutTest, aHeightLimitsTheLines)
{
    const double width = widthOf("The quick brown"), line = 16 * 1.257;
    EXPECT_EQ(layoutOf(paragraph(pangram, 0), width, 2 * line)->lines().size(), 2u);
    EXPECT_TRUE(layoutOf(paragraph(pangram, 0), width, 3 * line - 1)->isTruncated());
    EXPECT_FALSE(layoutOf(paragraph(pangram, 0), width, 3 * line)->isTruncated());
    EXPECT_EQ(layoutOf(paragraph(pangram, 0), width, 1)->lines().size(), 1u); // one line always shows
}

TEST_F(TextLayoutTest, clippingKeepsTheLineAndTheWidth)
{
    auto text = paragraph(pangram);
    text.lineBreakMode = NSLineBreakMode::byClipping;
    const auto layout = layoutOf(text, 60);
    EXPECT_EQ(glyphs(*layout), glyphs(pangram));
    EXPECT_EQ(layout->size().width, 60);
    const auto bitmap = Bitmap::make(200, 30, PixelFormat::xrgb);
    CGContext context(*bitmap, {});
    context.fill(CGRect { 0, 0, 200, 30 }, { 1, 1, 1, 1 });
    context.drawText(*layout, { 20, 0 });
    EXPECT_LE(testing::inkOf(*bitmap).maxX(), 80);
    EXPECT_GT(testing::inkOf(*bitmap).maxX(), 70);
}

TEST_F(TextLayoutTest, alignsLines)
{
    struct Case {
        NSTextAlignment alignment;
        const char* text;
        double share; // of the free room, on the left
    };
    const Case cases[]
        = { { NSTextAlignment::left, "abc", 0 }, { NSTextAlignment::center, "abc", 0.5 }, { NSTextAlignment::right, "abc", 1 },
              { NSTextAlignment::natural, "abc", 0 }, { NSTextAlignment::natural, "\u0645\u0631\u062d\u0628\u0627", 1 },
              { NSTextAlignment::left, "\u0645\u0631\u062d\u0628\u0627", 0 } };
    for (const auto& c : cases) {
        auto text = paragraph(c.text);
        text.alignment = c.alignment;
        const auto line = layoutOf(text, 200)->lines()[0];
        EXPECT_NEAR(line.rect.x, (200 - line.rect.width) * c.share, 1e-9) << c.text;
        EXPECT_EQ(layoutOf(text, unlimited)->lines()[0].rect.x, 0) << "without a width the box is the text's own";
    }
    auto justified = paragraph(pangram, 0);
    justified.alignment = NSTextAlignment::justified;
    const auto layout = layoutOf(justified, 120);
    EXPECT_NEAR(layout->lines()[0].rect.width, 120, 0.01);
    EXPECT_LT(layout->lines().back().rect.width, 119);
}

TEST_F(TextLayoutTest, neutralTextFollowsTheParagraphsDirection)
{
    auto text = paragraph("12:30!");
    EXPECT_EQ(layoutOf(text, 200)->lines()[0].rect.x, 0);
    text.direction = TextDirection::rightToLeft;
    EXPECT_GT(layoutOf(text, 200)->lines()[0].rect.x, 100);
    text.runs[0].text = "Latin 12:30!"; // a strong character decides
    EXPECT_EQ(layoutOf(text, 200)->lines()[0].rect.x, 0);
    text.runs[0].text.clear();
    EXPECT_EQ(layoutOf(text, 200)->lines()[0].rect.x, 200);
}

TEST_F(TextLayoutTest, arabicLettersJoinAndRunFromTheRight)
{
    const auto alone = glyphs("\u0628"), three = glyphs("\u0628\u0628\u0628");
    EXPECT_EQ(alone.size() + 2, three.size() + (alone.size() - 1) * 3 - (alone.size() - 1)) << "marks may be glyphs of their own";
    EXPECT_LT(widthOf("\u0628\u0628\u0628"), 3 * widthOf("\u0628"));
    EXPECT_TRUE(std::search(three.begin(), three.end(), alone.begin(), alone.end()) != three.begin())
        << "the leftmost has a final form";
    // In mixed text the Latin word stays in its order, left of what precedes it.
    auto mixed = paragraph("");
    const auto bold = kitFont("SourceSansPro-Bold", 16);
    mixed.runs
        = { TextRun { "\u0645\u0631\u062d\u0628\u0627 ", nullptr, {}, {}, false }, TextRun { "abc", bold, {}, "latin", false } };
    const auto layout = layoutOf(mixed, 300);
    const auto line = layout->lines()[0];
    EXPECT_EQ(layout->linkAt({ line.rect.x + 2, 10 }), "latin");
    EXPECT_EQ(layout->linkAt({ line.rect.maxX() - 2, 10 }), "");
    EXPECT_NEAR(line.rect.maxX(), 300, 1e-6);
    // Cut at the end, its dots stand on the left.
    auto cut = paragraph("\u0645\u0631\u062d\u0628\u0627 \u0645\u0631\u062d\u0628\u0627 \u0645\u0631\u062d\u0628\u0627");
    EXPECT_EQ(glyphs(*layoutOf(cut, 60)).front(), glyphs("\u2026").front());
}

TEST_F(TextLayoutTest, devanagariFormsConjunctsAndReorders)
{
    EXPECT_EQ(glyphs("\u0915\u094d\u0937").size(), 1u); // k + virama + sh
    const auto ki = glyphs("\u0915\u093f"), ka = glyphs("\u0915");
    ASSERT_EQ(ki.size(), 2u);
    EXPECT_EQ(ki[1], ka[0]) << "the vowel sign that follows in the text stands first";
}

TEST_F(TextLayoutTest, emojiSequencesAreOneGlyph)
{
    for (const char* text : { "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466", "\U0001F1E9\U0001F1EA",
             "\U0001F44D\U0001F3FD", "\u2764\uFE0F", "1\uFE0F\u20E3" }) {
        const auto layout = layoutOf(paragraph(text));
        ASSERT_EQ(layout->implementation().runs[0].size(), 1u) << text;
        EXPECT_EQ(layout->implementation().runs[0][0].face->postScriptName, "NotoColorEmoji") << text;
        EXPECT_EQ(glyphs(*layout).size(), 1u) << text;
        EXPECT_NEAR(layout->lines()[0].rect.width, 16 * 1.245, 0.1) << "as wide as the font says";
    }
    EXPECT_EQ(layoutOf(paragraph("12"))->implementation().runs[0][0].face->postScriptName, "SourceSansPro-Regular");
    EXPECT_LT(widthOf("\U0001F600 \U0001F600") - 2 * widthOf("\U0001F600"), 5) << "a space of the text's font";
}

TEST_F(TextLayoutTest, invalidBytesShowAsReplacementCharacters)
{
    EXPECT_EQ(glyphs("a\xff"
                     "b"),
        glyphs("a\uFFFD"
               "b"));
    EXPECT_EQ(glyphs("a\xe2\x82"
                     "b"),
        glyphs("a\uFFFD"
               "b"));
    EXPECT_EQ(glyphs("\xed\xa0\x80"), glyphs("\uFFFD\uFFFD\uFFFD")); // a surrogate
}

TEST_F(TextLayoutTest, runsKeepTheirFontColourAndLink)
{
    TextParagraph text = paragraph("");
    const auto bold = kitFont("SourceSansPro-Bold", 16), tall = kitFont("SourceSansPro-Regular", 24);
    text.runs = { TextRun { "Anna: ", bold, CGColor { 1, 0, 0, 1 }, {}, false }, TextRun { "see ", nullptr, {}, {}, false },
        TextRun { "here", tall, {}, "https://example.org", true } };
    const auto layout = layoutOf(text);
    EXPECT_DOUBLE_EQ(layout->lines()[0].rect.height, 24 * 1.257); // the tallest
    EXPECT_EQ(layout->linkAt({ 3, 10 }), "");
    EXPECT_EQ(layout->linkAt({ layout->size().width - 5, 10 }), "https://example.org");
    EXPECT_EQ(layout->linkAt({ layout->size().width + 5, 10 }), "");
    EXPECT_EQ(layout->linkAt({ 5, 100 }), "");
    const auto& styles = layout->implementation().styles;
    EXPECT_EQ(styles[0].color, (CGColor { 1, 0, 0, 1 }));
    EXPECT_EQ(styles[1].color, text.color);
}

TEST_F(TextLayoutTest, equalQuestionsShareOneAnswer)
{
    const auto text = paragraph("shared", 0);
    EXPECT_EQ(layoutOf(text, 100), layoutOf(paragraph("shared", 0), 100));
    EXPECT_NE(layoutOf(text, 100), layoutOf(text, 101));
    auto colored = text;
    colored.color = { 1, 0, 0, 1 };
    EXPECT_NE(layoutOf(text, 100), layoutOf(colored, 100));
    EXPECT_EQ(layoutOf(colored, 100)->implementation().styles[0].color.red, 1);
}

TEST_F(TextLayoutTest, hugeTextsCostNoMoreThanWhatShows)
{
    std::string huge;
    while (huge.size() < (1u << 20))
        huge += "some words and \u0645\u0631\u062d\u0628\u0627 ";
    huge += "END";
    for (const auto mode :
        { NSLineBreakMode::byTruncatingTail, NSLineBreakMode::byTruncatingMiddle, NSLineBreakMode::byTruncatingHead }) {
        auto text = paragraph(huge, 2);
        text.lineBreakMode = mode;
        const auto layout = layoutOf(text, 300);
        EXPECT_EQ(layout->lines().size(), 2u);
        EXPECT_TRUE(layout->isTruncated());
        std::size_t count = glyphs(*layout, 0).size() + glyphs(*layout, 1).size();
        EXPECT_LT(count, 200u);
        if (mode != NSLineBreakMode::byTruncatingTail) { // the very end is what shows
            const auto last = glyphs(*layout, 1), end = glyphs("END");
            EXPECT_TRUE(std::search(last.begin(), last.end(), end.begin(), end.end()) != last.end());
        }
    }
    EXPECT_TRUE(layoutOf(paragraph(huge), unlimited)->isTruncated()); // no screen is that wide
}

} // namespace platform
