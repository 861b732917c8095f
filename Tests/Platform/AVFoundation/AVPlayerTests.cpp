#include "Tests/Platform/AVFoundation/MediaTest.h"

#include "Platform/Foundation/NotificationCenter.h"
#include "Tests/Support/RawServer.h"

#include <cmath>

namespace platform {
namespace {

using Status = AVPlayerTimeControlStatus;

// Of the process: its open files under "fd", its threads under "task".
std::ptrdiff_t countOf(const std::string& kind)
{
    const std::filesystem::directory_iterator entries("/proc/self/" + kind);
    return std::distance(begin(entries), end(entries));
}

TEST_F(MediaTest, handsOutTheFrameOfTheClocksTime)
{
    open(films.plain())->play();
    host.advance(0);
    EXPECT_EQ(player->currentItem()->status(), AVPlayerItemStatus::readyToPlay);
    EXPECT_EQ(shownFrame(), 0);
    for (const double seconds : { 0.1, 0.5, 1.0 / 30, 0.01, 0.01, 0.02 }) {
        host.advance(seconds);
        EXPECT_EQ(shownFrame(), int(player->currentTime() * 30 + 1e-6)) << player->currentTime();
    }
}

TEST_F(MediaTest, showsItsFirstFrameAndStandsUntilItPlays)
{
    open(films.plain());
    EXPECT_EQ(player->currentItem()->status(), AVPlayerItemStatus::unknown);
    host.advance(1);
    EXPECT_EQ(shownFrame(), 0);
    EXPECT_EQ(player->currentTime(), 0);
    EXPECT_NEAR(player->currentItem()->duration(), 2, 0.05);
    EXPECT_EQ(player->currentItem()->presentationSize(), (CGSize { 640, 480 }));

    const int frames = host.frameCount();
    host.advance(1);
    EXPECT_EQ(host.frameCount(), frames) << "a standing picture costs frames";
}

TEST_F(MediaTest, pausesAndGoesOnWhereItStood)
{
    std::vector<Status> seen;
    open(films.plain());
    player->onTimeControlStatusChange = [&](Status, Status now) { seen.push_back(now); };
    player->play();
    EXPECT_EQ(player->timeControlStatus(), Status::waitingToPlay);
    host.advance(0.5);
    player->pause();
    host.advance(5);
    EXPECT_NEAR(player->currentTime(), 0.5, 1e-6);
    EXPECT_EQ(shownFrame(), 15);
    player->play();
    host.advance(0.25);
    EXPECT_EQ(shownFrame(), 22);
    EXPECT_EQ(seen, (std::vector { Status::waitingToPlay, Status::playing, Status::paused, Status::playing }));
}

TEST_F(MediaTest, endsWithItsLastFrameAndSaysSo)
{
    int ends = 0;
    std::shared_ptr<NSObject> sender;
    double endedAt = 0;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, [&](const Notification& notification) {
            ++ends;
            sender = notification.object;
            endedAt = host.now();
        });
    open(films.plain())->play();
    host.advance(5);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(sender, player->currentItem());
    EXPECT_NEAR(endedAt, player->currentItem()->duration(), 1e-6);
    EXPECT_EQ(player->currentTime(), player->currentItem()->duration());
    EXPECT_EQ(player->timeControlStatus(), Status::paused);
    EXPECT_EQ(shownFrame(), 59);

    player->seek(0);
    player->play();
    host.advance(0.5);
    EXPECT_EQ(shownFrame(), 15) << "after the end it starts over";
}

TEST_F(MediaTest, loopsWithoutLosingAFrame)
{
    open(films.plain());
    player->setActionAtItemEnd(AVPlayerActionAtItemEnd::none);
    const auto token = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, [&](const Notification&) { player->seek(0); });
    player->play();
    host.advance(0);
    const double length = player->currentItem()->duration();
    for (int round = 0; round < 3; ++round) {
        host.advance(0.5);
        EXPECT_EQ(shownFrame(), 15);
        EXPECT_EQ(player->timeControlStatus(), Status::playing);
        host.advance(length - 0.5);
        EXPECT_EQ(shownFrame(), 0);
    }
}

TEST_F(MediaTest, seeksExactly)
{
    open(films.plain());
    host.advance(0);
    struct Case {
        const char* why;
        double to;
        int frame;
    };
    const Case cases[] = {
        { "between two key frames", 0.7, 21 },
        { "inside of a frame", 0.95, 28 },
        { "backwards", 0.1, 3 },
        { "to a key frame", 1, 30 },
        { "to the last frame", 1.99, 59 },
        { "beyond the end", 100, 59 },
        { "before the beginning", -3, 0 },
        { "to no time at all", std::nan(""), 0 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        bool finished = false;
        player->seek(c.to, [&](bool done) { finished = done; });
        host.advance(0);
        EXPECT_TRUE(finished);
        EXPECT_EQ(shownFrame(), c.frame);
    }
}

TEST_F(MediaTest, letsTheLastOfManySeeksCount)
{
    open(films.plain())->play();
    host.advance(0.2);
    std::vector<std::string> answers;
    for (int i = 1; i <= 8; ++i)
        player->seek(
            0.2 * i, [&answers, i](bool done) { answers.push_back(std::to_string(i) + (done ? " done" : " left out")); });
    EXPECT_NEAR(player->currentTime(), 1.6, 1e-9) << "it stands where it was told to go";
    host.advance(0.1);
    EXPECT_EQ(shownFrame(), 51);
    ASSERT_EQ(answers.size(), 8u);
    EXPECT_EQ(answers.back(), "8 done");
    answers.pop_back();
    for (const auto& answer : answers)
        EXPECT_NE(answer.find("left out"), std::string::npos) << answer;
}

TEST_F(MediaTest, seeksBeforeItIsReady)
{
    open(films.plain());
    player->seek(1.5);
    player->play();
    host.advance(0.1);
    EXPECT_EQ(shownFrame(), 48);
}

TEST_F(MediaTest, tellsTheTimeAtEveryInterval)
{
    std::vector<double> times;
    open(films.plain());
    host.advance(0);
    const auto observer
        = player->addPeriodicTimeObserver(0.5, [&](double time) { times.push_back(std::round(time * 100) / 100); });
    player->play();
    host.advance(1.2);
    EXPECT_EQ(times, (std::vector { 0.5, 1.0 }));
    times.clear();
    player->seek(0.3);
    host.advance(0.3);
    EXPECT_EQ(times, (std::vector { 0.3, 0.5 })) << "a jump, then the next multiple";
    times.clear();
    player->pause();
    host.advance(2);
    EXPECT_EQ(times, (std::vector { 0.6 })) << "a stop, then nothing";
    player->removeTimeObserver(observer);
    player->play();
    host.advance(1);
    EXPECT_EQ(times.size(), 1u);
}

TEST_F(MediaTest, saysWhyItCannotPlay)
{
    struct Case {
        const char* why;
        URL url;
        const char* says;
    };
    const std::string whole = films.bytes(films.plain());
    const Case cases[] = {
        { "no file", URL::fileURL(films.path("none.mp4")), "not found" },
        { "a page", films.file("page.mp4", "<!doctype html><html><body><h1>Not found</h1></body></html>"), "" },
        { "nothing", films.file("empty.mp4", ""), "" },
        { "noise", films.file("noise.mp4", std::string(5000, '\x5a')), "" },
        { "an index that breaks off", films.file("index.mp4", whole.substr(0, 600)), "" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        std::vector<AVPlayerItemStatus> seen;
        open(c.url);
        player->currentItem()->onStatusChange = [&](AVPlayerItemStatus status) { seen.push_back(status); };
        player->play();
        host.advance(1);
        EXPECT_EQ(seen, std::vector { AVPlayerItemStatus::failed });
        EXPECT_NE(player->currentItem()->error(), "");
        EXPECT_NE(player->timeControlStatus(), Status::playing);
        bool finished = true;
        player->seek(1, [&](bool done) { finished = done; });
        host.advance(0);
        EXPECT_FALSE(finished);
        ASSERT_EQ(console.lines().size(), 1u);
        EXPECT_NE(console.lines()[0].find(c.url.absoluteString()), std::string::npos);
        EXPECT_NE(console.lines()[0].find(c.says), std::string::npos) << console.lines()[0];
        console.clear();
    }
}

TEST_F(MediaTest, failsWhereAFilmBreaksOff)
{
    const std::string whole = films.bytes(films.plain());
    int ends = 0;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        AVPlayerItem::didPlayToEndTimeNotification, [&](const Notification&) { ++ends; });
    open(films.file("broken.mp4", whole.substr(0, whole.size() / 2)))->play();
    host.advance(5);
    EXPECT_EQ(player->currentItem()->status(), AVPlayerItemStatus::failed);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(shownFrame()) << "what could be seen stays";
    ASSERT_EQ(console.lines().size(), 1u);
    EXPECT_NE(console.lines()[0].find("breaks off"), std::string::npos) << console.lines()[0];
    console.clear();
}

TEST_F(MediaTest, playsFromAServer)
{
    const std::string whole = films.bytes(films.plain());
    RawServer server;
    server.on("/film.mp4", [&](const RawServer::Exchange& exchange) { exchange.write(RawServer::response(whole, "video/mp4")); });
    open(*URL::parse(server.address("/film.mp4")))->play();
    host.advance(1);
    EXPECT_EQ(shownFrame(), 30);

    open(*URL::parse(server.address("/none.mp4")))->play();
    host.advance(1);
    EXPECT_EQ(player->currentItem()->status(), AVPlayerItemStatus::failed);
    console.clear();
}

TEST_F(MediaTest, exchangesItsItem)
{
    const URL other = films.film("short.mp4", { .width = 320, .height = 240, .frames = 10, .loudness = 0 });
    open(films.plain())->play();
    host.advance(1);
    player->replaceCurrentItem(make<AVPlayerItem>(other));
    EXPECT_EQ(player->currentTime(), 0);
    host.advance(0.1);
    EXPECT_EQ(shownFrame(), 3);
    player->replaceCurrentItem(nullptr);
    host.advance(1);
    EXPECT_EQ(shownFrame(), 3) << "the last picture stays";
    player->replaceCurrentItem(make<AVPlayerItem>(films.plain()));
    host.advance(0.5);
    EXPECT_EQ(shownFrame(), 15);
}

TEST_F(MediaTest, mayBeDroppedByWhomeverItTells)
{
    const auto drop = [this] {
        layer->setPlayer(nullptr);
        player = nullptr;
    };
    const auto dropAt = [&](Status status) {
        player->addPeriodicTimeObserver(0.5, [](double) {});
        player->onTimeControlStatusChange = [drop, status](Status, Status now) {
            if (now == status)
                drop();
        };
    };
    const std::pair<const char*, std::function<void()>> cases[]
        = { { "when it is ready", [&] { player->currentItem()->onStatusChange = [&](AVPlayerItemStatus) { drop(); }; } },
              { "when it plays", [&] { dropAt(Status::playing); } }, { "when it pauses", [&] { dropAt(Status::paused); } },
              { "in time", [&] { player->addPeriodicTimeObserver(0.1, [&](double) { drop(); }); } },
              { "after a seek", [&] { player->seek(1, [&](bool) { drop(); }); } } };
    for (const auto& [why, listen] : cases) {
        SCOPED_TRACE(why);
        open(films.plain());
        listen();
        player->play();
        host.advance(1);
        if (player)
            player->pause();
        EXPECT_EQ(player, nullptr);
    }
}

// In every state: loading, ready, playing, seeking, at the end, failed.
TEST_F(MediaTest, leavesNothingBehind)
{
    const URL broken = films.file("noise.mp4", std::string(5000, '\x5a'));
    const auto openAndClose = [&](int round) {
        open(round % 6 == 5 ? broken : films.plain());
        if (round % 6 > 0)
            host.advance(0);
        if (round % 6 == 2)
            player->play(), host.advance(0.05);
        if (round % 6 == 3)
            player->play(), player->seek(1.3);
        if (round % 6 == 4)
            player->seek(1.98), player->play(), host.advance(0.1);
        layer->setPlayer(nullptr);
        player = nullptr;
        if (round % 2)
            host.advance(0);
    };
    for (int round = 0; round < 12; ++round)
        openAndClose(round);
    host.advance(0);
    const auto threads = countOf("task"), files = countOf("fd");
    const auto pixels = PixelPool::bytesInUse();
    for (int round = 0; round < 200; ++round)
        openAndClose(round);
    host.advance(0);
    EXPECT_LE(countOf("task"), threads);
    EXPECT_LE(countOf("fd"), files);
    EXPECT_LE(PixelPool::bytesInUse(), pixels);
    console.clear();
}

TEST_F(MediaTest, tellsWhatAnAssetIs)
{
    struct Case {
        const char* why;
        URL url;
        AVKeyValueStatus status;
        bool playable;
    };
    const Case cases[] = {
        { "a film", films.plain(), AVKeyValueStatus::loaded, true },
        { "no file", URL::fileURL(films.path("none.mp4")), AVKeyValueStatus::failed, false },
        { "a page", films.file("page.mp4", "<!doctype html><html><body><h1>Not found</h1></body></html>"),
            AVKeyValueStatus::loaded, false },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const auto asset = make<AVURLAsset>(c.url);
        int calls = 0;
        EXPECT_EQ(asset->statusOfValue("playable"), AVKeyValueStatus::unknown);
        asset->loadValuesAsynchronously({ "playable", "hasProtectedContent" }, [&] { ++calls; });
        asset->loadValuesAsynchronously({ "playable" }, [&] { ++calls; });
        EXPECT_EQ(asset->statusOfValue("playable"), AVKeyValueStatus::loading);
        host.advance(0);
        EXPECT_EQ(calls, 2);
        std::string error;
        EXPECT_EQ(asset->statusOfValue("playable", &error), c.status);
        EXPECT_EQ(error.empty(), c.status != AVKeyValueStatus::failed);
        EXPECT_EQ(asset->isPlayable(), c.playable);
        EXPECT_FALSE(asset->hasProtectedContent());
        EXPECT_NEAR(asset->duration(), c.playable ? 2 : 0, 0.05);
        EXPECT_EQ(asset->naturalSize(), c.playable ? (CGSize { 640, 480 }) : CGSize {});
    }
}

} // namespace
} // namespace platform
