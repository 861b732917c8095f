#pragma once

#include <atomic>

namespace platform {

// Where the process takes its time from. The host installs one; until then it is the real clock.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock(); // an installed clock uninstalls itself

    virtual double now() const = 0; // seconds since an arbitrary start, never falling
    virtual double wallTime() const = 0; // seconds since 1970, UTC

    static Clock& current(); // any thread
    // Does not own the clock; null goes back to the real one. Main thread, while no worker reads the clock.
    static void setCurrent(Clock* clock);
};

class RealClock final : public Clock {
public:
    double now() const override;
    double wallTime() const override;
};

// Stands still until it is moved. It may be read from any thread and is moved on the main thread; MainQueue::advance moves it and
// runs what becomes due on the way.
class ManualClock final : public Clock {
public:
    // Midday UTC on 14 March 2025: a fixed date, so that pictures of a scene are equal on every day.
    static constexpr double defaultWallStart = 1741953600;

    explicit ManualClock(double startTime = 0, double wallStartTime = defaultWallStart);

    void set(double now); // never moves back
    void advance(double seconds); // negative counts as 0

    double now() const override { return time.load(); }
    double wallTime() const override { return wallStart + (time.load() - start); }

private:
    const double start;
    const double wallStart;
    std::atomic<double> time;
};

} // namespace platform
