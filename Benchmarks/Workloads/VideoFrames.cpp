#include "Benchmarks/Workloads/VideoFrames.h"

#include "Benchmarks/Measure.h"
#include "Benchmarks/Workloads/PlayingVideo.h"
#include "Platform/AVFoundation/VideoRows.h"
#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIWindow.h"

#include <cstdint>
#include <vector>

namespace bench {

using namespace platform;

namespace {

// Plays so many frames, a screen frame each, in a layer over the whole screen or in none.
double costOfPlaying(int frames, bool isShown)
{
    HeadlessHost host;
    const auto window = make<UIWindow>();
    window->makeKeyAndVisible();
    const PlayingVideo video(isShown ? window.get() : nullptr);
    return measureFrames(frames, 10, [&](int) { host.advance(PlayingVideo::secondsAFrame); }).cpuPerFrame;
}

double costOfConverting(int frames)
{
    constexpr int width = 720, height = 1280, screenWidth = 1179, screenHeight = 2556;
    std::vector<std::uint8_t> y(width * height), u(width * height / 4), v(width * height / 4);
    for (std::size_t i = 0; i < y.size(); ++i)
        y[i] = std::uint8_t(i * 31 >> 3);
    for (std::size_t i = 0; i < u.size(); ++i)
        u[i] = std::uint8_t(i * 7), v[i] = std::uint8_t(i * 13);
    const VideoPlanes planes { y.data(), u.data(), v.data(), width, width / 2, width / 2, width, height, true, false };
    const double shown = double(screenWidth) * height / screenHeight;
    const VideoPart part { (width - shown) / 2, 0, shown, height };
    const auto picture = Bitmap::make(screenWidth, screenHeight, PixelFormat::xrgb);
    const auto convert = [&] {
        VideoRows rows(planes, part, screenWidth, screenHeight);
        for (int row = 0; row < screenHeight; ++row)
            rows.draw(picture->row(row), 0, row, screenWidth);
    };
    for (int warmUp = 0; warmUp < 5; ++warmUp)
        convert();
    const double before = cpuMilliseconds();
    for (int frame = 0; frame < frames; ++frame)
        convert();
    return (cpuMilliseconds() - before) / frames;
}

} // namespace

VideoFigures measureVideoFrames(int frames)
{
    return { frames, measureDecoding(frames), costOfConverting(frames), costOfPlaying(frames, true) };
}

double measureDecoding(int frames) { return costOfPlaying(frames, false); }

} // namespace bench
