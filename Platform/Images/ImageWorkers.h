#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace platform {

// Two threads that do what takes long, the newest task first: what was asked for last is what the viewer looks at. They start
// with the first task. Any thread.
class ImageWorkers {
public:
    using Task = std::function<void()>;

    ImageWorkers();
    ~ImageWorkers(); // drops what waits and ends what runs
    ImageWorkers(const ImageWorkers&) = delete;
    ImageWorkers& operator=(const ImageWorkers&) = delete;

    std::uint64_t run(Task task); // an id, never 0
    void cancel(std::uint64_t id); // no effect on one that runs already

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
