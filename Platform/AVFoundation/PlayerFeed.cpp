#include "Platform/AVFoundation/PlayerFeed.h"

#include <utility>

namespace platform {

void PlayerFeed::addOutput(const std::shared_ptr<VideoOutput>& output)
{
    std::shared_ptr<const VideoFrame> known;
    {
        const std::lock_guard lock(mutex);
        outputs.push_back(output);
        known = frame;
    }
    if (known)
        output->bring(known);
}

void PlayerFeed::removeOutput(const std::shared_ptr<VideoOutput>& output)
{
    const std::lock_guard lock(mutex);
    std::erase(outputs, output);
}

void PlayerFeed::close()
{
    owner = nullptr;
    closing.emplace();
    const std::lock_guard lock(mutex);
    outputs.clear();
    frame = nullptr;
}

template <typename Tell> void PlayerFeed::post(Tell tell)
{
    MainQueue::shared().async([self = shared_from_this(), tell = std::move(tell)] {
        if (self->owner)
            tell(*self->owner);
    });
}

void PlayerFeed::mediaDidBecomeReady(const MediaFacts& facts)
{
    post([facts](Owner& player) { player.didBecomeReady(facts); });
}

void PlayerFeed::mediaDidFail(const std::string& problem)
{
    post([problem](Owner& player) { player.didFail(problem); });
}

void PlayerFeed::mediaDidShow(std::shared_ptr<const VideoFrame> newest)
{
    std::vector<std::shared_ptr<VideoOutput>> all;
    {
        const std::lock_guard lock(mutex);
        frame = newest;
        all = outputs;
    }
    for (const auto& output : all)
        output->bring(newest);
}

void PlayerFeed::mediaDidStep(std::uint64_t id, std::optional<double> next)
{
    post([id, next](Owner& player) { player.didStep(id, next); });
}

void PlayerFeed::mediaDidSeek(std::uint64_t id, bool finished)
{
    post([id, finished](Owner& player) { player.didSeek(id, finished); });
}

void PlayerFeed::mediaDidStart(double time, double clock)
{
    post([time, clock](Owner& player) { player.didStart(time, clock); });
}

void PlayerFeed::mediaDidStall()
{
    post([](Owner& player) { player.didStall(); });
}

void PlayerFeed::mediaDidEnd()
{
    post([](Owner& player) { player.didEnd(); });
}

} // namespace platform
