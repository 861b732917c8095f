#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIApplication.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "Tests/Support/VirtualDisplay.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace showroom {
namespace {

using namespace platform;
using namespace std::chrono_literals;

constexpr double notSeen = 1;

// The share of pixels, 0 to 1, that look different.
double difference(const test::Screenshot& shot, const Bitmap& expected)
{
    if (shot.width != expected.width() || shot.height != expected.height())
        return notSeen;
    constexpr int tolerance = 16; // of 255: a fade's last step
    long different = 0;
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x) {
            const auto one = shot.at(x, y), other = expected.row(y)[x];
            for (int shift = 0; shift < 24; shift += 8) {
                if (std::abs(int(one >> shift & 255) - int(other >> shift & 255)) > tolerance) {
                    ++different;
                    break;
                }
            }
        }
    }
    return double(different) / double(shot.pixels.size());
}

// The shop's program on a display of its own, and beside it the same shop headless, which says what is to be seen.
class ShopWindow : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(display.isOpen()) << "Xvfb is missing";
        const auto program = (std::filesystem::current_path() / "showroom").string();
        process = fork();
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            execl(program.c_str(), "showroom", nullptr);
            _exit(127);
        }
        ASSERT_TRUE(display.waitForWindow("Lumen Lane"));
        app.openShop();
        host.advance(5);
    }
    ~ShopWindow() override
    {
        if (process > 0) {
            kill(process, SIGTERM);
            waitpid(process, nullptr, 0);
        }
    }

    // The best likeness within so many seconds.
    double waitForLikeness(double seconds = 20)
    {
        double best = notSeen;
        for (int tries = int(seconds * 4); tries > 0 && best > 0.003; --tries) {
            std::this_thread::sleep_for(250ms);
            best = std::min(best, difference(display.screenshot(), host.pixels()));
        }
        return best;
    }

    // In the window and in its double.
    void click(const std::string& nameOrText)
    {
        const auto place = findOnScreen(host.device(), nameOrText);
        ASSERT_TRUE(place) << nameOrText;
        display.click(int(place->midX()), int(place->midY()));
        host.tap({ place->midX(), place->midY() });
        host.advance(2);
    }

    double processorSeconds() const
    {
        std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
        double nanoseconds = 0;
        file >> nanoseconds;
        return nanoseconds / 1e9;
    }

    static HostDevice onDesktop()
    {
        auto device = HostDevice::phone();
        device.scale = 1;
        return device;
    }

    test::VirtualDisplay display;
    pid_t process = 0;
    HeadlessHost host { onDesktop() };
    ShowroomApp app { host.device().state() };
};

TEST_F(ShopWindow, showsTheListAtRestAndGoesBackWhenItIsClicked)
{
    ASSERT_LT(waitForLikeness(), 0.003) << "the window shows the list";
    std::this_thread::sleep_for(500ms);
    const double before = processorSeconds();
    std::this_thread::sleep_for(2s);
    const double idle = processorSeconds() - before;
    RecordProperty("idleMilliseconds", std::to_string(idle * 1000));
    EXPECT_LT(idle, 0.005) << "seconds of CPU in two seconds of a list at rest";

    display.turnWheel(200, 600, 200);
    for (int step = 0; step < 3; ++step) { // its end is known when it comes in sight
        UIApplication::shared().sendScroll({ 200, 600 }, 0, 10000);
        host.advance(1);
    }
    host.advance(1);
    EXPECT_LT(waitForLikeness(), 0.003) << "the wheel brings the end of the list";

    click("backButton");
    EXPECT_LT(waitForLikeness(), 0.003) << "the start page";
}

} // namespace
} // namespace showroom
