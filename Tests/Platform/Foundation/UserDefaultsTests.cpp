#include "Platform/Foundation/UserDefaults.h"

#include "Tests/Platform/Foundation/MemoryDisk.h"
#include "Tests/Platform/Foundation/QuietTest.h"
#include "Tests/Support/TemporaryFolder.h"

#include <cmath>

namespace platform {

namespace {

constexpr const char* file = "/data/UserDefaults.json";

class UserDefaultsTests : public QuietTest {
protected:
    MemoryDisk disk;
};

} // namespace

TEST_F(UserDefaultsTests, everyTypeComesBackAsItWas)
{
    UserDefaults defaults(file, disk);
    const std::pair<const char*, UserDefaults::Value> values[] = { { "text", "h\xc3\xa9llo \"quoted\"\n" }, { "flag", true },
        { "integer", 9007199254740993 }, { "small integer", 7 }, { "whole number", 2.0 }, { "number", 0.1 },
        { "data", Data { 0, 255, 10, 128 } }, { "empty data", Data {} }, { "", "the empty key" } };
    for (const auto& [key, value] : values)
        defaults.set(key, value);
    const UserDefaults again(file, disk);
    for (const auto& [key, value] : values)
        EXPECT_EQ(again.object(key), value) << key;
    EXPECT_EQ(again.boolean("flag"), true);
    EXPECT_EQ(again.object("absent"), std::nullopt);
}

TEST_F(UserDefaultsTests, aValueOfAnotherTypeReadsAsNone)
{
    UserDefaults defaults(file, disk);
    defaults.set("broadcast", "a text");
    EXPECT_EQ(defaults.data("broadcast"), std::nullopt);
    EXPECT_EQ(defaults.boolean("broadcast"), std::nullopt);
    EXPECT_EQ(defaults.number("broadcast"), std::nullopt);
}

TEST_F(UserDefaultsTests, replacesAndRemoves)
{
    UserDefaults defaults(file, disk);
    defaults.set("key", "one");
    defaults.set("key", 2);
    defaults.set("other", 3);
    EXPECT_EQ(UserDefaults(file, disk).integer("key"), 2);
    defaults.removeObject("key");
    defaults.removeObject("never there");
    EXPECT_EQ(UserDefaults(file, disk).object("key"), std::nullopt);
    EXPECT_EQ(UserDefaults(file, disk).integer("other"), 3);
}

TEST_F(UserDefaultsTests, readsNothingBeforeItIsAsked)
{
    disk.put(file, "damaged");
    UserDefaults defaults(file, disk); // would say so, had it read the file
}

TEST_F(UserDefaultsTests, killedAnywhereItHasTheOldOrTheNewContent)
{
    using Moment = MemoryDisk::Moment;
    MemoryDisk before;
    {
        UserDefaults defaults(file, before);
        defaults.set("kept", "always here");
        defaults.set("changed", "old");
    }
    const std::string oldFile = before.contentOf(file);

    int kills = 0;
    bool sawOld = false;
    bool sawNew = false;
    for (int step = 1, survived = 0; !survived; ++step) {
        for (const auto moment : { Moment::before, Moment::halfway, Moment::after }) {
            SCOPED_TRACE("step " + std::to_string(step) + ", moment " + std::to_string(static_cast<int>(moment)));
            MemoryDisk running;
            running.put(file, oldFile);
            UserDefaults defaults(file, running);
            EXPECT_EQ(defaults.string("changed"), "old");
            running.killAt(step, moment);
            try {
                defaults.set("changed", "new");
                survived = 1;
                running.killAt(0, Moment::after);
            } catch (MemoryDisk::Killed) {
                ++kills;
            }
            running.killAt(0, Moment::after);

            std::vector<MemoryDisk> next { running }; // the process alone ended, or the machine with it
            for (const auto names : { MemoryDisk::Names::asFlushed, MemoryDisk::Names::asLastChanged }) {
                for (const auto bytes : { MemoryDisk::Bytes::lost, MemoryDisk::Bytes::torn, MemoryDisk::Bytes::kept })
                    next.push_back(running.afterPowerCut(names, bytes));
            }
            for (MemoryDisk& found : next) {
                UserDefaults reopened(file, found);
                const auto changed = reopened.string("changed");
                EXPECT_TRUE(changed == "old" || changed == "new") << changed.value_or("(none)");
                EXPECT_EQ(reopened.string("kept"), "always here");
                sawOld = sawOld || changed == "old";
                sawNew = sawNew || changed == "new";
                EXPECT_TRUE(!survived || changed == "new") << "what was stored before a power cut must be there after it";
                reopened.set("changed", "after all"); // and goes on working
                EXPECT_EQ(UserDefaults(file, found).string("changed"), "after all");
            }
        }
    }
    EXPECT_GE(kills, 4 * 3) << "write, flush, rename and the folder's flush";
    EXPECT_TRUE(sawOld && sawNew);
}

TEST_F(UserDefaultsTests, aDamagedFileIsSetAsideWithOneLine)
{
    const char* damaged[] = { "", "{", "[]", "{\"format\": \"another\", \"values\": {}}", "\xff\xfe\0\0",
        "{\"format\": \"mivora user defaults 1\", \"values\": {\"a\": {\"data\": \"not base64\"}}}",
        "{\"format\": \"mivora user defaults 1\", \"values\": {\"a\": [1]}}" };
    int count = 0;
    for (const char* content : damaged) {
        SCOPED_TRACE(content);
        disk.put(file, content);
        UserDefaults defaults(file, disk);
        EXPECT_EQ(defaults.object("a"), std::nullopt);
        EXPECT_EQ(defaults.object("a"), std::nullopt);
        const auto lines = takeLines();
        ASSERT_EQ(lines.size(), 1u);
        const std::string aside = std::string(file) + ".damaged" + (++count == 1 ? "" : "-" + std::to_string(count));
        EXPECT_NE(lines.front().find("\"" + aside + "\""), std::string::npos) << lines.front();
        EXPECT_EQ(disk.contentOf(aside), content) << "nothing may be lost";
        defaults.set("a", 1);
        EXPECT_EQ(UserDefaults(file, disk).integer("a"), 1);
    }
}

TEST_F(UserDefaultsTests, aFileThatCanNeitherBeReadNorMovedIsNotOverwritten)
{
    disk.put(file, "precious");
    disk.unreadable.insert(file);
    disk.fails = true;
    UserDefaults defaults(file, disk);
    defaults.set("a", 1);
    EXPECT_EQ(takeLines().size(), 1u);
    disk.fails = false;
    disk.unreadable.clear();
    defaults.set("a", 2);
    EXPECT_EQ(defaults.integer("a"), 2);
    EXPECT_EQ(disk.contentOf(file), "precious");
}

TEST_F(UserDefaultsTests, aFullDiskIsSaidAndTheValueHoldsForTheProcess)
{
    UserDefaults defaults(file, disk);
    defaults.set("a", 1);
    disk.fails = true;
    defaults.set("a", 2);
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(defaults.integer("a"), 2);
    disk.fails = false;
    EXPECT_EQ(UserDefaults(file, disk).integer("a"), 1);
    defaults.set("b", 3); // the next change that can be written takes it along
    EXPECT_EQ(UserDefaults(file, disk).integer("a"), 2);
}

TEST_F(UserDefaultsTests, refusesWhatHasNoPlaceInTheFile)
{
    UserDefaults defaults(file, disk);
    defaults.set("number", 1.5);
    defaults.set("number", std::nan(""));
    EXPECT_EQ(takeLines().size(), 1u);
    EXPECT_EQ(defaults.number("number"), 1.5);
    defaults.set("bad \xff key", "bad \xc3 text");
    EXPECT_EQ(UserDefaults(file, disk).string("bad \xff key"), "bad \xef\xbf\xbd text");
}

TEST_F(UserDefaultsTests, livesInARealFolderThatItMakes)
{
    const test::TemporaryFolder folder;
    const std::string path = folder / "deep/Defaults.json";
    UserDefaults(path, FileSystem::real()).set("key", Data { 1, 2 });
    EXPECT_EQ(UserDefaults(path, FileSystem::real()).data("key"), (Data { 1, 2 }));
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

} // namespace platform
