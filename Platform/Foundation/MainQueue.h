#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

class ManualClock;

// The queue of the main thread. Blocks are posted from any thread and run on the main thread, one after another, in the order of
// posting; timed blocks run in the exact order of their deadlines (equal ones in the order of posting).
//
// A host's loop watches fileDescriptor() together with its own descriptors, sleeps at most until nextDeadline(), and calls run().
class MainQueue {
public:
    using Block = std::function<void()>;
    // A timed block's place in the queue, as long as it has not run.
    struct Ticket {
        double deadline = 0;
        std::uint64_t order = 0;
    };

    static MainQueue& shared();
    // True on the thread that runs the queue: the one that started the process, or the one that adopted it last.
    static bool isMainThread();
    // For a host whose user interface does not live on the thread that started the process. Before anything else runs.
    static void adoptCurrentThread();

    // Any thread.
    void async(Block block);
    // Runs at Clock::current().now() + seconds; negative and not-a-number count as 0. Any thread.
    Ticket asyncAfter(double seconds, Block block);
    Ticket asyncAt(double deadline, Block block); // in the clock's seconds
    // False when it has run or was cancelled before. Any thread.
    bool cancel(Ticket ticket);

    // Readable while blocks wait, and once when a nearer deadline was posted. Never read or written by others; lives for ever.
    int fileDescriptor() const;
    // When the next timed block is due, in the clock's seconds; nothing when none waits. Any thread.
    std::optional<double> nextDeadline() const;

    // One pass: runs the blocks that wait now and the timed blocks that are due by `now`. What they post waits for the next pass,
    // so that a pass ends. Main thread; may be entered again from inside a block.
    void run(double now);
    // Passes at the clock's present time until nothing waits and nothing is due. Does not wait for jobs.
    void drain();

    // Counted jobs are the work under way elsewhere whose results this queue will get (loads, decodes). See CountedJob. Any
    // thread.
    void beginJob();
    void endJob();
    // Runs passes, sleeping in between, until no block waits, nothing is due and no counted job is under way. False when that did
    // not come about within `timeout` real seconds. Main thread.
    bool waitUntilQuiescent(double timeout = 10);
    // Moves the clock, which must be the current one, by `seconds`, stopping at every deadline on the way: there the clock shows
    // exactly that deadline, and everything it sets off has ended before time goes on. One console line, and false, when
    // something does not end within `timeout` real seconds. Main thread.
    bool advance(ManualClock& clock, double seconds, double timeout = 10);

private:
    MainQueue();
    ~MainQueue() = delete; // lives as long as the process, so that late workers may still post

    struct Impl;
    Impl* const impl;
};

// A counted job: begun when it is made, ended when its last copy is gone. A worker keeps a copy in its closure and lets go after
// it has posted its result. Any thread.
class CountedJob {
public:
    CountedJob();
    void end() { job.reset(); } // of this copy

private:
    std::shared_ptr<void> job;
};

} // namespace platform
