#include "Platform/Foundation/JSON.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIApplication.h"
#include "Showroom/Media/FrameCode.h"
#include "Showroom/Service/CannedService.h"
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

bool isDifferent(std::uint32_t one, std::uint32_t other)
{
    constexpr int tolerance = 16; // of 255: a fade's last step
    for (int shift = 0; shift < 24; shift += 8)
        if (std::abs(int(one >> shift & 255) - int(other >> shift & 255)) > tolerance)
            return true;
    return false;
}

// The share of pixels, 0 to 1, that look different; of the chat it is what lies beside the video, and below the buttons.
enum class Part { all, chat };
double difference(const test::Screenshot& shot, const Bitmap& expected, Part part = Part::all)
{
    if (shot.width != expected.width() || shot.height != expected.height())
        return notSeen;
    long different = 0, compared = 0;
    for (int y = part == Part::chat ? 60 : 0; y < shot.height; ++y)
        for (int x = part == Part::chat ? shot.width / 2 + 1 : 0; x < shot.width; ++x, ++compared)
            different += isDifferent(shot.at(x, y), expected.row(y)[x]);
    return double(different) / double(compared);
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
            execl(program.c_str(), "showroom", "--log", logFile.c_str(), nullptr);
            _exit(127);
        }
        ASSERT_TRUE(display.waitForWindow("Lumen Lane"));
        // The double's video would cost time, and never be at the same frame.
        app.installService([](Scenario& scenario) { scenario.operations["playVideoStream"].answer = CannedAnswer::never; });
        app.openShop();
        host.advance(5);
    }
    ~ShopWindow() override
    {
        if (process > 0) {
            kill(process, SIGTERM);
            waitpid(process, nullptr, 0);
        }
        std::filesystem::remove(logFile);
    }

    std::vector<JSONValue> loggedEvents(const std::string& kind) const
    {
        std::vector<JSONValue> events;
        std::ifstream file(logFile);
        for (std::string line; std::getline(file, line);) {
            const auto event = JSONValue::parse(line);
            EXPECT_TRUE(event) << line;
            if (event && (*event)["event"].text() == kind)
                events.push_back(*event);
        }
        return events;
    }
    // The different frames of the host's film that the window shows, until there are so many or the seconds are over.
    std::vector<int> watchFrames(std::size_t count, std::chrono::seconds longest) const
    {
        std::vector<int> numbers;
        const auto end = std::chrono::steady_clock::now() + longest;
        while (numbers.size() < count && std::chrono::steady_clock::now() < end) {
            const auto shot = display.screenshot();
            const auto number = media::frameCode::read(shot.pixels.data(), shot.width, shot.width, shot.height);
            if (number && (numbers.empty() || *number != numbers.back()))
                numbers.push_back(*number);
        }
        return numbers;
    }
    // The best likeness within so many seconds.
    double waitForLikeness(double seconds = 20, Part part = Part::all)
    {
        double best = notSeen;
        for (int tries = int(seconds * 4); tries > 0 && best > 0.003; --tries) {
            std::this_thread::sleep_for(250ms);
            best = std::min(best, difference(display.screenshot(), host.pixels(), part));
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
        std::this_thread::sleep_for(1s); // while pages slide, the window takes no touches
    }
    // On the keys that the screen shows.
    void tapKeys(const std::string& letters)
    {
        for (const char letter : letters) {
            const auto key = findOnScreen(host.device(), letter == ' ' ? "space" : std::string(1, letter));
            ASSERT_TRUE(key) << letter;
            display.click(int(key->midX()), int(key->midY()));
            std::this_thread::sleep_for(150ms);
            host.tap({ key->midX(), key->midY() });
            host.advance(0.1);
        }
    }
    // On the keyboard that lies on the desk.
    void pressKeys(const std::string& letters)
    {
        for (const char letter : letters) {
            display.pressKey(std::string(1, letter).c_str());
            std::this_thread::sleep_for(20ms);
        }
        host.type(letters);
        host.advance(0.1);
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

    const std::string logFile
        = (std::filesystem::temp_directory_path() / ("shop-" + std::to_string(getpid()) + ".jsonl")).string();
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

// The main job with the real clock: from the list into a live show, a comment, a reaction, a product, and out again.
TEST_F(ShopWindow, aViewerWatchesALiveShowAndTakesPart)
{
    ASSERT_LT(waitForLikeness(), 0.003) << "the window shows the list";
    click(mv::MVLocalized("mvJoinNow"));

    const auto start = std::chrono::steady_clock::now();
    const auto numbers = watchFrames(100, 40s);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ASSERT_GE(numbers.size(), 100u) << "frames of the film in " << seconds << " s";
    int falls = 0;
    for (std::size_t i = 1; i < numbers.size(); ++i)
        falls += numbers[i] <= numbers[i - 1];
    EXPECT_LE(falls, 1) << "the numbers rise, but where the film begins anew";
    const int passed = numbers.back() - numbers.front() + 1;
    RecordProperty("shareOfFramesShown", std::to_string(double(numbers.size()) / std::max(passed, 1)));

    // What the scenario says by itself comes first, so that the chats run in one order.
    host.advance(18);
    std::this_thread::sleep_until(start + 18s);
    click("commentTextField");
    tapKeys("Hi ");
    pressKeys("all");
    click("sendCommentButton");
    tapKeys("Wr");
    pressKeys("en");
    click(mv::MVLocalized("mvJoin"));

    display.pressKey("r", true);
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(2);
    EXPECT_LT(waitForLikeness(30, Part::chat), 0.003) << "all that was said since, on its own half of the turned screen";

    click("sendReactionButton");
    const auto wow = findOnScreen(host.device(), "reactionButton"); // the first of them
    ASSERT_TRUE(wow);
    display.click(int(wow->midX()), int(wow->midY()));
    host.tap({ wow->midX(), wow->midY() });
    host.skip(8); // until it has gone in the double
    double flight = 0;
    for (int look = 0; look < 15; ++look, std::this_thread::sleep_for(100ms))
        flight = std::max(flight, difference(display.screenshot(), host.pixels(), Part::chat));
    EXPECT_GT(flight, 0.0005) << "the reaction flies over the chat";
    EXPECT_LT(waitForLikeness(20, Part::chat), 0.003) << "and has gone";

    click("productNameLabel");
    EXPECT_LT(waitForLikeness(), 0.003) << "the shop's page of the product";
    click("productBackButton");
    click("closeButton");
    EXPECT_LT(waitForLikeness(), 0.003) << "the list again";

    double loudest = 0;
    for (const auto& sound : loggedEvents("sound"))
        loudest = std::max(loudest, *sound["peak"].number());
    EXPECT_GT(loudest, 0.02) << "the host is heard";
    std::vector<std::string> calls;
    for (const auto& call : loggedEvents("call"))
        if (const std::string name(*call["service"].text());
            name.find("ceramic-hour") != std::string::npos || name.starts_with("createGuestUser"))
            calls.push_back(name);
    const std::string show = "ceramic-hour ";
    EXPECT_EQ(calls,
        (std::vector<std::string> { show + "subscribeEvents", "getBroadcast ceramic-hour", show + "subscribeEvents",
            show + "startWatching", show + "startWatchingBroadcastConversation", show + "loadChatMessages 50 0",
            show + "getProducts", show + "playVideoStream", "createGuestUser Wren", show + "sendMessage Hi all",
            show + "addReaction wow", show + "stopWatching", show + "stopWatchingBroadcastConversation",
            show + "stopVideoStream" }));
}

} // namespace
} // namespace showroom
