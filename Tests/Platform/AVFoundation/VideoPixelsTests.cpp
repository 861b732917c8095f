#include "Platform/AVFoundation/VideoPixels.h"
#include "Platform/CoreGraphics/CGImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

namespace platform {
namespace {

// A picture whose samples a test gives by their places.
struct Picture {
    std::vector<std::uint8_t> y, u, v;
    VideoPlanes planes;

    using Sample = std::function<int(int x, int y)>;
    Picture(int width, int height, const Sample& light, int blue = 128, int red = 128)
        : u(std::size_t((width + 1) / 2 * ((height + 1) / 2)), std::uint8_t(blue))
        , v(u.size(), std::uint8_t(red))
    {
        for (int row = 0; row < height; ++row)
            for (int x = 0; x < width; ++x)
                y.push_back(std::uint8_t(light(x, row)));
        planes = { y.data(), u.data(), v.data(), width, (width + 1) / 2, (width + 1) / 2, width, height, true, true };
    }
    VideoPart whole() const { return { 0, 0, double(planes.width), double(planes.height) }; }
};

class StillFrame final : public VideoFrame {
public:
    explicit StillFrame(const VideoPlanes& planes) { planes_ = planes; }
};

std::shared_ptr<const Bitmap> drawVideo(const VideoPlanes& planes, const VideoPart& part, int width, int height)
{
    return CGImage::fromLazyPixels(std::make_shared<VideoPixels>(std::make_shared<StillFrame>(planes), part, width, height))
        ->pixels();
}

int greenAt(const Bitmap& bitmap, int x, int y) { return int(bitmap.row(y)[x] >> 8 & 255); }

// The standards' formula, in floating point.
std::uint32_t expectedColor(const VideoPlanes& planes, int y, int u, int v)
{
    const double kr = planes.isHighDefinition ? 0.2126 : 0.299, kb = planes.isHighDefinition ? 0.0722 : 0.114;
    const double light = planes.isFullRange ? y : (y - 16) * 255.0 / 219;
    const double scale = planes.isFullRange ? 1 : 255.0 / 224;
    const double cb = (u - 128) * scale, cr = (v - 128) * scale;
    const double red = light + 2 * (1 - kr) * cr, blue = light + 2 * (1 - kb) * cb;
    const double green = (light - kr * red - kb * blue) / (1 - kr - kb);
    const auto byte = [](double value) { return std::uint32_t(std::lround(std::clamp(value, 0.0, 255.0))); };
    return byte(red) << 16 | byte(green) << 8 | byte(blue);
}

TEST(VideoPixels, haveTheColoursOfTheStandards)
{
    int sum = 0, count = 0; // of what is off, either way
    for (const bool isHighDefinition : { false, true }) {
        for (const bool isFullRange : { false, true }) {
            for (const int y : { 0, 16, 60, 128, 200, 235, 255 }) {
                for (const int u : { 0, 16, 100, 128, 200, 240, 255 }) {
                    for (const int v : { 0, 16, 100, 128, 200, 240, 255 }) {
                        Picture picture(
                            16, 8, [y](int, int) { return y; }, u, v);
                        picture.planes.isHighDefinition = isHighDefinition;
                        picture.planes.isFullRange = isFullRange;
                        const auto drawn = drawVideo(picture.planes, picture.whole(), 24, 12);
                        const auto got = drawn->row(5)[11], wanted = expectedColor(picture.planes, y, u, v);
                        ASSERT_EQ(got >> 24, 255u);
                        for (const int shift : { 0, 8, 16 }) {
                            const int off = int(got >> shift & 255) - int(wanted >> shift & 255);
                            ASSERT_LE(std::abs(off), 1) << std::hex << got << " for " << wanted;
                            sum += off;
                            ++count;
                        }
                    }
                }
            }
        }
    }
    EXPECT_LT(std::abs(sum), count / 20) << "rounded, not cut";
}

TEST(VideoPixels, keepASlopeStraightAtEverySize)
{
    const Picture across(64, 32, [](int x, int) { return 3 * x + 20; });
    const Picture down(32, 64, [](int, int y) { return 3 * y + 20; });
    for (const int size : { 33, 64, 65, 100, 128, 301 }) {
        const auto wide = drawVideo(across.planes, across.whole(), size, 40);
        const auto high = drawVideo(down.planes, down.whole(), 40, size);
        for (int i = 0; i < size; ++i) {
            const double place = std::clamp((i + 0.5) * 64 / size - 0.5, 0.0, 63.0);
            ASSERT_NEAR(greenAt(*wide, i, 17), 3 * place + 20, 1.2) << size << ", " << i;
            ASSERT_NEAR(greenAt(*high, 17, i), 3 * place + 20, 1.2) << size << ", " << i;
        }
    }
}

// They lie between the rows of brightness, and on every second column.
TEST(VideoPixels, haveTheirColoursWhereTheyLie)
{
    Picture picture(64, 64, [](int, int) { return 100; });
    for (int i = 0; i < 32 * 32; ++i) {
        picture.u[std::size_t(i)] = std::uint8_t(128 + i / 32 * 2); // blue by rows
        picture.v[std::size_t(i)] = std::uint8_t(128 + i % 32 * 2); // red by columns
    }
    const auto drawn = drawVideo(picture.planes, picture.whole(), 192, 192);
    for (int i = 6; i < 186; ++i) {
        const double place = (i + 0.5) / 3 - 0.5; // of brightness
        EXPECT_NEAR(int(drawn->row(i)[90] & 255), 100 + 1.8556 * (place - 0.5), 0.8) << i;
        EXPECT_NEAR(int(drawn->row(90)[i] >> 16 & 255), 100 + 1.5748 * place, 0.8) << i;
    }
}

TEST(VideoPixels, showThePartThatIsAskedFor)
{
    const Picture picture(64, 48, [](int x, int y) { return x >= 16 && x < 48 && y >= 12 && y < 36 ? 220 : 30; });
    const auto drawn = drawVideo(picture.planes, { 16, 12, 32, 24 }, 96, 72);
    for (const auto& [x, y] : { std::pair(3, 3), std::pair(92, 3), std::pair(3, 68), std::pair(92, 68), std::pair(48, 36) })
        EXPECT_NEAR(greenAt(*drawn, x, y), 220, 1);
}

TEST(VideoPixels, meanWhatTheyShrink)
{
    const Picture board(240, 160, [](int x, int y) { return (x + y) % 2 ? 255 : 1; });
    const auto drawn = drawVideo(board.planes, board.whole(), 50, 32);
    for (int y = 2; y < 30; ++y)
        for (int x = 2; x < 48; ++x)
            ASSERT_NEAR(greenAt(*drawn, x, y), 128, 2);
}

// Whatever part of a picture is drawn, and after whatever other, it has the pixels of the whole.
TEST(VideoPixels, dependOnTheirPlacesAlone)
{
    Picture picture(90, 70, [](int x, int y) { return (x * 37 ^ y * 59) & 255; });
    for (std::size_t i = 0; i < picture.u.size(); ++i) {
        picture.u[i] = std::uint8_t(i * 101 >> 2);
        picture.v[i] = std::uint8_t(i * 57 >> 1);
    }
    const auto frame = std::make_shared<StillFrame>(picture.planes);
    struct Size {
        const char* why;
        int width, height;
    };
    for (const auto& [why, width, height] : { Size { "larger", 203, 157 }, Size { "as it is", 90, 70 },
             Size { "narrower", 62, 110 }, Size { "far narrower", 7, 150 }, Size { "halved twice", 21, 16 } }) {
        SCOPED_TRACE(why);
        const VideoPixels pixels(frame, { 1.3, 2.7, 86, 66 }, width, height);
        const auto whole = drawVideo(picture.planes, { 1.3, 2.7, 86, 66 }, width, height);
        const auto reader = pixels.reader();
        unsigned seed = 1;
        const auto below = [&](int end) { return int((seed = seed * 1664525 + 1013904223) >> 16) % end; };
        for (int piece = 0; piece < 60; ++piece) {
            const int x = below(width), y = below(height), count = 1 + below(width - x),
                      rows = 1 + below(std::min(height - y, 6));
            for (int row = y; row < y + rows; ++row) {
                std::vector<std::uint32_t> drawn(std::size_t(count) + 1, 0x12345678);
                reader->read(drawn.data(), x, row, count);
                ASSERT_TRUE(std::equal(drawn.begin(), drawn.end() - 1, whole->row(row) + x)) << x << ", " << row << ": " << count;
                ASSERT_EQ(drawn.back(), 0x12345678u) << "nothing beyond";
            }
        }
    }
}

TEST(VideoPixels, takeOddAndTinyPictures)
{
    for (const auto& [width, height] : { std::pair(1, 1), std::pair(2, 1), std::pair(3, 5), std::pair(17, 9) }) {
        const Picture picture(width, height, [](int, int) { return 90; });
        for (const int size : { 1, 2, 7, 64 }) {
            const auto drawn = drawVideo(picture.planes, picture.whole(), size, size);
            EXPECT_NEAR(greenAt(*drawn, size - 1, size - 1), 90, 1);
        }
    }
}

} // namespace
} // namespace platform
