#include "Platform/QuartzCore/CADisplayLink.h"

#include "Platform/QuartzCore/FrameRequest.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

// Never destroyed: links held by static objects may end after it.
std::vector<CADisplayLink*>& runningLinks()
{
    static auto& links = *new std::vector<CADisplayLink*>;
    return links;
}

} // namespace

CADisplayLink::CADisplayLink(Callback function)
    : callback(std::move(function))
{
}

CADisplayLink::~CADisplayLink() { stop(); }

void CADisplayLink::start()
{
    if (std::exchange(running, true))
        return;
    runningLinks().push_back(this);
    FrameRequest::make();
}

void CADisplayLink::stop()
{
    if (std::exchange(running, false))
        std::erase(runningLinks(), this);
}

void CADisplayLink::runAll(double time)
{
    std::vector<std::shared_ptr<CADisplayLink>> round; // kept: a callback may end any of them
    for (CADisplayLink* link : runningLinks())
        if (auto kept = weak(link).lock())
            round.push_back(std::move(kept));
    for (const auto& link : round) {
        if (!link->running)
            continue;
        const auto call = link->callback;
        call(time);
    }
}

bool CADisplayLink::anyRuns() { return !runningLinks().empty(); }

} // namespace platform
