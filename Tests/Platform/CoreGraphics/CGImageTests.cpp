#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/Data.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

#include <filesystem>

namespace platform {
using testing::fileBytes;
using testing::hex;

namespace {
// 24 by 16 pixels: red up to x = 16, then blue.
constexpr auto smallJPEG = "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDABALDA4MChAODQ4SERATGCgaGBYWGDEjJR0oOjM9PDkzODdASFxOQERXRTc4UG1RV19i"
                           "Z2hnPk1xeXBkeFxlZ2P/2wBDARESEhgVGC8aGi9jQjhCY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2NjY2Nj"
                           "Y2NjY2NjY2P/wAARCAAQABgDASIAAhEBAxEB/8QAFQABAQAAAAAAAAAAAAAAAAAAAAX/xAAUEAEAAAAAAAAAAAAAAAAAAAAA/8QA"
                           "FgEBAQEAAAAAAAAAAAAAAAAABwUG/8QAFBEBAAAAAAAAAAAAAAAAAAAAAP/aAAwDAQACEQMRAD8AigJbeI4BQHL/2Q==";
constexpr auto smallSVG = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 20 10">)"
                          R"(<rect width="10" height="10" fill="#ff0000"/></svg>)";

class CGImageTest : public QuietTest {
protected:
    ~CGImageTest() override { std::filesystem::remove(path); }

    // Decoding must fail and leave one line that names the input.
    void expectRefused(const std::vector<std::uint8_t>& bytes, const std::string& why)
    {
        EXPECT_EQ(CGImage::decode(bytes, "some.file"), nullptr) << why;
        const auto lines = takeLines();
        ASSERT_EQ(lines.size(), 1u) << why;
        EXPECT_TRUE(lines[0].starts_with("image \"some.file\" not shown: ")) << lines[0];
    }

    void expectEveryShorteningRefused(const std::vector<std::uint8_t>& bytes)
    {
        for (std::size_t length = 0; length < bytes.size(); ++length)
            expectRefused({ bytes.begin(), bytes.begin() + std::ptrdiff_t(length) }, std::to_string(length) + " bytes");
    }

    const std::string path = ::testing::TempDir() + "mivora_image.png";
};

std::shared_ptr<Bitmap> testPicture(PixelFormat format)
{
    auto bitmap = Bitmap::make(37, 11, format);
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 37; ++x) {
            const auto value = std::uint32_t(x * 7);
            if (format == PixelFormat::alpha)
                bitmap->alphaRow(y)[x] = std::uint8_t(value);
            else
                bitmap->row(y)[x] = 0xff000000 | value << 16 | std::uint32_t(y * 20) << 8 | 0x40;
        }
    }
    if (format == PixelFormat::argb) {
        bitmap->row(0)[0] = 0;
        bitmap->row(0)[1] = 0x80400000; // half transparent
    }
    return bitmap;
}
}

TEST_F(CGImageTest, pngComesBackAsItWasWritten)
{
    for (const auto format : { PixelFormat::argb, PixelFormat::xrgb }) {
        const auto written = testPicture(format);
        ASSERT_TRUE(writePNG(*written, path));
        const auto image = CGImage::decode(fileBytes(path), "round trip");
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->isOpaque(), format == PixelFormat::xrgb);
        ASSERT_EQ(image->width(), 37);
        for (int y = 0; y < 11; ++y) {
            for (int x = 0; x < 37; ++x)
                ASSERT_EQ(hex(image->pixels()->row(y)[x] | (image->isOpaque() ? 0xff000000 : 0)), hex(written->row(y)[x]))
                    << x << " " << y;
        }
    }
}

TEST_F(CGImageTest, coverageIsWrittenGreyAndBecomesABlackPicture)
{
    const auto written = testPicture(PixelFormat::alpha);
    ASSERT_TRUE(writePNG(*written, path));
    EXPECT_EQ(CGImage::decode(fileBytes(path), "grey")->pixels()->row(3)[5] & 0xffffff, 0x232323u);
    EXPECT_EQ(hex(CGImage::fromBitmap(written)->pixels()->row(3)[5]), "23000000");
}

TEST_F(CGImageTest, readsJPEG)
{
    const auto image = CGImage::decode(*dataFromBase64(smallJPEG), "small.jpg");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->width(), 24);
    EXPECT_TRUE(image->isOpaque());
    const auto left = image->pixels()->row(8)[2], right = image->pixels()->row(8)[22];
    EXPECT_GT((left >> 16) & 255, 240u);
    EXPECT_LT(left & 255, 15u);
    EXPECT_GT(right & 255, 240u);
}

TEST_F(CGImageTest, unpacksAJPEGNoFinerThanNeeded)
{
    const auto bytes = *dataFromBase64(smallJPEG);
    const auto whole = CGImage::decode(bytes, "small.jpg");
    const int width = int(whole->width()), height = int(whole->height());
    const auto sizeFor = [&](int wanted, int high) {
        const auto image = CGImage::decode(bytes, "small.jpg", PixelSize { wanted, high });
        return std::pair(image->width(), image->height());
    };
    EXPECT_EQ(sizeFor(width / 2, height / 2), std::pair(width / 2.0, height / 2.0));
    EXPECT_EQ(sizeFor(width / 2 + 1, 1), std::pair(double(width), double(height)));
    EXPECT_EQ(sizeFor(1, height / 2 + 1), std::pair(double(width), double(height)));
    EXPECT_EQ(sizeFor(4000, 4000), std::pair(double(width), double(height)));
    EXPECT_EQ(sizeFor(1, 1), std::pair(width / 8.0, height / 8.0));
}

TEST_F(CGImageTest, drawsSVGAtAnySize)
{
    const auto image = CGImage::decode(dataFromText(smallSVG), "small.svg");
    ASSERT_NE(image, nullptr);
    EXPECT_TRUE(image->isDrawing());
    EXPECT_EQ(image->width(), 20);
    EXPECT_EQ(image->height(), 10);
    for (const int scale : { 1, 3, 7 }) {
        const auto picture = image->rendered(20 * scale, 10 * scale);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(hex(picture->row(5 * scale)[10 * scale - 1]), "ffff0000");
        EXPECT_EQ(hex(picture->row(5 * scale)[10 * scale]), "00000000"); // a sharp edge at every size
    }
    EXPECT_EQ(hex(image->rendered(10, 30)->row(29)[4]), "ffff0000"); // stretched
    EXPECT_EQ(image->rendered(0, 10), nullptr);
    EXPECT_EQ(image->rendered(20000, 20000), nullptr);
}

TEST_F(CGImageTest, refusesWhatBreaksOffAtAnyPlace)
{
    ASSERT_TRUE(writePNG(*testPicture(PixelFormat::argb), path));
    expectEveryShorteningRefused(fileBytes(path));
    expectEveryShorteningRefused(*dataFromBase64(smallJPEG));
    expectEveryShorteningRefused(dataFromText(smallSVG));
}

TEST_F(CGImageTest, refusesWhatIsBrokenOrTooLarge)
{
    ASSERT_TRUE(writePNG(*testPicture(PixelFormat::argb), path));
    auto png = fileBytes(path);
    auto damaged = png;
    damaged[60] ^= 0xff; // inside the compressed rows
    expectRefused(damaged, "damaged rows");
    png[16] = 0x7f; // the header's width
    expectRefused(png, "a width of two thousand million");
    auto jpeg = *dataFromBase64(smallJPEG);
    for (std::size_t i = 0; i + 1 < jpeg.size(); ++i) {
        if (jpeg[i] == 0xff && jpeg[i + 1] == 0xc0) { // the frame header: height and width 5 bytes on
            jpeg[i + 5] = jpeg[i + 7] = 0xff;
            break;
        }
    }
    expectRefused(jpeg, "65,296 by 65,304 pixels");
    expectRefused(dataFromText("GIF89a and so on"), "another format");
    expectRefused(dataFromText("<html>no <svgs></html>"), "not quite an SVG");
}

TEST_F(CGImageTest, saysWhenAPictureCannotBeWritten)
{
    EXPECT_FALSE(writePNG(*testPicture(PixelFormat::xrgb), "/nowhere/at/all.png"));
    const auto lines = takeLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].starts_with("picture \"/nowhere/at/all.png\" not written: ")) << lines[0];
}

TEST_F(CGImageTest, everyImageHasItsOwnId)
{
    const auto pixels = testPicture(PixelFormat::argb);
    const auto first = CGImage::fromBitmap(pixels), second = CGImage::fromBitmap(pixels);
    EXPECT_NE(first->id(), second->id());
    EXPECT_EQ(first->rendered(37, 11), pixels); // its own size costs nothing
    EXPECT_EQ(CGImage::fromBitmap(nullptr), nullptr);
}

} // namespace platform
