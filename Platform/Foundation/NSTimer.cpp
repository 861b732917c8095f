#include "Platform/Foundation/NSTimer.h"

#include "Platform/Foundation/Clock.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double minimumInterval = 1e-4; // seconds

} // namespace

std::shared_ptr<NSTimer> NSTimer::scheduledTimer(double seconds, Repeats repeats, Callback callback)
{
    auto timer = make<NSTimer>(seconds, repeats, std::move(callback));
    timer->firstDeadline = Clock::current().now() + timer->interval;
    timer->schedule(timer);
    return timer;
}

NSTimer::NSTimer(double seconds, Repeats repeating, Callback onFire)
    : interval(seconds > minimumInterval ? seconds : minimumInterval)
    , repeats(repeating)
    , callback(std::move(onFire))
{
}

void NSTimer::invalidate()
{
    if (!valid)
        return;
    valid = false;
    const Callback ended = std::move(callback); // may own the timer's owner, which may own us
    callback = nullptr;
    MainQueue::shared().cancel(ticket);
}

void NSTimer::schedule(std::shared_ptr<NSTimer> self)
{
    const double deadline = firstDeadline + interval * static_cast<double>(intervalsPassed);
    ticket = MainQueue::shared().asyncAt(deadline, [kept = std::move(self)] { kept->fire(kept); });
}

void NSTimer::fire(const std::shared_ptr<NSTimer>& self)
{
    const Callback call = callback;
    if (repeats == Repeats::yes) {
        const double late = Clock::current().now() - (firstDeadline + interval * static_cast<double>(intervalsPassed));
        intervalsPassed += 1 + static_cast<std::uint64_t>(std::max(0.0, std::floor(late / interval)));
        schedule(self);
    } else {
        valid = false;
        callback = nullptr;
    }
    if (call)
        call(*self);
}

} // namespace platform
