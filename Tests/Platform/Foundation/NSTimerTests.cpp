#include "Platform/Foundation/NSTimer.h"

#include "Tests/Platform/Foundation/QuietTest.h"

namespace platform {

namespace {

class NSTimerTests : public ManualClockTest {
protected:
    std::shared_ptr<NSTimer> start(double interval, Repeats repeats, NSTimer::Callback alsoDo = nullptr)
    {
        return NSTimer::scheduledTimer(interval, repeats, [this, alsoDo](NSTimer& timer) {
            times.push_back(clock.now());
            if (alsoDo)
                alsoDo(timer);
        });
    }

    MainQueue& queue = MainQueue::shared();
    std::vector<double> times;
};

} // namespace

TEST_F(NSTimerTests, firesOnceAtItsTime)
{
    const auto timer = start(0.25, Repeats::no);
    queue.advance(clock, 0.2);
    EXPECT_TRUE(timer->isValid());
    queue.advance(clock, 10);
    EXPECT_EQ(times, (std::vector<double> { 0.25 }));
    EXPECT_FALSE(timer->isValid());
}

TEST_F(NSTimerTests, repeatsAtExactMultiplesHoweverLong)
{
    const auto timer = start(0.1, Repeats::yes);
    queue.advance(clock, 1000);
    ASSERT_EQ(times.size(), 10000u);
    for (std::size_t i = 0; i < times.size(); ++i)
        ASSERT_EQ(times[i], 0.1 + 0.1 * static_cast<double>(i)) << i;
    timer->invalidate();
}

TEST_F(NSTimerTests, severalTimersFireInTheOrderOfTheirDeadlines)
{
    std::string order;
    const auto slow = NSTimer::scheduledTimer(0.5, Repeats::yes, [&](NSTimer&) { order += 's'; });
    const auto fast = NSTimer::scheduledTimer(0.2, Repeats::yes, [&](NSTimer&) { order += 'f'; });
    queue.advance(clock, 1.1); // f at .2 .4, s at .5, f at .6 .8, then both at 1: the slow one was posted first
    EXPECT_EQ(order, "ffsffsf");
    slow->invalidate();
    fast->invalidate();
}

TEST_F(NSTimerTests, mayBeInvalidatedInsideItsCallback)
{
    const std::weak_ptr<NSTimer> timer = start(0.1, Repeats::yes, [this](NSTimer& self) {
        if (times.size() == 3) {
            self.invalidate();
            EXPECT_FALSE(self.isValid());
        }
    });
    queue.advance(clock, 0.25);
    EXPECT_FALSE(timer.expired()) << "the queue keeps it";
    queue.advance(clock, 1);
    EXPECT_EQ(times.size(), 3u);
    EXPECT_TRUE(timer.expired()) << "the queue must have let go";
}

TEST_F(NSTimerTests, oneInvalidatedByAnotherOfTheSameMomentStaysSilent)
{
    std::shared_ptr<NSTimer> second;
    start(0.1, Repeats::no, [&](NSTimer&) { second->invalidate(); });
    second = start(0.1, Repeats::yes, [](NSTimer&) { FAIL(); });
    queue.advance(clock, 1);
    EXPECT_EQ(times.size(), 1u);
}

TEST_F(NSTimerTests, itsOwnerMayEndInsideTheCallback)
{
    struct Owner {
        std::shared_ptr<NSTimer> timer;
        int fired = 0;
    };
    auto owner = std::make_shared<Owner>();
    owner->timer
        = NSTimer::scheduledTimer(0.1, Repeats::yes, [&owner, name = std::string("a long enough capture")](NSTimer& timer) {
              ++owner->fired;
              timer.invalidate();
              owner = nullptr; // drops the timer, and with it this closure
              EXPECT_EQ(name, "a long enough capture");
          });
    queue.advance(clock, 1);
    EXPECT_EQ(owner, nullptr);
}

TEST_F(NSTimerTests, aLateLoopMakesItFireOnceAndKeepItsRhythm)
{
    const auto timer = start(0.5, Repeats::yes);
    clock.set(2.25); // the loop was held up
    queue.drain();
    EXPECT_EQ(times, (std::vector<double> { 2.25 }));
    EXPECT_EQ(queue.nextDeadline(), 2.5);
    timer->invalidate();
    EXPECT_EQ(queue.nextDeadline(), std::nullopt);
}

TEST_F(NSTimerTests, aZeroIntervalDoesNotStopTheClock)
{
    const auto timer = start(0, Repeats::yes);
    EXPECT_TRUE(queue.advance(clock, 0.01));
    EXPECT_GE(times.size(), 99u);
    EXPECT_LE(times.size(), 101u);
    timer->invalidate();
}

} // namespace platform
