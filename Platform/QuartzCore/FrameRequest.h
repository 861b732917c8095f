#pragma once

#include <cstdint>
#include <functional>

namespace platform {

// Whether a frame is wanted, and what for. Main thread.
class FrameRequest {
public:
    static void noteChange(); // something that can be seen has changed
    static void make(); // a frame is wanted, if only for its clock step
    static bool isMade();
    static void clear(); // the commit covers what came before it
    static std::uint64_t changeCount(); // of noteChange, since the start
    static void setCallback(std::function<void()> callback);
};

} // namespace platform
