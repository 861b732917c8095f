#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIWindow.h"
#include "Showroom/Media/FrameCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <unistd.h>

namespace showroom {
namespace {

using namespace platform;
namespace frameCode = media::frameCode;

std::optional<int> numberIn(const Bitmap& bitmap)
{
    return frameCode::read(bitmap.row(0), bitmap.stride() / 4, bitmap.width(), bitmap.height());
}

// A code of cells of that width (pixels) somewhere in a grey picture, each pixel off by up to `noise`.
std::shared_ptr<Bitmap> pictureOf(const std::vector<bool>& cells, double cellWidth, int noise)
{
    const int width = int(cellWidth * double(cells.size())) + 60, height = 40;
    auto bitmap = Bitmap::make(width, height, PixelFormat::xrgb);
    std::minstd_rand random(7);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double light = 0;
            for (int part = 0; part < 8; ++part) { // a pixel may lie over two cells
                const double at = (x + (part + 0.5) / 8 - 31.3) / cellWidth;
                const bool isCode = y >= 14 && y < 26 && at >= 0 && at < double(cells.size());
                light += isCode ? (cells[std::size_t(at)] ? 235 : 18) : 130;
            }
            const auto level
                = std::uint32_t(std::clamp(int(light / 8) + int(random() % unsigned(2 * noise + 1)) - noise, 0, 255));
            bitmap->row(y)[x] = level << 16 | level << 8 | level;
        }
    }
    return bitmap;
}

TEST(FrameCode, isReadAtManySizes)
{
    for (const double cell : { 3.15, 3.55, 4.7, 5.33, 8.0, 16.0, 24.4 }) {
        for (const int number : { 0, 1, 2, 29, 1023, 1799, 2730, frameCode::highestNumber })
            EXPECT_EQ(numberIn(*pictureOf(frameCode::cells(number), cell, 12)), number) << "cells of " << cell;
    }
}

TEST(FrameCode, isNotReadWhenACellIsWrong)
{
    for (std::size_t wrong = 1; wrong + 1 < std::size_t(frameCode::cellCount); ++wrong) {
        auto cells = frameCode::cells(1234);
        cells[wrong] = !cells[wrong];
        EXPECT_EQ(numberIn(*pictureOf(cells, 6, 0)), std::nullopt) << "cell " << wrong;
    }
}

struct Screen {
    const char* name;
    HostDevice device;
    bool isLandscape;
};

class HostVideoTest : public testing::TestWithParam<Screen> { };

// As the broadcast screen shows it: over the whole screen, or over its left half in landscape; at one pixel a point.
TEST_P(HostVideoTest, tellsItsFramesOnEveryScreen)
{
    HostDevice device = GetParam().device;
    device.scale = 1;
    HeadlessHost host(device);
    if (GetParam().isLandscape)
        host.rotate(UIDeviceOrientation::landscapeLeft);
    auto window = make<UIWindow>();
    window->makeKeyAndVisible();
    host.advance(1);
    const CGSize size = host.device().size();
    auto layer = make<AVPlayerLayer>();
    layer->setVideoGravity(AVLayerVideoGravity::resizeAspectFill);
    layer->setMasksToBounds(true);
    layer->setFrame({ 0, 0, GetParam().isLandscape ? size.width / 2 : size.width, size.height });
    window->layer()->addSublayer(layer);
    auto player = make<AVPlayer>(make<AVPlayerItem>(URL::fileURL(Folders::executable() + "/Showroom.bundle/Videos/host.mp4")));
    layer->setPlayer(player);
    player->play();
    for (const double seconds : { 0.0, 0.02, 0.7, 1.0 / 30, 2.31 }) {
        host.advance(seconds);
        EXPECT_EQ(numberIn(host.pixels()), int(player->currentTime() * 30 + 1e-6));
    }
    EXPECT_EQ(player->currentItem()->presentationSize(), (CGSize { 720, 1280 }));
    EXPECT_GE(player->currentItem()->duration(), 60);
    player->seek(59.99);
    host.advance(0);
    EXPECT_EQ(numberIn(host.pixels()), 1799);
    layer->setPlayer(nullptr);
    layer->removeFromSuperlayer();
}

TEST(HostVideo, isHeard)
{
    const auto player
        = make<AVPlayer>(make<AVPlayerItem>(URL::fileURL(Folders::executable() + "/Showroom.bundle/Videos/host.mp4")));
    player->play();
    const RealClock clock;
    const double end = clock.now() + 10;
    double loudest = 0, softest = 1;
    for (int looks = 0; looks < 12 && clock.now() < end;) {
        MainQueue::shared().run(clock.now());
        usleep(100'000);
        if (player->timeControlStatus() != AVPlayerTimeControlStatus::playing)
            continue;
        const double peak = player->takeAudioPeak();
        if (looks++ < 2)
            continue; // not from its beginning
        loudest = std::max(loudest, peak);
        softest = std::min(softest, peak);
    }
    EXPECT_GT(loudest, 0.15);
    EXPECT_LT(loudest, 0.99);
    EXPECT_LT(softest, 0.7 * loudest) << "a mere tone";
}

INSTANTIATE_TEST_SUITE_P(Screens, HostVideoTest,
    testing::Values(Screen { "phone", HostDevice::phone(), false }, Screen { "phoneLandscape", HostDevice::phone(), true },
        Screen { "small", HostDevice::smallPhone(), false }, Screen { "smallLandscape", HostDevice::smallPhone(), true },
        Screen { "tablet", HostDevice::tablet(), false }, Screen { "tabletLandscape", HostDevice::tablet(), true }),
    [](const auto& screen) { return std::string(screen.param.name); });

} // namespace
} // namespace showroom
