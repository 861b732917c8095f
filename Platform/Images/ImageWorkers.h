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
    ~ImageWorkers(); // after finish
    ImageWorkers(const ImageWorkers&) = delete;
    ImageWorkers& operator=(const ImageWorkers&) = delete;

    std::uint64_t run(Task task); // an id, never 0
    void cancel(std::uint64_t id); // no effect on one that runs already
    void finish(); // does what still waits; from then on nothing more is taken

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
