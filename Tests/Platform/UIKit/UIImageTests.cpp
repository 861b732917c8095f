#include "Platform/UIKit/UIImage.h"

#include "Platform/Foundation/NSLog.h"
#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// A bundle in a folder of its own, gone with it.
class UIImageInFolder : public ::testing::Test {
protected:
    void write(const std::string& name, std::string_view content)
    {
        FileSystem::real().write(joinPath(folder, name), dataFromText(content));
    }
    void writePicture(const std::string& name, int width, int height)
    {
        const auto pixels = Bitmap::make(width, height, PixelFormat::argb, true);
        ASSERT_TRUE(writePNG(*pixels, joinPath(folder, name)));
    }

    const test::TemporaryFolder files;
    const std::string& folder = files.path();
};

const char* const arrow = R"(<svg xmlns="http://www.w3.org/2000/svg" width="24" height="12"><path d="M0 0h12v12H0z"/></svg>)";

TEST_F(UIImageInFolder, isFoundByNameWhateverItsType)
{
    write("arrow.svg", arrow);
    writePicture("photo.png", 30, 20);
    const Bundle bundle(folder);
    const auto drawing = UIImage::named("arrow", bundle);
    ASSERT_TRUE(drawing);
    EXPECT_EQ(drawing->size(), (CGSize { 24, 12 }));
    EXPECT_TRUE(drawing->cgImage()->isDrawing());
    EXPECT_EQ(drawing->name(), "arrow");
    const auto photo = UIImage::named("photo.png", bundle);
    ASSERT_TRUE(photo);
    EXPECT_EQ(photo->size(), (CGSize { 30, 20 }));
}

TEST_F(UIImageInFolder, prefersTheFinestPixels)
{
    writePicture("photo.png", 30, 20);
    writePicture("photo@3x.png", 90, 60);
    const auto image = UIImage::named("photo", Bundle(folder));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->scale(), 3);
    EXPECT_EQ(image->size(), (CGSize { 30, 20 }));
}

TEST_F(UIImageInFolder, isAbsentWithoutAWordWhenThereIsNone)
{
    LogCapture log;
    EXPECT_FALSE(UIImage::named("nothing", Bundle(folder)));
    EXPECT_FALSE(UIImage::named("", Bundle(folder)));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(UIImageInFolder, isAbsentAfterOneLineWhenItCannotBeRead)
{
    write("broken.png", "this is no picture");
    LogCapture log;
    EXPECT_FALSE(UIImage::named("broken", Bundle(folder)));
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("broken.png"), std::string::npos) << log.lines()[0];
}

TEST_F(UIImageInFolder, isReadOnceAsLongAsSomebodyHoldsIt)
{
    write("arrow.svg", arrow);
    const Bundle bundle(folder);
    auto first = UIImage::named("arrow", bundle);
    ASSERT_TRUE(first);
    const std::weak_ptr<const UIImage> watcher = first;
    EXPECT_EQ(UIImage::named("arrow", Bundle(folder)), first);
    first.reset();
    EXPECT_TRUE(watcher.expired()) << "the cache itself holds nothing";
    std::filesystem::remove(joinPath(folder, "arrow.svg"));
    EXPECT_FALSE(UIImage::named("arrow", bundle));
}

TEST_F(UIImageInFolder, isATemplateWhenItsBundleSaysSo)
{
    write("images.txt", "# KIND NAME\ntemplate arrow\r\npicture heart\n");
    write("arrow.svg", arrow);
    write("heart.svg", arrow);
    const Bundle bundle(folder);
    const auto icon = UIImage::named("arrow", bundle);
    ASSERT_TRUE(icon);
    EXPECT_TRUE(icon->isTemplate());
    EXPECT_FALSE(icon->withRenderingMode(UIImageRenderingMode::alwaysOriginal)->isTemplate());
    const auto heart = UIImage::named("heart", bundle);
    EXPECT_FALSE(heart->isTemplate());
    EXPECT_TRUE(heart->withRenderingMode(UIImageRenderingMode::alwaysTemplate)->isTemplate());
}

TEST(UIImage, ofNothingHasNoSizeAndNoPicture)
{
    const UIImage empty;
    EXPECT_EQ(empty.size(), CGSize {});
    EXPECT_FALSE(empty.cgImage());
    EXPECT_FALSE(empty.imageFlippedForRightToLeftLayoutDirection()->cgImage(true));
}

TEST(UIImage, mirrorsOnlyWhatFlipsAndOnlyFromRightToLeft)
{
    auto pixels = Bitmap::make(3, 2, PixelFormat::argb, true);
    pixels->row(1)[0] = 0xffff0000;
    const UIImage plain(CGImage::fromBitmap(pixels));
    EXPECT_EQ(plain.cgImage(true), plain.cgImage());
    const auto turning = plain.imageFlippedForRightToLeftLayoutDirection();
    EXPECT_EQ(turning->cgImage(false), plain.cgImage());
    const auto mirrored = turning->cgImage(true);
    EXPECT_EQ(mirrored->pixels()->row(1)[2], 0xffff0000u);
    EXPECT_EQ(mirrored->pixels()->row(1)[0], 0u);
    EXPECT_EQ(turning->cgImage(true), mirrored) << "one mirror image serves every view";
}

TEST(UIImage, mirrorsADrawingAtTheSizeItIsShownIn)
{
    const UIImage image(*UIImage::fromData(dataFromText(arrow)));
    const auto mirrored = image.imageFlippedForRightToLeftLayoutDirection()->cgImage(true);
    const auto pixels = mirrored->rendered(48, 24);
    ASSERT_TRUE(pixels);
    EXPECT_EQ(pixels->row(12)[4] >> 24, 0u) << "the drawing's right half is empty";
    EXPECT_EQ(pixels->row(12)[40] >> 24, 255u);
}

TEST(UIImage, namesWhatCannotBeDecoded)
{
    LogCapture log;
    EXPECT_FALSE(UIImage::fromData({}, 1, "https://example.com/a.png"));
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("https://example.com/a.png"), std::string::npos);
}

} // namespace
} // namespace platform
