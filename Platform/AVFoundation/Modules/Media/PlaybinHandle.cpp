#include "Platform/AVFoundation/Modules/Media/PlaybinHandle.h"

#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"
#include "Platform/AVFoundation/Modules/Media/Playbin.h"

#include <utility>

namespace platform {

namespace {

// What the owner holds. Its calls go to the worker in order.
class PlaybinHandle final : public MediaPipeline {
public:
    explicit PlaybinHandle(std::shared_ptr<Playbin> made)
        : playbin(std::move(made))
    {
        post([](Playbin& p) { p.open(); });
    }
    ~PlaybinHandle() override
    {
        // The last reference goes on the worker too.
        MediaWorker::shared().post([playbin = std::exchange(playbin, nullptr)] { playbin->close(); });
    }

    void play() override
    {
        post([](Playbin& p) { p.play(); });
    }
    void pause() override
    {
        post([](Playbin& p) { p.pause(); });
    }
    void seek(std::uint64_t id, double seconds, bool isExact) override
    {
        post([=](Playbin& p) { p.seek(id, seconds, isExact); });
    }
    void step(std::uint64_t id, double seconds) override
    {
        post([=](Playbin& p) { p.step(id, seconds); });
    }
    void setVolume(double volume, bool isMuted) override
    {
        post([=](Playbin& p) { p.setVolume(volume, isMuted); });
    }
    double takeAudioPeak() override { return playbin->takeAudioPeak(); }

private:
    template <typename Call> void post(Call call)
    {
        MediaWorker::shared().post([playbin = playbin, call = std::move(call)] { call(*playbin); });
    }

    std::shared_ptr<Playbin> playbin;
};

} // namespace

std::unique_ptr<MediaPipeline> openPlaybin(const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener)
{
    return std::make_unique<PlaybinHandle>(std::make_shared<Playbin>(address, pace, std::move(listener)));
}

} // namespace platform
