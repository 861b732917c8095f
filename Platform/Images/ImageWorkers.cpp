#include "Platform/Images/ImageWorkers.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace platform {

namespace {
constexpr std::size_t mostThreads = 2;
}

struct ImageWorkers::Impl {
    std::mutex mutex;
    std::condition_variable changed;
    std::map<std::uint64_t, Task> tasks; // waiting, by their ids
    std::uint64_t nextId = 1;
    std::size_t idle = 0; // threads that wait for a task
    bool ending = false;
    std::vector<std::thread> threads;

    void work()
    {
        std::unique_lock lock(mutex);
        for (;;) {
            ++idle;
            changed.wait(lock, [this] { return ending || !tasks.empty(); });
            --idle;
            if (tasks.empty())
                return;
            const auto newest = std::prev(tasks.end());
            Task task = std::move(newest->second);
            tasks.erase(newest);
            lock.unlock();
            task();
            task = nullptr; // its captures end here, unlocked
            lock.lock();
        }
    }
};

ImageWorkers::ImageWorkers()
    : impl(std::make_unique<Impl>())
{
}

ImageWorkers::~ImageWorkers() { finish(); }

std::uint64_t ImageWorkers::run(Task task)
{
    const std::lock_guard lock(impl->mutex);
    const auto id = impl->nextId++;
    if (impl->ending)
        return id;
    impl->tasks.emplace(id, std::move(task));
    if (impl->idle < impl->tasks.size() && impl->threads.size() < mostThreads)
        impl->threads.emplace_back([this] { impl->work(); });
    impl->changed.notify_one();
    return id;
}

void ImageWorkers::cancel(std::uint64_t id)
{
    Task task; // ends outside the lock
    const std::lock_guard lock(impl->mutex);
    const auto found = impl->tasks.find(id);
    if (found == impl->tasks.end())
        return;
    task = std::move(found->second);
    impl->tasks.erase(found);
}

void ImageWorkers::finish()
{
    {
        const std::lock_guard lock(impl->mutex);
        impl->ending = true;
    }
    impl->changed.notify_all();
    for (auto& thread : std::exchange(impl->threads, {}))
        thread.join();
}

} // namespace platform
