#pragma once

#include "Platform/AVFoundation/MediaModule.h"
#include "Platform/AVFoundation/VideoOutput.h"
#include "Platform/Foundation/MainQueue.h"

#include <memory>
#include <mutex>
#include <vector>

namespace platform {

// Takes what a pipeline tells on its threads to its player on the main thread, in order, and its frames to the player's layers.
class PlayerFeed final : public MediaListener, public std::enable_shared_from_this<PlayerFeed> {
public:
    // What the player hears, on the main thread.
    class Owner {
    public:
        virtual ~Owner() = default;
        virtual void didBecomeReady(const MediaFacts& facts) = 0;
        virtual void didFail(const std::string& problem) = 0;
        virtual void didStep(std::uint64_t id, std::optional<double> next) = 0;
        virtual void didSeek(std::uint64_t id, bool finished) = 0;
        virtual void didStart(double time, double clock) = 0;
        virtual void didStall() = 0;
        virtual void didEnd() = 0;
    };

    explicit PlayerFeed(Owner& player)
        : owner(&player)
    {
    }

    // Main thread.
    void addOutput(const std::shared_ptr<VideoOutput>& output);
    void removeOutput(const std::shared_ptr<VideoOutput>& output);
    // Nothing is heard from then on. Counts as work under way until the pipeline has let go too.
    void close();

    // MediaListener
    void mediaDidBecomeReady(const MediaFacts& facts) override;
    void mediaDidFail(const std::string& problem) override;
    void mediaDidShow(std::shared_ptr<const VideoFrame> newest) override;
    void mediaDidStep(std::uint64_t id, std::optional<double> next) override;
    void mediaDidSeek(std::uint64_t id, bool finished) override;
    void mediaDidStart(double time, double clock) override;
    void mediaDidStall() override;
    void mediaDidEnd() override;

private:
    template <typename Tell> void post(Tell tell);

    Owner* owner; // null once closed; main thread
    std::optional<CountedJob> closing;
    std::mutex mutex;
    std::vector<std::shared_ptr<VideoOutput>> outputs;
    std::shared_ptr<const VideoFrame> frame; // the newest
};

} // namespace platform
