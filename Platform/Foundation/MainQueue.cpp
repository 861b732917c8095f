#include "Platform/Foundation/MainQueue.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NSLog.h"

#include <atomic>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

// Seconds by which a timed block may come early: sums of frame lengths miss the deadline they are meant to meet by less than
// this.
constexpr double tolerance = 1e-9;

std::atomic<std::thread::id> mainThread = std::this_thread::get_id();

bool before(MainQueue::Ticket a, MainQueue::Ticket b)
{
    return a.deadline != b.deadline ? a.deadline < b.deadline : a.order < b.order;
}

struct Waiting {
    std::uint64_t order;
    MainQueue::Block block;
};

} // namespace

struct MainQueue::Impl {
    std::mutex mutex;
    std::condition_variable changed; // a block came, or the last job ended
    const int descriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::uint64_t nextOrder = 0;
    std::deque<Waiting> blocks;
    std::map<Ticket, Block, bool (*)(Ticket, Ticket)> timed { &before };
    int jobs = 0;
    bool isSignalled = false; // the descriptor is readable; spares a system call a block

    // All under the lock.
    void signal()
    {
        if (!std::exchange(isSignalled, true))
            ::eventfd_write(descriptor, 1);
        changed.notify_all();
    }
    void clearSignal()
    {
        eventfd_t count = 0;
        if (std::exchange(isSignalled, false))
            ::eventfd_read(descriptor, &count);
    }
    bool isDue(double now) const { return !timed.empty() && timed.begin()->first.deadline <= now + tolerance; }
    Block takeWaiting(std::uint64_t limit)
    {
        if (blocks.empty() || blocks.front().order >= limit)
            return nullptr;
        Block block = std::move(blocks.front().block);
        blocks.pop_front();
        return block;
    }
    Block takeDue(double now, std::uint64_t limit)
    {
        for (auto entry = timed.begin(); entry != timed.end() && entry->first.deadline <= now + tolerance; ++entry) {
            if (entry->first.order < limit) {
                Block block = std::move(entry->second);
                timed.erase(entry);
                return block;
            }
        }
        return nullptr;
    }
};

MainQueue::MainQueue()
    : impl(new Impl)
{
}

MainQueue& MainQueue::shared()
{
    static MainQueue* const queue = new MainQueue;
    return *queue;
}

bool MainQueue::isMainThread() { return mainThread.load() == std::this_thread::get_id(); }

void MainQueue::adoptCurrentThread() { mainThread = std::this_thread::get_id(); }

void MainQueue::async(Block block)
{
    assert(block);
    const std::lock_guard lock(impl->mutex);
    impl->blocks.push_back({ impl->nextOrder++, std::move(block) });
    impl->signal();
}

MainQueue::Ticket MainQueue::asyncAfter(double seconds, Block block)
{
    return asyncAt(Clock::current().now() + (seconds > 0 ? seconds : 0), std::move(block));
}

MainQueue::Ticket MainQueue::asyncAt(double deadline, Block block)
{
    assert(block);
    const std::lock_guard lock(impl->mutex);
    const double sortable = deadline == deadline ? deadline : 0; // not a number has no place in an order
    const Ticket ticket { sortable, impl->nextOrder++ };
    const auto entry = impl->timed.emplace(ticket, std::move(block)).first;
    if (entry == impl->timed.begin())
        impl->signal();
    return ticket;
}

bool MainQueue::cancel(Ticket ticket)
{
    Block block; // ends outside the lock, since its captures may call back
    const std::lock_guard lock(impl->mutex);
    const auto entry = impl->timed.find(ticket);
    if (entry == impl->timed.end())
        return false;
    block = std::move(entry->second);
    impl->timed.erase(entry);
    return true;
}

int MainQueue::fileDescriptor() const { return impl->descriptor; }

std::optional<double> MainQueue::nextDeadline() const
{
    const std::lock_guard lock(impl->mutex);
    return impl->timed.empty() ? std::nullopt : std::optional(impl->timed.begin()->first.deadline);
}

void MainQueue::run(double now)
{
    assert(isMainThread());
    std::unique_lock lock(impl->mutex);
    impl->clearSignal();
    const std::uint64_t limit = impl->nextOrder;
    const auto call = [&](Block block) {
        lock.unlock();
        block();
        block = nullptr; // its captures end here, unlocked
        lock.lock();
    };
    while (Block block = impl->takeWaiting(limit))
        call(std::move(block));
    while (Block block = impl->takeDue(now, limit))
        call(std::move(block));
}

void MainQueue::drain()
{
    const auto isReady = [this] {
        const std::lock_guard lock(impl->mutex);
        return !impl->blocks.empty() || impl->isDue(Clock::current().now());
    };
    while (isReady())
        run(Clock::current().now());
}

void MainQueue::beginJob()
{
    const std::lock_guard lock(impl->mutex);
    ++impl->jobs;
}

void MainQueue::endJob()
{
    const std::lock_guard lock(impl->mutex);
    assert(impl->jobs > 0);
    if (--impl->jobs == 0)
        impl->changed.notify_all();
}

bool MainQueue::waitUntilQuiescent(double timeout)
{
    using RealTime = std::chrono::steady_clock;
    const auto end = RealTime::now() + std::chrono::duration_cast<RealTime::duration>(std::chrono::duration<double>(timeout));
    for (;;) {
        const double now = Clock::current().now();
        std::unique_lock lock(impl->mutex);
        const auto isReady = [&] { return !impl->blocks.empty() || impl->isDue(now); };
        if (!impl->changed.wait_until(lock, end, [&] { return isReady() || impl->jobs == 0; }))
            return false;
        if (!isReady())
            return true;
        lock.unlock();
        run(now);
        if (RealTime::now() >= end)
            return false; // something posts itself for ever
    }
}

bool MainQueue::advance(ManualClock& clock, double seconds, double timeout)
{
    assert(&Clock::current() == &clock);
    const double target = clock.now() + (seconds > 0 ? seconds : 0);
    bool quiescent = waitUntilQuiescent(timeout);
    for (auto deadline = nextDeadline(); quiescent && deadline && *deadline <= target + tolerance; deadline = nextDeadline()) {
        clock.set(*deadline);
        quiescent = waitUntilQuiescent(timeout);
    }
    clock.set(target);
    if (!quiescent)
        NSLog("main queue: work under way did not end within " + std::to_string(timeout) + " s");
    return quiescent;
}

CountedJob::CountedJob()
{
    MainQueue& queue = MainQueue::shared();
    queue.beginJob();
    job = std::shared_ptr<void>(&queue, [](void* counting) { static_cast<MainQueue*>(counting)->endJob(); });
}

} // namespace platform
