#include "Platform/Foundation/Clock.h"

#include <algorithm>
#include <chrono>

namespace platform {

namespace {

std::atomic<Clock*> installed = nullptr;

} // namespace

Clock::~Clock()
{
    Clock* self = this;
    installed.compare_exchange_strong(self, nullptr);
}

Clock& Clock::current()
{
    static RealClock real;
    Clock* const clock = installed.load();
    return clock ? *clock : real;
}

void Clock::setCurrent(Clock* clock) { installed = clock; }

double RealClock::now() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double RealClock::wallTime() const
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

ManualClock::ManualClock(double startTime, double wallStartTime)
    : start(startTime)
    , wallStart(wallStartTime)
    , time(startTime)
{
}

void ManualClock::set(double now) { time = std::max(time.load(), now); }

void ManualClock::advance(double seconds) { set(time.load() + std::max(0.0, seconds)); }

} // namespace platform
