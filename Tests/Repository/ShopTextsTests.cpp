#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::map<std::string, std::string> tableIn(const fs::path& file)
{
    static const std::regex line(R"re((^|\n)"([^"]+)" = "([^"\n]*)";)re");
    const std::string text = contentOf(file);
    std::map<std::string, std::string> table;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), line); match != std::sregex_iterator(); ++match)
        EXPECT_TRUE(table.emplace((*match)[2], (*match)[3]).second) << file << " has " << (*match)[2] << " twice";
    return table;
}

// The keys that the kit looks up.
std::set<std::string> keysInSources(const fs::path& folder)
{
    static const std::regex key(R"re("(mv[A-Z][A-Za-z]*)")re");
    std::set<std::string> keys;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h")
            continue;
        const std::string text = contentOf(entry.path());
        for (auto match = std::sregex_iterator(text.begin(), text.end(), key); match != std::sregex_iterator(); ++match)
            keys.insert((*match)[1]);
    }
    return keys;
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

    std::set<std::string> wanted = keysInSources(root / "UI");
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

} // namespace
