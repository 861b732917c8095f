#include "Showroom/Tour/Tour.h"
#include "Showroom/Tour/TourGuide.h"

#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/JSON.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIWindow.h"
#include "Service/Mivora.h"
#include "Showroom/Media/FrameCode.h"
#include "Showroom/ShowroomApp.h"
#include "Tests/Support/TemporaryFolder.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace showroom {
namespace {

namespace fs = std::filesystem;

class TourTest : public testing::Test {
protected:
    TourTest() { fs::create_directories(folder); }

    std::vector<JSONValue> events() const
    {
        std::vector<JSONValue> result;
        std::ifstream file(folder / "events.jsonl");
        for (std::string line; std::getline(file, line);) {
            const auto event = JSONValue::parse(line);
            EXPECT_TRUE(event) << line;
            result.push_back(event.value_or(JSONValue()));
        }
        return result;
    }
    std::size_t countFiles(const std::string& extension) const
    {
        return std::size_t(std::count_if(fs::directory_iterator(folder), fs::directory_iterator(),
            [&](const auto& entry) { return entry.path().extension() == extension; }));
    }

    const test::TemporaryFolder files;
    const fs::path folder = files / "tour of a shop";
};

TEST_F(TourTest, findsEverythingThatItsStoryTouches)
{
    HeadlessHost host(HostDevice::smallPhone());
    ShowroomApp app(host.device().state());
    EXPECT_TRUE(playTour(app, host, folder, false));
    std::size_t pictures = 0, taps = 0;
    double time = 0;
    for (const auto& event : events()) {
        EXPECT_NE(event["event"].text(), "missing") << event.print(JSONStyle::compact);
        EXPECT_GE(*event["at"].number(), time);
        time = *event["at"].number();
        pictures += event["event"].text() == "picture" && fs::file_size(folder / *event["file"].text()) > 0;
        taps += event["event"].text() == "tap";
    }
    EXPECT_GE(pictures, 20u);
    EXPECT_EQ(countFiles(".png"), pictures);
    EXPECT_EQ(taps, 19u);
}

TEST_F(TourTest, saysWhatItDoesNotFind)
{
    HeadlessHost host(HostDevice::smallPhone());
    const auto window = platform::make<UIWindow>();
    const auto shown = platform::make<UIButton>(), hidden = platform::make<UIButton>();
    shown->setAccessibilityIdentifier("shown");
    shown->setFrame({ 10, 30, 50, 50 });
    hidden->setAccessibilityIdentifier("hidden");
    hidden->setFrame({ 10, 600, 50, 50 }); // below the screen
    window->addSubview(shown);
    window->addSubview(hidden);
    window->makeKeyAndVisible();
    int presses = 0;
    shown->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });

    const LogCapture console;
    TourGuide guide(host, folder, false, nullptr);
    EXPECT_TRUE(guide.tap("shown"));
    EXPECT_FALSE(guide.tap("hidden"));
    EXPECT_FALSE(guide.finish());
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(console.lines(), std::vector<std::string> { "tour: there is no \"hidden\" on the screen to tap" });
    const auto log = events();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[1]["event"].text(), "missing");
    EXPECT_EQ(log[1]["view"].text(), "hidden");
}

TEST_F(TourTest, dragsAFingerAndTellsWhatTheServiceIsAsked)
{
    HeadlessHost host(HostDevice::smallPhone());
    ShowroomApp app(host.device().state());
    app.openHome();
    const auto window = platform::make<UIWindow>();
    const auto scroller = platform::make<UIScrollView>();
    scroller->setFrame({ 0, 0, 320, 568 });
    scroller->setContentSize({ 320, 3000 });
    window->addSubview(scroller);
    window->makeKeyAndVisible();

    TourGuide guide(host, folder, true, app.service());
    guide.drag({ 0.5, 0.8 }, { 0.5, 0.3 }, 0.3);
    guide.wait(2);
    mv::Mivora::getBroadcast("glow-bar", [](const auto&, const auto&) {});
    guide.wait(1);
    EXPECT_TRUE(guide.finish());
    EXPECT_GT(scroller->contentOffset().y, 200);
    const auto log = events();
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[0]["from"][1].number(), 454.4);
    EXPECT_EQ(log[0]["to"][1].number(), 170.4);
    EXPECT_EQ(log[1]["service"].text(), "getBroadcast glow-bar");
    EXPECT_EQ(log[2]["filmFrames"].number(), 100) << "3.3 seconds, and what is there at their end";
}

// The host's video carries the number of each of its frames (30 a second), which the film of the screen must tell at the same
// pace.
TEST_F(TourTest, filmsAShowInItsOwnTime)
{
    const LogCapture console; // the kit tells of the stream
    {
        HeadlessHost host(HostDevice::smallPhone(), {}, HostTime::real);
        ShowroomApp app(host.device().state());
        app.openShop();
        TourGuide guide(host, folder, true, app.service());
        EXPECT_TRUE(guide.tap(mv::MVLocalized("mvJoinNow")));
        EXPECT_TRUE(guide.waitFor("LIVE", 10));
        guide.wait(4);
        EXPECT_TRUE(guide.finish());
    }
    struct Seen {
        double time; // of the film
        int number;
    };
    std::vector<Seen> seen;
    HeadlessHost host(HostDevice::smallPhone());
    const auto player = make<AVPlayer>(make<AVPlayerItem>(URL::fileURL((folder / "tour.mp4").string())));
    const auto screen = make<AVPlayerLayer>();
    const auto window = make<UIWindow>();
    screen->setPlayer(player);
    screen->setFrame(window->bounds());
    window->layer()->addSublayer(screen);
    window->makeKeyAndVisible();
    host.advance(0);
    player->play();
    for (host.advance(0); player->currentTime() < player->currentItem()->duration(); host.advance(1.0 / 30)) {
        const auto& pixels = host.pixels();
        const auto number = media::frameCode::read(pixels.row(0), pixels.stride() / 4, pixels.width(), pixels.height());
        if (number && (seen.empty() || *number != seen.back().number))
            seen.push_back({ player->currentTime(), *number });
    }
    ASSERT_GT(seen.size(), 20u);
    EXPECT_TRUE(std::is_sorted(seen.begin(), seen.end(), [](const Seen& a, const Seen& b) { return a.number < b.number; }));
    const double ratio = (seen.back().time - seen.front().time) / ((seen.back().number - seen.front().number) / 30.0);
    EXPECT_GT(ratio, 0.8);
    EXPECT_LT(ratio, 1.25);
}

// The program itself, as `make run` starts it where there is no display.
TEST_F(TourTest, isPlayedWhereThereIsNoDisplay)
{
    const auto program = fs::current_path() / "showroom";
    ASSERT_TRUE(fs::exists(program));
    const auto command = "cd '" + folder.string() + "' && env -u DISPLAY -u WAYLAND_DISPLAY '" + program.string()
        + "' --fast --device small > said.txt 2> console.txt";
    EXPECT_EQ(std::system(command.c_str()), 0);
    const std::string said = test::contentOf(folder / "said.txt");
    EXPECT_NE(said.find("tour.mp4 are in " + (folder / "Pictures").string()), std::string::npos) << said;
    std::ifstream console(folder / "console.txt");
    for (std::string line; std::getline(console, line);)
        EXPECT_TRUE(line.ends_with("Successfully") || line == "Recieved Host Video Stream") << line;
    EXPECT_GT(fs::file_size(folder / "Pictures/tour.mp4"), 50'000u);
    EXPECT_TRUE(fs::exists(folder / "Pictures/01-home.png"));
}

} // namespace
} // namespace showroom
