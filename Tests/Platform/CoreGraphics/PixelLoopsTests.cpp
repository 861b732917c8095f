#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/CoreGraphics/CoverageBlur.h"
#include "Platform/CoreGraphics/Ramp.h"
#include "Platform/CoreGraphics/Resampling.h"
#include "Tests/Platform/CoreGraphics/GraphicsTestSupport.h"

namespace platform {
using testing::hex;

namespace {
unsigned channel(std::uint32_t word, int index) { return (word >> (8 * index)) & 255; }

std::shared_ptr<Bitmap> filled(int width, int height, std::uint32_t word)
{
    auto bitmap = Bitmap::make(width, height, PixelFormat::argb);
    for (int y = 0; y < height; ++y)
        pixels::fill(bitmap->row(y), width, word);
    return bitmap;
}
}

TEST(PixelLoops, blendEveryCoverageNearTheExactValue)
{
    const CGColor color { 0.8, 0.4, 0.1, 0.7 };
    const std::uint32_t word = pixels::premultiplied(color);
    std::vector<std::uint8_t> coverage(256);
    for (std::size_t i = 0; i < 256; ++i)
        coverage[i] = std::uint8_t(i);
    const auto target = filled(256, 1, 0xff3366cc);
    pixels::blendCoverage(*target, target->bounds(), { coverage.data(), 256, 256, 1 }, 0, 0, word);
    for (int x = 0; x < 256; ++x) {
        for (int c = 0; c < 4; ++c) {
            const double part = x / 255.0;
            const double exact = channel(word, c) * part + channel(0xff3366cc, c) * (1 - channel(word, 3) / 255.0 * part);
            ASSERT_NEAR(channel(target->row(0)[x], c), exact, 1.1) << "coverage " << x << " channel " << c;
        }
    }
    EXPECT_EQ(hex(target->row(0)[0]), "ff3366cc");
}

TEST(PixelLoops, stayInsideTheClip)
{
    const auto target = filled(40, 10, 0xff000000);
    const std::vector<std::uint8_t> full(100 * 100, 255);
    pixels::blendCoverage(*target, { 10, 2, 20, 5 }, { full.data(), 100, 100, 100 }, -30, -30, 0xffffffff);
    pixels::blendPixels(*target, { 0, 9, 3, 1 }, *filled(100, 100, 0xff0000ff), -50, -50);
    int white = 0, blue = 0;
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool inside = PixelRect { 10, 2, 20, 5 }.contains({ x, y, 1, 1 });
            white += target->row(y)[x] == 0xffffffff && inside;
            blue += target->row(y)[x] == 0xff0000ff && y == 9 && x < 3;
        }
    }
    EXPECT_EQ(white, 100);
    EXPECT_EQ(blue, 3);
}

TEST(PixelLoops, treatASourceWithoutAlphaAsOpaque)
{
    const auto source = Bitmap::make(8, 1, PixelFormat::xrgb);
    pixels::fill(source->row(0), 8, 0x00102030); // whatever stands where alpha would
    const auto target = filled(8, 1, 0xffffffff);
    pixels::blendPixels(*target, target->bounds(), *source, 0, 0);
    EXPECT_EQ(hex(target->row(0)[7]), "ff102030");
    pixels::blendPixels(*target, target->bounds(), *filled(8, 1, 0x80800000), 0, 0, 128); // a quarter red
    EXPECT_NEAR(channel(target->row(0)[7], 2), 0x10 * 0.75 + 64, 1);
}

TEST(PixelLoops, blurKeepsTheSumAndHasTheGaussiansWidth)
{
    for (const double sigma : { 0.8, 1.5, 2.9, 3.1, 6.0, 15.0 }) {
        SCOPED_TRACE(sigma);
        const int size = int(sigma * 8) + 42, middle = size / 2;
        const auto bitmap = Bitmap::make(size, size, PixelFormat::alpha, true);
        for (int y = middle - 10; y <= middle + 10; ++y)
            std::fill_n(bitmap->alphaRow(y) + middle - 10, 21, std::uint8_t(255));
        pixels::blurCoverage(*bitmap, sigma);
        double sum = 0, variance = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                sum += bitmap->alphaRow(y)[x];
                variance += bitmap->alphaRow(y)[x] * double(x - middle) * (x - middle);
                ASSERT_EQ(bitmap->alphaRow(y)[x], bitmap->alphaRow(y)[2 * middle - x < size ? 2 * middle - x : x]) << "not even";
            }
        }
        EXPECT_NEAR(sum / (441 * 255), 1, 0.03);
        const double square = (21.0 * 21 - 1) / 12; // the variance of what was blurred
        EXPECT_NEAR(std::sqrt(variance / sum - square), sigma, 0.12 * sigma + 0.1);
    }
}

TEST(PixelLoops, resamplingKeepsPlainColoursAndAverages)
{
    for (const auto& [width, height] : { std::pair { 7, 5 }, { 100, 3 }, { 33, 200 }, { 250, 250 }, { 1, 1 } }) {
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
        const auto plain = pixels::resampled(*filled(101, 67, 0xff80c0fe), width, height);
        ASSERT_EQ(plain->width(), width);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(hex(plain->row(y)[x]), "ff80c0fe");
        }
        // Left half black, right half white: the mean stays, and shrinking invents no order of its own.
        const auto halves = filled(128, 64, 0xff000000);
        for (int y = 0; y < 64; ++y)
            pixels::fill(halves->row(y) + 64, 64, 0xffffffff);
        const auto scaled = pixels::resampled(*halves, width, height);
        double sum = 0;
        for (int x = 0; x < width; ++x) {
            sum += channel(scaled->row(height / 2)[x], 1);
            if (x > 0) {
                ASSERT_GE(channel(scaled->row(0)[x], 1), channel(scaled->row(0)[x - 1], 1));
            }
        }
        EXPECT_NEAR(sum / width, 127.5, 2);
    }
}

TEST(PixelLoops, premultiplyingAndBackLosesAtMostWhatAlphaHides)
{
    for (unsigned alpha = 0; alpha <= 255; alpha += 5) {
        std::uint32_t word = alpha << 24 | 0x00c86432;
        pixels::premultiply(&word, 1);
        for (int c = 0; c < 3; ++c)
            ASSERT_LE(channel(word, c), alpha);
        pixels::unpremultiply(&word, 1);
        if (alpha >= 50) {
            EXPECT_NEAR(channel(word, 2), 0xc8, 255.0 / alpha);
        }
    }
}

TEST(Ramp, goesThroughItsColoursAndStaysConstantBeyond)
{
    const pixels::Ramp ramp({ { 1, 0, 0, 1 }, { 0, 1, 0, 1 }, { 0, 0, 1, 1 } }, { 0, 0.25, 1 });
    EXPECT_TRUE(ramp.isOpaque());
    std::uint32_t row[401];
    ramp.fillRow(row, 401, -0.5, 1.0 / 200); // from -0.5 to 1.5
    EXPECT_EQ(hex(row[0]), "ffff0000");
    EXPECT_EQ(hex(row[100]), "ffff0000");
    EXPECT_EQ(hex(row[400]), "ff0000ff");
    EXPECT_GE(channel(row[150], 1), 253u); // 0.25: green
    for (int i = 101; i <= 150; ++i)
        ASSERT_LE(int(channel(row[i - 1], 2)) - int(channel(row[i], 2)), 7) << "a step in red at " << i;
    // Backwards it is the mirror image.
    std::uint32_t back[401];
    ramp.fillRow(back, 401, 1.5, -1.0 / 200);
    for (int i = 0; i < 401; ++i)
        ASSERT_NEAR(channel(row[i], 2), channel(back[400 - i], 2), 2) << i;
}

} // namespace platform
