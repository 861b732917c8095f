#include "Platform/CoreGraphics/Text/GlyphCache.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

namespace platform {
using testing::drawn;
using testing::hex;
using testing::inkOf;
using testing::layoutOf;
using testing::paragraph;

namespace {
using TextDrawingTest = QuietTest;

bool hasColor(const Bitmap& bitmap)
{
    for (int y = 0; y < bitmap.height(); ++y) {
        for (int x = 0; x < bitmap.width(); ++x) {
            const int red = (bitmap.row(y)[x] >> 16) & 255, blue = bitmap.row(y)[x] & 255;
            if (std::abs(red - blue) > 40)
                return true;
        }
    }
    return false;
}

bool equal(const Bitmap& a, const Bitmap& b, int dx)
{
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x + dx < a.width(); ++x) {
            if ((a.row(y)[x] & 0xffffff) != (b.row(y)[x + dx] & 0xffffff))
                return false;
        }
    }
    return true;
}
}

TEST_F(TextDrawingTest, lettersStandOnTheBaseline)
{
    auto text = paragraph("HEH");
    text.font = testing::kitFont("SourceSansPro-Regular", 100); // capitals 66 high, ascent 98.4
    for (const double y : { 0.0, 0.3, 3.0 }) {
        const auto ink = inkOf(*drawn(text, 220, 140, { 0, y }));
        EXPECT_EQ(ink.maxY(), int(std::lround(y + 98.4))) << "baselines snap to pixels, so edges stay sharp";
        EXPECT_NEAR(ink.height, 66, 1);
    }
}

TEST_F(TextDrawingTest, everyScriptLeavesInkWithinItsLine)
{
    for (const char* script : { "Hamburg", "\u0645\u0631\u062d\u0628\u0627", "\u0928\u092e\u0938\u094d\u0924\u0947",
             "\u05e9\u05dc\u05d5\u05dd", "\u0e44\u0e17\u0e22", "\u65e5\u672c\u8a9e", "\uFFFD" }) {
        const auto layout = layoutOf(paragraph(script), 200);
        const auto bitmap = drawn(paragraph(script), 200, 40, { 0, 8 });
        const auto ink = inkOf(*bitmap);
        EXPECT_GE(ink.height, 8) << script;
        EXPECT_NEAR(ink.x, layout->lines()[0].rect.x, 4) << script;
        EXPECT_NEAR(ink.maxX(), layout->lines()[0].rect.maxX(), 4) << script;
        EXPECT_FALSE(hasColor(*bitmap)) << script;
    }
    EXPECT_TRUE(inkOf(*drawn(paragraph(" \u200b\u00a0"), 50, 30)).isEmpty());
}

TEST_F(TextDrawingTest, emojiAreColouredAndAsLargeAsTheText)
{
    auto text = paragraph("\U0001F600");
    for (const double size : { 12.0, 16.0, 60.0, 150.0 }) {
        text.font = testing::kitFont("SourceSansPro-Regular", size);
        const auto bitmap = drawn(text, int(size * 2), int(size * 2));
        EXPECT_TRUE(hasColor(*bitmap)) << size;
        EXPECT_NEAR(inkOf(*bitmap).height, size * 1.15, size * 0.12 + 1) << size;
    }
    text.color = { 0, 0, 0, 0.5 }; // their colours are their own
    EXPECT_TRUE(hasColor(*drawn(text, 300, 300)));
}

TEST_F(TextDrawingTest, joinedLettersDoNotShineThroughOneAnother)
{
    const auto darkest = [](const Bitmap& bitmap) {
        std::uint32_t least = 255;
        for (int y = 0; y < bitmap.height(); ++y)
            for (int x = 0; x < bitmap.width(); ++x)
                least = std::min(least, bitmap.row(y)[x] & 255);
        return int(least);
    };
    auto text = paragraph("\u0627\u0643\u062a\u0628 \u0631\u0633\u0627\u0644\u0629");
    text.font = testing::kitFont("SourceSansPro-SemiBold", 48);
    EXPECT_EQ(darkest(*drawn(text, 400, 100, { 0, 20 })), 0);
    for (const double alpha : { 0.2, 0.5, 0.8 }) {
        text.color = { 0, 0, 0, alpha };
        EXPECT_NEAR(darkest(*drawn(text, 400, 100, { 0, 20 })), 255 * (1 - alpha), 1.5) << alpha;
    }
    text.runs.push_back({ "m", nullptr, CGColor { 0, 0, 0, 0.6 }, {}, false }); // each in its own colour
    EXPECT_NEAR(darkest(*drawn(text, 400, 100, { 0, 20 })), 255 * 0.2, 1.5);
    text.color = { 0, 0, 0, 0.2 };
    EXPECT_NEAR(darkest(*drawn(text, 400, 100, { 0, 20 })), 255 * 0.4, 1.5);
}

TEST_F(TextDrawingTest, glyphsMoveByQuarterPixels)
{
    const auto at = [](double x) { return drawn(paragraph("W"), 60, 30, { x, 0 }); };
    EXPECT_TRUE(equal(*at(5), *at(5.1), 0));
    EXPECT_FALSE(equal(*at(5), *at(5.25), 0));
    EXPECT_TRUE(equal(*at(5), *at(8), 3));
    EXPECT_TRUE(equal(*at(5.5), *at(6.5), 1));
}

TEST_F(TextDrawingTest, clipsCutTextWithoutMovingIt)
{
    const auto whole = drawn(paragraph("Clip me"), 80, 30);
    for (const bool round : { false, true }) {
        const auto part = Bitmap::make(80, 30, PixelFormat::xrgb);
        CGContext context(*part, {});
        context.fill(CGRect { 0, 0, 80, 30 }, { 1, 1, 1, 1 });
        round ? context.clip(*CGPath::rect({ 10, 5, 20, 12 })) : context.clip(CGRect { 10, 5, 20, 12 });
        context.drawText(*layoutOf(paragraph("Clip me"), 80), {});
        for (int y = 0; y < 30; ++y) {
            for (int x = 0; x < 80; ++x) {
                const bool inside = x >= 10 && x < 30 && y >= 5 && y < 17;
                const int expected = inside ? whole->row(y)[x] & 255 : 255;
                ASSERT_NEAR(part->row(y)[x] & 255, expected, round ? 1 : 0) << x << ", " << y;
            }
        }
    }
}

TEST_F(TextDrawingTest, shadowsLieUnderTheTextMovedAndBlurred)
{
    auto text = paragraph("I");
    text.font = testing::kitFont("SourceSansPro-Bold", 80);
    text.color = { 1, 1, 1, 1 };
    const auto without = inkOf(*drawn(text, 60, 110, { 20, 0 }));
    EXPECT_TRUE(without.isEmpty()); // white on white
    text.shadow = TextShadow { { 0, 0, 0, 1 }, 0, { 6, 4 } };
    const auto sharp = inkOf(*drawn(text, 60, 110, { 20, 0 }));
    text.shadow->radius = 4; // sigma 2
    const auto bitmap = drawn(text, 60, 110, { 20, 0 });
    const auto soft = inkOf(*bitmap);
    EXPECT_NEAR(soft.maxX() - sharp.maxX(), 5, 2);
    EXPECT_NEAR(soft.maxY() - sharp.maxY(), 5, 2);
    text.shadow.reset();
    text.color = { 0, 0, 0, 1 };
    const auto letter = inkOf(*drawn(text, 60, 110, { 20, 0 }));
    EXPECT_EQ(sharp.maxX() - letter.maxX(), 6);
    EXPECT_EQ(sharp.maxY() - letter.maxY(), 4);
    const int x = letter.x + letter.width / 2, y = letter.y + letter.height / 2;
    EXPECT_EQ(bitmap->row(y)[x] & 255, 255u) << "the letter covers its shadow";
    EXPECT_LT(bitmap->row(y)[letter.maxX() + 2] & 255, 128u);
}

TEST_F(TextDrawingTest, turnedAndMirroredTextIsDrawnToo)
{
    const auto upright = inkOf(*drawn(paragraph("Turn"), 60, 60));
    const auto bitmap = Bitmap::make(60, 60, PixelFormat::xrgb);
    CGContext context(*bitmap, {});
    context.fill(CGRect { 0, 0, 60, 60 }, { 1, 1, 1, 1 });
    context.concat({ 0, 1, -1, 0, 60, 0 }); // a quarter turn clockwise
    context.drawText(*layoutOf(paragraph("Turn"), 60), {});
    const auto turned = inkOf(*bitmap);
    EXPECT_NEAR(turned.height, upright.width, 2);
    EXPECT_NEAR(turned.width, upright.height, 2);
    EXPECT_NEAR(turned.maxX(), 60 - upright.y, 2);
}

TEST_F(TextDrawingTest, underlinesRunBelowTheBaselineInTheRunsColour)
{
    auto text = paragraph("HHH");
    text.font = testing::kitFont("SourceSansPro-Regular", 40);
    text.runs[0].underline = true;
    text.runs[0].color = CGColor { 0, 0, 1, 1 };
    const auto bitmap = drawn(text, 120, 60);
    const auto ink = inkOf(*bitmap);
    EXPECT_GT(ink.maxY(), int(std::lround(40 * 0.984)) + 1);
    EXPECT_EQ(hex(bitmap->row(ink.maxY() - 1)[40] & 0xffffff), "000000ff");
}

TEST_F(TextDrawingTest, theGlyphCacheStaysBounded)
{
    auto text = paragraph("");
    for (int size = 40; size < 240; size += 2) {
        text.font = testing::kitFont("SourceSansPro-Regular", size);
        text.runs = { TextRun { "MWQ@%", nullptr, {}, {}, false } };
        drawn(text, 1200, 300);
    }
    EXPECT_LE(GlyphCache::shared().bytes(), 4u << 20);
    EXPECT_GT(GlyphCache::shared().bytes(), 1u << 20);
    const auto before = GlyphCache::shared().bytes();
    drawn(text, 1200, 300); // drawn again, nothing is added
    EXPECT_EQ(GlyphCache::shared().bytes(), before);
}

} // namespace platform
