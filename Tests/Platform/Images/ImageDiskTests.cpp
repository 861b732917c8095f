#include "Platform/Images/ImageDisk.h"

#include "Tests/Platform/Images/ImagesTest.h"

#include <thread>

namespace platform {
namespace {

class ImageDiskTest : public ImagesTest {
protected:
    static KeptAnswer answer(std::size_t size, char byte = 'x')
    {
        return { std::make_shared<const Data>(dataFromText(std::string(size, byte))), "\"tag\"", "Mon", 2e9 };
    }
    std::size_t fileCount() const
    {
        const std::filesystem::directory_iterator files(place);
        return std::size_t(std::distance(begin(files), end(files)));
    }

    const std::string place = folder + "/disk";
};

TEST_F(ImageDiskTest, returnsWhatWasWrittenAlsoAfterARestart)
{
    ImageDisk(place, 10'000).write("http://a/1", answer(100));
    ImageDisk disk(place, 10'000);
    const auto found = disk.read("http://a/1");
    ASSERT_TRUE(found);
    EXPECT_EQ(*found->bytes, *answer(100).bytes);
    EXPECT_EQ(found->etag, "\"tag\"");
    EXPECT_EQ(found->lastModified, "Mon");
    EXPECT_EQ(found->freshUntil, 2e9);
    EXPECT_FALSE(disk.read("http://a/2"));
    disk.write("http://a/1", answer(50, 'y'));
    EXPECT_EQ(disk.read("http://a/1")->bytes->size(), 50u);
    disk.write("http://a/\n", answer(50));
    EXPECT_FALSE(disk.read("http://a/\n")) << "would break its file's lines";
}

TEST_F(ImageDiskTest, dropsWhatWasUsedLongestAgo)
{
    const auto address = [](int i) { return "http://a/" + std::to_string(i); };
    {
        ImageDisk disk(place, 5000);
        for (int i = 0; i < 4; ++i) {
            disk.write(address(i), answer(1000));
            std::this_thread::sleep_for(std::chrono::milliseconds(12)); // files' times come in ticks
        }
        EXPECT_TRUE(disk.read(address(0)));
        disk.write("http://a/huge", answer(4000));
        EXPECT_FALSE(disk.read("http://a/huge"));
    }
    ImageDisk disk(place, 5000);
    disk.write(address(4), answer(1000));
    EXPECT_FALSE(disk.read(address(1)));
    for (const int kept : { 0, 2, 3, 4 })
        EXPECT_TRUE(disk.read(address(kept))) << kept;
    EXPECT_EQ(fileCount(), 4u);
}

TEST_F(ImageDiskTest, aDamagedFileCountsAsNone)
{
    ImageDisk disk(place, 10'000);
    disk.write("http://a/1", answer(100));
    const auto path = std::filesystem::directory_iterator(place)->path();
    const auto whole = test::contentOf(path);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        auto cut = whole.substr(0, i);
        auto flipped = whole;
        flipped[i] ^= 0x20;
        for (const auto& damaged : { cut, flipped }) {
            std::ofstream(path, std::ios::binary) << damaged;
            const auto found = disk.read("http://a/1");
            EXPECT_TRUE(!found || *found->bytes == *answer(100).bytes) << "at " << i;
        }
    }
    std::filesystem::remove_all(place);
    EXPECT_FALSE(disk.read("http://a/1")) << "anyone may empty the folder";
    disk.write("http://a/1", answer(100));
    EXPECT_TRUE(disk.read("http://a/1"));
}

} // namespace
} // namespace platform
