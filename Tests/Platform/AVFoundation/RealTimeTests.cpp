#include "Platform/AVFoundation/AVPlayer.h"
#include "Platform/AVFoundation/AVPlayerLayer.h"
#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/QuartzCore/Compositor.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Tests/Platform/AVFoundation/MediaTest.h"
#include "Tests/Support/RawServer.h"

#include <poll.h>

namespace platform {
namespace {

using Status = AVPlayerTimeControlStatus;

// A screen of one layer on the real clock.
class RealTimeMediaTest : public ::testing::Test {
protected:
    RealTimeMediaTest()
    {
        layer->setFrame({ 0, 0, 320, 240 });
        screen.setSize(320, 240);
    }
    ~RealTimeMediaTest() override
    {
        layer->setPlayer(nullptr);
        player = nullptr;
        MainQueue::shared().waitUntilQuiescent();
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }

    void open(const URL& url)
    {
        player = make<AVPlayer>(make<AVPlayerItem>(url));
        layer->setPlayer(player);
    }

    // Runs the main queue and draws what changes, as a host does, until the condition holds; false after so many seconds.
    bool runUntil(const std::function<bool()>& condition, double seconds = 10)
    {
        const double end = clock.now() + seconds;
        while (!condition()) {
            const double now = clock.now();
            if (now >= end)
                return false;
            MainQueue::shared().run(now);
            if (LayerCommitter::needsFrame())
                drawFrame(now);
            pollfd watched { MainQueue::shared().fileDescriptor(), POLLIN, 0 };
            poll(&watched, 1, 5);
        }
        return true;
    }
    void run(double seconds)
    {
        const double end = clock.now() + seconds;
        runUntil([&] { return clock.now() >= end; }, seconds + 1);
    }
    bool runUntilPlaying()
    {
        return runUntil([&] { return player->timeControlStatus() == Status::playing; });
    }
    void drawFrame(double time)
    {
        ++frames;
        LayerCommitter::layout({ layer });
        LayerCommitter::display({ layer }, 1);
        screen.composite(LayerCommitter::commit({ layer }, time, 1, { 0, 0, 320, 240 }));
    }
    std::optional<int> shownFrame() const
    {
        const auto& picture = screen.frame();
        return showroom::media::frameCode::read(picture->row(0), picture->stride() / 4, picture->width(), picture->height());
    }

    RealClock clock;
    LogCapture console;
    const TestFilms& films = TestFilms::shared();
    std::shared_ptr<AVPlayerLayer> layer = make<AVPlayerLayer>();
    std::shared_ptr<AVPlayer> player;
    Compositor screen;
    int frames = 0;
};

TEST_F(RealTimeMediaTest, showsFramesAtTheirTimes)
{
    open(films.plain());
    ASSERT_TRUE(runUntil([&] { return player->currentItem()->status() == AVPlayerItemStatus::readyToPlay; }));
    run(0.05);
    EXPECT_EQ(shownFrame(), 0);
    player->play();
    ASSERT_TRUE(runUntilPlaying());
    const double started = clock.now() - player->currentTime();
    const int framesBefore = frames;
    for (int look = 0; look < 5; ++look) {
        run(0.2);
        ASSERT_TRUE(shownFrame());
        EXPECT_NEAR(*shownFrame() / 30.0, clock.now() - started, 0.15);
        EXPECT_NEAR(player->currentTime(), clock.now() - started, 0.02);
    }
    EXPECT_LE(frames - framesBefore, 34) << "the screen draws only when a frame is due";
    EXPECT_LE(layer->convertedPixelCount(), 36l * 320 * 240);
}

TEST_F(RealTimeMediaTest, endsPausesAndStartsOver)
{
    int ends = 0;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, [&](const Notification&) { ++ends; });
    open(films.plain());
    player->seek(1.5);
    player->play();
    ASSERT_TRUE(runUntil([&] { return ends > 0; }));
    EXPECT_EQ(player->timeControlStatus(), Status::paused);
    EXPECT_EQ(player->currentTime(), player->currentItem()->duration());
    EXPECT_EQ(shownFrame(), 59);
    player->seek(0);
    run(0.2);
    EXPECT_EQ(shownFrame(), 0);
    player->play();
    ASSERT_TRUE(runUntil([&] { return shownFrame() >= 10; }));
    player->pause();
    const double time = player->currentTime();
    run(0.2);
    EXPECT_EQ(player->currentTime(), time);
    EXPECT_NEAR(shownFrame().value_or(-1), time * 30, 3);
    EXPECT_EQ(ends, 1);
}

TEST_F(RealTimeMediaTest, soundReachesTheDeviceUnlessMuted)
{
    open(films.plain());
    player->play();
    ASSERT_TRUE(runUntilPlaying());
    player->takeAudioPeak();
    run(0.3);
    EXPECT_NEAR(player->takeAudioPeak(), 0.5, 0.1);
    player->setVolume(0.5);
    run(0.3);
    player->takeAudioPeak();
    run(0.2);
    EXPECT_NEAR(player->takeAudioPeak(), 0.25, 0.05);
    player->setMuted(true);
    run(0.3);
    player->takeAudioPeak();
    run(0.2);
    EXPECT_EQ(player->takeAudioPeak(), 0);
}

TEST_F(RealTimeMediaTest, waitsForASlowServer)
{
    const std::string answer = RawServer::response(films.bytes(films.plain()), "video/mp4");
    RawServer server;
    server.on("/film.mp4", [&](const RawServer::Exchange& exchange) {
        exchange.write(answer.substr(0, answer.size() / 2));
        exchange.sleep(0.5);
        exchange.write(answer.substr(answer.size() / 2));
    });
    int ends = 0;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, [&](const Notification&) { ++ends; });
    open(*URL::parse(server.address("/film.mp4")));
    player->play();
    EXPECT_EQ(player->timeControlStatus(), Status::waitingToPlay);
    EXPECT_TRUE(runUntil([&] { return ends > 0; }));
    EXPECT_EQ(shownFrame(), 59);
}

// A server that says nothing any more holds nobody up.
TEST_F(RealTimeMediaTest, closesWhileAServerIsSilent)
{
    const std::string answer = RawServer::response(films.bytes(films.plain()), "video/mp4");
    RawServer server;
    for (const std::size_t said : { std::size_t(0), answer.size() / 2 }) {
        server.on("/film.mp4", [&answer, said](const RawServer::Exchange& exchange) {
            exchange.write(answer.substr(0, said));
            exchange.waitUntilGone();
        });
        open(*URL::parse(server.address("/film.mp4")));
        player->play();
        run(0.3);
        player = nullptr;
        layer->setPlayer(nullptr);
        const double start = clock.now();
        EXPECT_TRUE(MainQueue::shared().waitUntilQuiescent());
        EXPECT_LT(clock.now() - start, 2);
    }
}

TEST_F(RealTimeMediaTest, closesInEveryState)
{
    open(films.plain());
    player->play();
    ASSERT_TRUE(runUntilPlaying());
    player->seek(1);
    player = nullptr;
    layer->setPlayer(nullptr); // seeking
    open(films.plain());
    player->play();
    player = nullptr;
    layer->setPlayer(nullptr); // loading
    EXPECT_TRUE(MainQueue::shared().waitUntilQuiescent());
}

} // namespace
} // namespace platform
