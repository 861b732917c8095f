#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Showroom/Media/FrameCode.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace showroom {
namespace {

using namespace platform;

// A show with its film, on a small device and the manual clock.
class CannedStreamTest : public testing::Test {
protected:
    CannedStreamTest()
    {
        app.installService([](Scenario& scenario) {
            scenario.timeline.clear();
            scenario.operations["playVideoStream"].latency = 0.05;
        });
        navigation->setNavigationBarHidden(true, false);
        app.show(navigation);
    }

    std::shared_ptr<mv::MVBroadcastScreenViewController> open()
    {
        auto screen = make<mv::MVBroadcastScreenViewController>();
        screen->broadcastId = "ceramic-hour";
        navigation->pushViewController(screen, false);
        return screen;
    }
    std::optional<int> frameOnScreen()
    {
        const auto& pixels = host.pixels();
        return media::frameCode::read(pixels.row(0), pixels.stride() / 4, pixels.width(), pixels.height());
    }
    bool isWaiting() const { return findOnScreen(host.device(), "Waiting for Host video").has_value(); }
    void play(const char* kind)
    {
        ScenarioEvent event;
        event.kind = kind;
        event.broadcast = "ceramic-hour";
        app.service()->play(event);
        host.advance(0.5);
    }
    static std::size_t threadCount()
    {
        const std::filesystem::directory_iterator threads("/proc/self/task");
        return std::size_t(std::distance(begin(threads), end(threads)));
    }

    LogCapture console; // the kit tells of the stream
    HeadlessHost host { HostDevice::smallPhone() };
    ShowroomApp app { host.device().state() };
    std::shared_ptr<UINavigationController> navigation = make<UINavigationController>(make<UIViewController>());
};

TEST_F(CannedStreamTest, theHostGoesAndComesBack)
{
    open();
    host.advance(1.5);
    EXPECT_FALSE(isWaiting());
    const auto first = frameOnScreen();
    ASSERT_TRUE(first);
    host.advance(0.5);
    const auto second = frameOnScreen();
    ASSERT_TRUE(second);
    EXPECT_NEAR(*second - *first, 15, 1) << "half a second at thirty frames";

    play("streamOffline");
    EXPECT_TRUE(isWaiting());
    EXPECT_FALSE(frameOnScreen());
    play("streamOnline");
    EXPECT_FALSE(isWaiting());
    const auto third = frameOnScreen();
    ASSERT_TRUE(third);
    EXPECT_GE(*third, *second) << "it goes on where it was";
    EXPECT_LE(*third, *second + 17);
}

TEST_F(CannedStreamTest, twoHundredShowsLeaveNothingBehind)
{
    std::size_t threads = 0;
    for (int round = 0; round < 200; ++round) {
        WeakRef<mv::MVBroadcastScreenViewController> watched;
        {
            const auto screen = open();
            watched = weak(screen);
        }
        host.advance(0.2 + 0.03 * (round % 5)); // loading, opening, or playing
        navigation->popViewController(false);
        host.advance(0.5);
        ASSERT_FALSE(watched.lock()) << round;
        if (round == 4)
            threads = threadCount(); // what stays is there by now
    }
    EXPECT_LE(threadCount(), threads);
    EXPECT_EQ(mv::Mivora::instance()->delegateCount(), 0u);
    EXPECT_EQ(mv::MVVideoStreamService::instance()->delegateCount(), 0u);
}

} // namespace
} // namespace showroom
