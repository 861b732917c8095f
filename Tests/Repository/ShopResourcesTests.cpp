#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> tableIn(const fs::path& file)
{
    static const std::regex line(R"re((^|\n)"([^"]+)" = "([^"\n]*)";)re");
    const std::string text = test::contentOf(file);
    std::map<std::string, std::string> table;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), line); match != std::sregex_iterator(); ++match)
        EXPECT_TRUE(table.emplace((*match)[2], (*match)[3]).second) << file << " has " << (*match)[2] << " twice";
    return table;
}

// What the first group of the pattern finds in the folder's files of those kinds.
std::set<std::string> findAll(const std::string& pattern, const fs::path& folder, const std::set<std::string>& extensions)
{
    const std::regex expression(pattern);
    std::set<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (extensions.count(entry.path().extension()) == 0)
            continue;
        const std::string text = test::contentOf(entry.path());
        for (auto match = std::sregex_iterator(text.begin(), text.end(), expression); match != std::sregex_iterator(); ++match)
            found.insert((*match)[1]);
    }
    return found;
}

TEST(ShopTexts, everyLanguageHasEveryTextThatTheKitShows)
{
    const fs::path root = MIVORA_SOURCE_DIR;
    std::map<std::string, std::map<std::string, std::string>> tables;
    for (const auto& entry : fs::directory_iterator(root / "Showroom/Resources")) {
        if (entry.path().extension() == ".lproj")
            tables[entry.path().stem()] = tableIn(entry.path() / "MVLocalizable.strings");
    }
    ASSERT_EQ(tables.count("en"), 1u);
    ASSERT_GE(tables.size(), 2u) << "one language more, written from right to left";

    std::set<std::string> wanted = findAll(R"re("(mv[A-Z][A-Za-z]*)")re", root / "UI", { ".cpp", ".h" });
    for (const auto& [key, text] : tables["en"])
        wanted.insert(key);
    EXPECT_GE(wanted.size(), 18u);
    for (const auto& [language, table] : tables) {
        for (const std::string& key : wanted) {
            const auto found = table.find(key);
            EXPECT_TRUE(found != table.end() && !found->second.empty()) << language << " lacks " << key;
        }
        EXPECT_LE(table.size(), wanted.size()) << language << " has texts that English lacks";
    }
}

TEST(ShopPictures, everyPictureThatTheShopShowsIsPainted)
{
    const fs::path root = MIVORA_SOURCE_DIR;
    const auto shown = findAll(R"re(Pictures/([A-Za-z-]+)\.jpg)re", root / "Showroom/Resources", { ".json" });
    const auto painted = findAll(R"re("name": "([a-z-]+)", "(object|head|backdrop)")re", root / "Showroom/Media", { ".json" });
    EXPECT_FALSE(shown.empty());
    for (const std::string& name : shown)
        EXPECT_EQ(painted.count(name), 1u) << name << " is in no list of pictures.json";
}

} // namespace
