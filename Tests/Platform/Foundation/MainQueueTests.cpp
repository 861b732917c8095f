#include "Platform/Foundation/MainQueue.h"

#include "Tests/Platform/Foundation/QuietTest.h"

#include <chrono>
#include <ctime>
#include <limits>
#include <poll.h>
#include <thread>

namespace platform {

namespace {

using Names = std::vector<std::string>;

class MainQueueTests : public ManualClockTest {
protected:
    // Leaves nothing behind for the next test.
    void TearDown() override
    {
        queue.waitUntilQuiescent();
        ManualClockTest::TearDown();
    }

    MainQueue::Block note(std::string name)
    {
        return [this, name] { events.push_back(name); };
    }

    bool isReadable() const
    {
        pollfd watched { queue.fileDescriptor(), POLLIN, 0 };
        return ::poll(&watched, 1, 0) == 1;
    }

    MainQueue& queue = MainQueue::shared();
    Names events;
};

double threadSeconds()
{
    timespec time {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

} // namespace

TEST_F(MainQueueTests, whatABlockPostsWaitsForTheNextPass)
{
    queue.async([this] {
        events.push_back("a");
        queue.async(note("late"));
        queue.asyncAfter(0, note("late timed"));
    });
    queue.async(note("b"));
    queue.run(clock.now());
    EXPECT_EQ(events, (Names { "a", "b" }));
    EXPECT_TRUE(isReadable()) << "the host's loop must come back";
    queue.run(clock.now());
    EXPECT_EQ(events, (Names { "a", "b", "late", "late timed" }));
}

TEST_F(MainQueueTests, aPassInsideABlockKeepsTheOrder)
{
    queue.async([this] {
        queue.async(note("third"));
        queue.run(clock.now());
        events.push_back("outer ends");
    });
    queue.async(note("second"));
    queue.run(clock.now());
    EXPECT_EQ(events, (Names { "second", "third", "outer ends" }));
}

TEST_F(MainQueueTests, timedBlocksRunByDeadlineAndEqualOnesInTheOrderOfPosting)
{
    queue.asyncAfter(3, note("3"));
    queue.asyncAfter(1, note("1"));
    queue.asyncAfter(2, note("2 first"));
    queue.asyncAfter(2, note("2 second"));
    queue.run(0.999);
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(queue.nextDeadline(), 1.0);
    queue.run(3);
    EXPECT_EQ(events, (Names { "1", "2 first", "2 second", "3" }));
    EXPECT_EQ(queue.nextDeadline(), std::nullopt);
}

TEST_F(MainQueueTests, senselessDelaysMeanNow)
{
    queue.asyncAfter(-5, note("negative"));
    queue.asyncAfter(std::numeric_limits<double>::quiet_NaN(), note("not a number"));
    queue.drain();
    EXPECT_EQ(events, (Names { "negative", "not a number" }));
}

TEST_F(MainQueueTests, aCancelledBlockDoesNotRunAndLetsGoOfWhatItHolds)
{
    const auto held = std::make_shared<int>(1);
    const auto ticket = queue.asyncAfter(1, [held] { FAIL(); });
    EXPECT_EQ(held.use_count(), 2);
    EXPECT_TRUE(queue.cancel(ticket));
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_FALSE(queue.cancel(ticket));
    queue.advance(clock, 2);
}

TEST_F(MainQueueTests, aBlockMayCancelOneOfTheSameDeadline)
{
    MainQueue::Ticket second;
    queue.asyncAfter(1, [&] { EXPECT_TRUE(queue.cancel(second)); });
    second = queue.asyncAfter(1, note("cancelled"));
    queue.advance(clock, 1);
    EXPECT_TRUE(events.empty());
}

TEST_F(MainQueueTests, theDescriptorIsReadableOnlyWhileSomethingWaits)
{
    queue.drain();
    queue.run(clock.now());
    EXPECT_FALSE(isReadable());
    queue.async(note("a"));
    EXPECT_TRUE(isReadable());
    queue.run(clock.now());
    EXPECT_FALSE(isReadable());

    queue.asyncAfter(10, note("timed"));
    EXPECT_TRUE(isReadable()) << "the loop's sleep must become shorter";
    queue.run(clock.now());
    EXPECT_FALSE(isReadable());
    queue.asyncAfter(20, note("later"));
    EXPECT_FALSE(isReadable()) << "a later deadline wakes nobody";
    queue.advance(clock, 20);
}

TEST_F(MainQueueTests, keepsEachThreadsOrderAndLosesNothing)
{
    constexpr int threads = 4;
    constexpr int posts = 2000;
    std::vector<int> seen(threads, 0);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([&, t, job = CountedJob()] {
            EXPECT_FALSE(MainQueue::isMainThread());
            for (int i = 0; i < posts; ++i) {
                queue.async([&seen, t, i] {
                    EXPECT_TRUE(MainQueue::isMainThread());
                    EXPECT_EQ(seen[t]++, i);
                });
            }
        });
    }
    // The closures live until the threads are joined, so the jobs end with them.
    std::thread joiner([&] {
        for (auto& worker : workers)
            worker.join();
        workers.clear();
    });
    while (seen != std::vector<int>(threads, posts))
        queue.run(clock.now());
    joiner.join();
    EXPECT_TRUE(queue.waitUntilQuiescent());
}

TEST_F(MainQueueTests, aJobLastsAsLongAsItsLastCopy)
{
    std::vector<CountedJob> copies(1);
    copies.push_back(copies.front());
    EXPECT_FALSE(queue.waitUntilQuiescent(0));
    copies.pop_back();
    EXPECT_FALSE(queue.waitUntilQuiescent(0));
    copies.pop_back();
    EXPECT_TRUE(queue.waitUntilQuiescent(0));
}

TEST_F(MainQueueTests, sleepsWhileItWaits)
{
    CountedJob stuck;
    const double before = threadSeconds();
    EXPECT_FALSE(queue.waitUntilQuiescent(0.3));
    EXPECT_LT(threadSeconds() - before, 0.1);
}

TEST_F(MainQueueTests, givesUpOnWhatPostsItselfForEver)
{
    bool stop = false;
    MainQueue::Block again = [&] {
        if (!stop)
            queue.async(again);
    };
    again();
    EXPECT_FALSE(queue.waitUntilQuiescent(0.02));
    stop = true;
    queue.drain();
}

TEST_F(MainQueueTests, advancingStopsExactlyAtEveryDeadline)
{
    std::vector<double> times;
    const auto noteTime = [&] { times.push_back(clock.now()); };
    queue.asyncAfter(0.25, [&] {
        noteTime();
        queue.asyncAfter(0.5, noteTime); // comes due within the same advance
    });
    queue.asyncAfter(0.5, noteTime);
    queue.asyncAfter(2, noteTime);
    EXPECT_TRUE(queue.advance(clock, 1));
    EXPECT_EQ(times, (std::vector<double> { 0.25, 0.5, 0.75 }));
    EXPECT_EQ(clock.now(), 1.0);
    EXPECT_TRUE(queue.advance(clock, 1));
    EXPECT_EQ(times.back(), 2.0);
}

TEST_F(MainQueueTests, timeWaitsForTheWorkThatAMomentSetsOff)
{
    std::thread worker;
    double finishedAt = -1;
    queue.asyncAfter(0.1, [&] {
        worker = std::thread([&, job = CountedJob()]() mutable {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            queue.async([&] { finishedAt = clock.now(); });
            job.end();
        });
    });
    EXPECT_TRUE(queue.advance(clock, 5));
    EXPECT_EQ(finishedAt, 0.1);
    worker.join();
}

TEST_F(MainQueueTests, saysWhenWorkDoesNotEnd)
{
    CountedJob stuck;
    EXPECT_FALSE(queue.advance(clock, 1, 0.01));
    EXPECT_EQ(clock.now(), 1.0);
    EXPECT_EQ(takeLines().size(), 1u);
}

TEST_F(MainQueueTests, sumsOfFrameLengthsMeetTheirDeadline)
{
    queue.asyncAfter(0.5, note("due"));
    for (int frame = 0; frame < 30; ++frame)
        clock.advance(1.0 / 60); // adds up to a little less than a half
    ASSERT_LT(clock.now(), 0.5);
    queue.run(clock.now());
    EXPECT_EQ(events, (Names { "due" }));
}

TEST(Clock, uninstallsItselfAtItsEnd)
{
    {
        ManualClock clock(100, 1000);
        Clock::setCurrent(&clock);
        clock.advance(2);
        clock.advance(-5);
        clock.set(50);
        EXPECT_EQ(Clock::current().now(), 102);
        EXPECT_EQ(Clock::current().wallTime(), 1002);
    }
    const double before = Clock::current().now();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_GT(Clock::current().now(), before);
}

} // namespace platform
