#include "Platform/CoreGraphics/Text/CTFont.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

#include <cstdlib>

namespace platform {
using testing::kitFont;
using testing::kitFontBytes;
using testing::layoutOf;
using testing::paragraph;

namespace {
using CTFontTest = QuietTest;

// A process of its own, in which no font is registered yet. Exits with the number of failed conditions.
struct FreshProcess {
    int failures = 0;
    void expect(bool condition, const char* what)
    {
        if (!condition) {
            std::fprintf(stderr, "not so: %s\n", what);
            ++failures;
        }
    }
};

[[noreturn]] void registerInAFreshProcess()
{
    FreshProcess here;
    here.expect(!CTFont::named("SourceSansPro-Bold", 18), "unknown before it is registered");
    const auto font = CTFontManager::graphicsFont(kitFontBytes("SourceSansPro-Bold"));
    here.expect(CTFontManager::registerGraphicsFont(font), "the first registration succeeds");
    here.expect(!CTFontManager::registerGraphicsFont(font), "the second does not");
    const auto copy = CTFontManager::graphicsFont(kitFontBytes("SourceSansPro-Bold"));
    here.expect(copy && !CTFontManager::registerGraphicsFont(copy), "nor does another copy of the file");
    here.expect(bool(CTFont::named("SourceSansPro-Bold", 18)), "the font is found all the same");
    std::exit(here.failures);
}

[[noreturn]] void drawWithoutSystemFonts(bool withRegisteredFont)
{
    FreshProcess here;
    LogCapture log;
    CTFontManager::setSystemFontsFolder("/nowhere");
    if (withRegisteredFont)
        kitFont("SourceSansPro-Bold", 10);
    TextParagraph text;
    text.font = CTFont::system(20, FontWeight::regular);
    text.runs = { TextRun { "Hello \xe0\xa4\x95", nullptr, {}, {}, false } };
    here.expect((text.font->postScriptName() == "SourceSansPro-Bold") == withRegisteredFont, "a registered font stands in");
    here.expect(testing::inkOf(*testing::drawn(text, 150, 40)).width > 40, "something is drawn for every letter");
    here.expect(log.lines().size() == 1, "one line on the console");
    std::exit(here.failures);
}
}

TEST_F(CTFontTest, readsItsMeasuresFromTheFile)
{
    const auto regular = kitFont("SourceSansPro-Regular", 100);
    EXPECT_DOUBLE_EQ(regular->ascender(), 98.4);
    EXPECT_DOUBLE_EQ(regular->descender(), 27.3);
    EXPECT_DOUBLE_EQ(regular->leading(), 0);
    EXPECT_DOUBLE_EQ(regular->lineHeight(), 125.7);
    EXPECT_NEAR(regular->capHeight(), 66, 1);
    EXPECT_NEAR(regular->xHeight(), 48.6, 1);
    EXPECT_EQ(regular->postScriptName(), "SourceSansPro-Regular");
    EXPECT_EQ(kitFont("SourceSansPro-Regular", 100), regular);
    EXPECT_NE(kitFont("SourceSansPro-Regular", 99), regular);
}

TEST_F(CTFontTest, findsRegisteredFontsByTheirExactNameOnly)
{
    ASSERT_TRUE(kitFont("SourceSansPro-SemiBold", 16));
    for (const char* name :
        { "sourcesanspro-semibold", "Source Sans Pro SemiBold", "SourceSansPro-Semi", "", "Inter-Regular", "Helvetica" })
        EXPECT_EQ(CTFont::named(name, 16), nullptr) << name;
    EXPECT_EQ(CTFont::named("SourceSansPro-SemiBold", NAN), nullptr);
}

TEST_F(CTFontTest, systemFontComesInEveryWeight)
{
    std::vector<std::string> names;
    for (const auto weight : { FontWeight::regular, FontWeight::medium, FontWeight::semibold, FontWeight::bold })
        names.push_back(CTFont::system(17, weight)->postScriptName());
    EXPECT_EQ(names, (std::vector<std::string> { "Inter-Regular", "Inter-Medium", "Inter-SemiBold", "Inter-Bold" }));
}

TEST_F(CTFontTest, refusesWhatIsNoFont)
{
    auto bytes = kitFontBytes("SourceSansPro-Regular");
    ASSERT_GT(bytes.size(), 1000u);
    EXPECT_EQ(CTFontManager::graphicsFont({}), nullptr);
    EXPECT_EQ(CTFontManager::graphicsFont(std::vector<std::uint8_t>(5000, 0x41)), nullptr);
    bytes.resize(300); // the table of contents without the tables
    EXPECT_EQ(CTFontManager::graphicsFont(bytes), nullptr);
    EXPECT_FALSE(CTFontManager::registerGraphicsFont(nullptr));
}

TEST_F(CTFontTest, readsAFileWhereItLies)
{
    const auto folder = Folders::executable() + "/MivoraUIKit.bundle/";
    kitFont("SourceSansPro-Regular", 16);
    const auto mapped = CTFontManager::graphicsFontOfFile(folder + "SourceSansPro-Regular.ttf");
    ASSERT_NE(mapped, nullptr);
    EXPECT_FALSE(CTFontManager::registerGraphicsFont(mapped)) << "it has the name of the one from bytes";
    for (const char* name : { "NoSuchFont.ttf", "images.txt", "" })
        EXPECT_EQ(CTFontManager::graphicsFontOfFile(folder + name), nullptr) << name;
}

TEST_F(CTFontTest, refusesASecondRegistration)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(registerInAFreshProcess(), ::testing::ExitedWithCode(0), "");
}

TEST_F(CTFontTest, drawsWithoutSystemFontsWithWhatThereIs)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(drawWithoutSystemFonts(true), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(drawWithoutSystemFonts(false), ::testing::ExitedWithCode(0), "");
}

TEST_F(CTFontTest, opensFallbackFontsInTheWantedWeight)
{
    auto text = paragraph("\xd9\x85"); // an Arabic letter
    const auto faceName = [&] { return layoutOf(text)->implementation().runs[0][0].face->postScriptName; };
    EXPECT_EQ(faceName(), "NotoSansArabic-Regular");
    text.font = kitFont("SourceSansPro-Bold", 16);
    EXPECT_EQ(faceName(), "NotoSansArabic-Bold");
}

} // namespace platform
