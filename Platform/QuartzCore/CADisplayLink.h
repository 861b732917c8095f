#pragma once

#include "Platform/Foundation/NSObject.h"

#include <functional>

namespace platform {

// Calls back at the start of every frame while it runs, with the frame's time (seconds on the current clock), for motion that no
// animation describes. While one runs, frames follow one another. Ends when it is destroyed or stopped. Main thread.
class CADisplayLink final : public NSObject {
public:
    using Callback = std::function<void(double time)>;

    explicit CADisplayLink(Callback callback);
    ~CADisplayLink() override;

    void start(); // nothing while it runs
    void stop(); // may be called inside the callback
    bool isRunning() const { return running; }

    // For whoever drives frames.
    static void runAll(double time);
    static bool anyRuns();

private:
    Callback callback;
    bool running = false;
};

} // namespace platform
