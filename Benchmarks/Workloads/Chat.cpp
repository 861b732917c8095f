#include "Benchmarks/Workloads/Chat.h"

#include "Benchmarks/Workloads/ChatScreen.h"
#include "Benchmarks/Workloads/PlayingVideo.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Host/FrameDriver.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/WindowHost.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <poll.h>

namespace bench {

using namespace platform;

namespace {

constexpr CGRect chatFrame { 20, 469, 353, 383 }; // points
constexpr std::size_t heldMessages = 10'000;
constexpr double settleSeconds = 3;

struct ChatScreen {
    explicit ChatScreen(const std::string& assets)
    {
        registerWorkloadFonts();
        window = make<UIWindow>();
        window->addSubview(makeBackdrop(window->bounds(), assets));
        chat = make<ChatView>(chatFrame, assets, heldMessages);
        window->addSubview(chat);
        window->makeKeyAndVisible();
    }

    std::shared_ptr<UIWindow> window;
    std::shared_ptr<ChatView> chat;
};

// An ordinary event loop without a display, until so many seconds have passed. The number of frames it drew.
int runLoop(FrameDriver& driver, RealClock& clock, double seconds)
{
    const double end = clock.now() + seconds;
    int frames = 0;
    while (clock.now() < end) {
        MainQueue::shared().run(clock.now());
        if (driver.hasChanged() || driver.isMoving() || driver.nextFrameTime() <= clock.now()) {
            driver.drawFrame(clock.now());
            ++frames;
        }
        const double due = std::min({ end, MainQueue::shared().nextDeadline().value_or(end),
            driver.isMoving() ? clock.now() + 1.0 / 60 : driver.nextFrameTime() });
        pollfd ready { MainQueue::shared().fileDescriptor(), POLLIN, 0 };
        poll(&ready, 1, std::max(0, int(std::ceil((due - clock.now()) * 1000))));
    }
    return frames;
}

} // namespace

FrameFigures measureChatFlood(int frames, const std::string& assets, const std::string& picture)
{
    HeadlessHost host;
    ChatScreen screen(assets);
    host.advance(1.0 / 60);
    const auto figures = measureFrames(frames, 5, [&](int) {
        screen.chat->addMessage();
        host.advance(1.0 / 60);
    });
    if (!picture.empty())
        host.writePicture(picture);
    return figures;
}

ChatOverVideoFigures measureChatOverVideo(int frames, const std::string& assets)
{
    constexpr int warmUp = 10; // frames
    constexpr double frame = PlayingVideo::secondsAFrame;
    HeadlessHost host;
    registerWorkloadFonts();
    const auto window = make<UIWindow>();
    window->makeKeyAndVisible();
    const PlayingVideo video(window.get());
    ChatOverVideoFigures figures;
    figures.video = measureFrames(frames, warmUp, [&](int) { host.advance(frame); }).cpuPerFrame;
    const auto chat = make<ChatView>(chatFrame, assets, heldMessages);
    window->addSubview(chat);
    figures.all = measureFrames(frames, warmUp, [&](int) {
        // After the screen's frame between two of the video's, so that one frame shows both.
        MainQueue::shared().asyncAfter(0.6 * frame, [&chat] { chat->addMessage(); });
        host.advance(frame);
    });
    return figures;
}

IdleFigures measureIdle(double seconds, const std::string& assets)
{
    const HeadlessHost device; // which describes the screen
    RealClock clock;
    Clock::setCurrent(&clock);
    const ChatScreen screen(assets);
    FrameDriver driver;
    driver.setScreen(device.device().pixelWidth(), device.device().pixelHeight(), device.device().model().scale);
    runLoop(driver, clock, settleSeconds);
    const double before = cpuMilliseconds();
    IdleFigures figures;
    figures.frames = runLoop(driver, clock, seconds);
    figures.cpu = cpuMilliseconds() - before;
    figures.memory = peakMemoryMiB();
    return figures;
}

std::optional<IdleFigures> measureIdleWindow(double seconds, const std::string& assets)
{
    std::string problem;
    const auto host = WindowHost::open("W6", HostDevice::phone(), {}, problem);
    if (!host) {
        std::fprintf(stderr, "W6 in a window: not measured, %s\n", problem.c_str());
        return {};
    }
    const ChatScreen screen(assets);
    IdleFigures figures;
    double before = 0;
    MainQueue::shared().asyncAfter(settleSeconds, [&] {
        before = cpuMilliseconds();
        figures.frames = -host->frameCount();
        MainQueue::shared().asyncAfter(seconds, [&] {
            figures.cpu = cpuMilliseconds() - before;
            figures.frames += host->frameCount();
            figures.memory = peakMemoryMiB();
            host->stop();
        });
    });
    host->run();
    return figures;
}

} // namespace bench
