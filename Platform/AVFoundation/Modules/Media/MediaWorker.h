#pragma once

#include <functional>

namespace platform {

// The thread that owns the media library. Starts with its first use and stays: the library's own threads and tables live as long
// as the process too.
class MediaWorker {
public:
    static MediaWorker& shared();
    // In the order of posting, on the thread. Any thread.
    void post(std::function<void()> task);

private:
    MediaWorker();
    struct Impl;
    Impl* const impl; // never deleted
};

} // namespace platform
