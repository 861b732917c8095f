#include "Platform/QuartzCore/FrameRequest.h"

#include <utility>

namespace platform {

namespace {

struct State {
    bool made = false;
    std::uint64_t changes = 0;
    std::function<void()> callback;
};

// Never destroyed: layers held by static objects may end after it.
State& state()
{
    static State& shared = *new State;
    return shared;
}

} // namespace

void FrameRequest::noteChange()
{
    ++state().changes;
    make();
}

void FrameRequest::make()
{
    if (std::exchange(state().made, true))
        return;
    const auto callback = state().callback; // it may be replaced inside the call
    if (callback)
        callback();
}

bool FrameRequest::isMade() { return state().made; }

void FrameRequest::clear() { state().made = false; }

std::uint64_t FrameRequest::changeCount() { return state().changes; }

void FrameRequest::setCallback(std::function<void()> callback) { state().callback = std::move(callback); }

} // namespace platform
