#include "Platform/Foundation/Bundle.h"

#include "Platform/Foundation/Locale.h"
#include "Tests/Platform/Foundation/MemoryDisk.h"
#include "Tests/Platform/Foundation/QuietTest.h"

namespace platform {

namespace {

class BundleTests : public QuietTest {
protected:
    void TearDown() override
    {
        Locale::setPreferredLanguages({});
        QuietTest::TearDown();
    }

    std::string text(std::string_view key) { return bundle.localizedString(key, "", "Texts"); }

    MemoryDisk disk;
    const Bundle bundle { "/app", disk };
};

} // namespace

TEST_F(BundleTests, readsCommentsEscapesAndPlainKeys)
{
    const StringTable table = parseStrings("\xef\xbb\xbf/* a comment\n over lines */\n"
                                           "\"mvLive\" = \"Live\"; // now\n"
                                           "plain.key-2=\"no quotes needed\";\n"
                                           "\"a \\\"quote\\\"\" = \"line\\nbreak \\\\ tab\\t\\U00e9\\ud83d\\ude00 'é'\";\n"
                                           "\"over\" = \"two\nlines\" ;\n"
                                           "\"mvLive\" = \"Live again\";\n"
                                           "\"comment\" /* in between */ = /* here too */ \"ok // not one\";",
        "test");
    EXPECT_EQ(table.at("mvLive"), "Live again");
    EXPECT_EQ(table.at("plain.key-2"), "no quotes needed");
    EXPECT_EQ(table.at("a \"quote\""), "line\nbreak \\ tab\té😀 'é'");
    EXPECT_EQ(table.at("over"), "two\nlines");
    EXPECT_EQ(table.at("comment"), "ok // not one");
    EXPECT_EQ(table.size(), 5u);
}

TEST_F(BundleTests, aBrokenFileKeepsWhatCameBeforeAndNamesTheLine)
{
    struct Case {
        const char* why;
        std::string rest; // from line 2 on
        int line;
    };
    const Case cases[] = {
        { "no semicolon", "\"b\" = \"2\"\n\"c\" = \"3\";", 3 },
        { "no equals sign", "\"b\" \"2\";", 2 },
        { "no value", "\"b\" = ;\n\"c\" = \"3\";", 2 },
        { "a text that ends at the next one's quote", "\"b\" = \"2;\n\n\"c\" = \"3\";", 4 },
        { "a text without end", "\n\"b\" = \"2;\n\n", 3 },
        { "a comment without end", "\n/* and so on\n\n", 3 },
        { "a lone backslash at the end", "\"b\" = \"\\", 2 },
        { "a bad escape", "\n\"b\" = \"\\U12\";", 3 },
        { "bytes that are not UTF-8", "\"b\" = \"\xff\";\n\"c\" = \"3\";", 2 },
        { "UTF-16", std::string("\0\"\0b\0\"", 6), 2 },
        { "ends after the key", "\"b\"\n", 3 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const StringTable table = parseStrings("\"a\" = \"1\";\n" + c.rest, "file.strings");
        EXPECT_EQ(table.size(), 1u);
        EXPECT_EQ(table.at("a"), "1");
        const auto lines = takeLines();
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_NE(lines.front().find("\"file.strings\""), std::string::npos) << lines.front();
        EXPECT_NE(lines.front().find("line " + std::to_string(c.line) + ":"), std::string::npos) << lines.front();
    }
}

TEST_F(BundleTests, takesTheBestLanguageThatHasTheTable)
{
    disk.put("/app/en.lproj/Texts.strings", "\"live\" = \"Live\"; \"only\" = \"English only\";");
    disk.put("/app/ar.lproj/Texts.strings", "\"live\" = \"مباشر\";");
    disk.put("/app/pt_BR.lproj/Texts.strings", "\"live\" = \"Ao vivo\";");
    disk.put("/app/zh-Hant.lproj/Texts.strings", "\"live\" = \"直播\";");

    const auto live = [&](std::vector<std::string> languages) {
        Locale::setPreferredLanguages(std::move(languages));
        return text("live");
    };
    EXPECT_EQ(live({ "ar-EG" }), "مباشر");
    EXPECT_EQ(live({ "pt-BR" }), "Ao vivo");
    EXPECT_EQ(live({ "pt-PT" }), "Live");
    EXPECT_EQ(live({ "fr", "zh_Hant_TW", "ar" }), "直播");
    EXPECT_EQ(live({ "fr-CA" }), "Live");
    EXPECT_EQ(live({ "../../etc", "" }), "Live");

    Locale::setPreferredLanguages({ "ar" });
    EXPECT_EQ(text("only"), "only") << "a key that the table lacks gives itself";
    EXPECT_EQ(bundle.localizedString("only", "a default", "Texts"), "a default");
}

TEST_F(BundleTests, withoutATableAKeyGivesItself)
{
    EXPECT_EQ(text("mvShare"), "mvShare");
    EXPECT_EQ(bundle.localizedString("mvShare", "", "../../secret"), "mvShare");
}

TEST_F(BundleTests, aBrokenTableIsReportedOnce)
{
    disk.put("/app/en.lproj/Texts.strings", "\"a\" = \"1\";\n\"b\" = 2");
    EXPECT_EQ(text("a"), "1");
    EXPECT_EQ(text("b"), "b");
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines.front().find("/app/en.lproj/Texts.strings"), std::string::npos);
}

TEST_F(BundleTests, findsResourcesInsideItselfOnly)
{
    disk.put("/app/heart.png", "plain");
    disk.put("/app/en.lproj/welcome.png", "english");
    disk.put("/secret.png", "secret");
    EXPECT_EQ(bundle.pathForResource("heart", "png"), "/app/heart.png");
    EXPECT_EQ(bundle.pathForResource("heart.png", ""), "/app/heart.png");
    EXPECT_EQ(bundle.contentsOfResource("welcome", "png"), dataFromText("english"));
    EXPECT_EQ(bundle.pathForResource("absent", "png"), std::nullopt);
    EXPECT_EQ(bundle.pathForResource("../secret", "png"), std::nullopt);
    EXPECT_EQ(bundle.pathForResource("/secret", "png"), std::nullopt);
    EXPECT_EQ(bundle.pathForResource("", "png"), std::nullopt);
}

} // namespace platform
