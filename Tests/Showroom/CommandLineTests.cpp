#include "Showroom/CommandLine.h"

#include <gtest/gtest.h>

namespace showroom {
namespace {

TEST(CommandLine, readsASceneWithItsOptions)
{
    std::string problem;
    const auto line = CommandLine::parse({ "scene", "gallery", "--device", "tablet", "--orientation", "landscape", "--appearance",
                                             "dark", "--direction", "rtl", "--png", "a b.png", "--tree", "t.json" },
        problem);
    ASSERT_TRUE(line) << problem;
    EXPECT_EQ(line->scene, "gallery");
    EXPECT_EQ(line->device.name, "tablet");
    EXPECT_EQ(line->state.orientation, platform::UIDeviceOrientation::landscapeLeft);
    EXPECT_EQ(line->state.appearance, platform::UIUserInterfaceStyle::dark);
    EXPECT_EQ(line->state.direction, platform::UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_EQ(line->pictureFile, "a b.png");
    EXPECT_EQ(line->treeFile, "t.json");
    EXPECT_EQ(CommandLine::parse({}, problem)->command, CommandLine::Command::shop);
    EXPECT_EQ(CommandLine::parse({ "--appearance", "dark" }, problem)->command, CommandLine::Command::shop);
}

TEST(CommandLine, readsATourWithItsOptions)
{
    std::string problem;
    const auto line = CommandLine::parse({ "tour", "--video", "--out", "a b", "--device", "small" }, problem);
    ASSERT_TRUE(line) << problem;
    EXPECT_EQ(line->command, CommandLine::Command::tour);
    EXPECT_EQ(line->folder, "a b");
    EXPECT_TRUE(line->withFilm);
    EXPECT_EQ(line->device.name, "small");
    EXPECT_FALSE(line->isFast);
    EXPECT_FALSE(CommandLine::parse({ "tour" }, problem)->withFilm);
    EXPECT_TRUE(CommandLine::parse({ "tour", "--fast" }, problem)->isFast);
}

TEST(CommandLine, saysInOneLineWhatItCannotUnderstand)
{
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        { { "dance" }, "the command \"dance\" is not one of: help scene scenes tour" },
        { { "scene" }, "scene: which one? \"showroom scenes\" lists them" },
        { { "scene", "moon" }, "there is no scene \"moon\"; \"showroom scenes\" lists them" },
        { { "scene", "gallery", "--device", "watch" }, "--device \"watch\" is not one of: phone small tablet" },
        { { "scene", "gallery", "--appearance", "pink" }, "--appearance \"pink\" is not one of: dark light" },
        { { "scene", "gallery", "--png" }, "--png: a word is missing after it" },
        { { "tour", "--out" }, "--out: a word is missing after it" },
        { { "scene", "gallery", "--fast" }, "--fast: a word is missing after it" },
        { { "scene", "gallery", "--video" }, "--video: a word is missing after it" },
        { { "--out", "x" }, "\"--out\" is no option" },
        { { "--volume", "3" }, "\"--volume\" is no option" },
    };
    for (const auto& [words, expected] : cases) {
        std::string problem;
        EXPECT_FALSE(CommandLine::parse(words, problem));
        EXPECT_EQ(problem, expected);
    }
}

} // namespace
} // namespace showroom
