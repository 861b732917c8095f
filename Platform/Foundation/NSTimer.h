#pragma once

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSObject.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace platform {

enum class Repeats { no, yes };

// Calls back on the main thread after an interval of the current clock, once or again and again. The queue keeps a scheduled
// timer alive until it has fired for the last time or is invalidated, so a caller that never stops it need not hold it. Main
// thread.
class NSTimer final : public NSObject {
public:
    using Callback = std::function<void(NSTimer& timer)>;

    // Intervals below 0.1 ms count as 0.1 ms, so that a repeating timer cannot stop the clock. A repeating timer keeps to its
    // first deadline's rhythm; when the loop comes late for several it fires once and goes on with the next one ahead.
    static std::shared_ptr<NSTimer> scheduledTimer(double seconds, Repeats repeats, Callback callback);

    NSTimer(double seconds, Repeats repeating, Callback onFire); // for make; scheduledTimer is the way to make one

    // No call comes after it. May be called inside the callback.
    void invalidate();
    bool isValid() const { return valid; }
    double timeInterval() const { return interval; } // seconds

private:
    void schedule(std::shared_ptr<NSTimer> self);
    void fire(const std::shared_ptr<NSTimer>& self);

    const double interval;
    const Repeats repeats;
    Callback callback;
    double firstDeadline = 0; // the others are whole multiples of the interval later, so that no error adds up
    std::uint64_t intervalsPassed = 0;
    MainQueue::Ticket ticket;
    bool valid = true;
};

} // namespace platform
