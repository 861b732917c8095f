#pragma once

#include "Platform/AVFoundation/AVPlayerItem.h"
#include "Platform/AVFoundation/PlayerFeed.h"
#include "Platform/Foundation/MainQueue.h"

#include <map>

namespace platform {

enum class AVPlayerTimeControlStatus : unsigned char { paused, waitingToPlay, playing };
enum class AVPlayerActionAtItemEnd : unsigned char {
    pause,
    none, // keeps its rate and stands at the end: a seek goes on playing from there
};

// Plays an item: decodes on threads of its own, with sound, and shows frames in the layers that have this player. It takes its
// time from the current clock: with the real one frames come when they are due; with a manual one, without sound, the frame of
// the clock's time is in place whenever MainQueue::advance returns. Seconds everywhere. Main thread, callbacks too.
class AVPlayer final : public NSObject, private PlayerFeed::Owner {
public:
    using TimeObserver = std::uint64_t;

    explicit AVPlayer(std::shared_ptr<AVPlayerItem> item = nullptr);
    ~AVPlayer() override; // ends at once; what is open is closed on the media library's thread

    const std::shared_ptr<AVPlayerItem>& currentItem() const { return item; }
    void replaceCurrentItem(std::shared_ptr<AVPlayerItem> newItem); // null for none

    void play(); // as soon as the item is ready; at its end nothing plays until a seek
    void pause();
    double rate() const { return wantsToPlay ? 1 : 0; } // what is wanted, also while waiting
    AVPlayerTimeControlStatus timeControlStatus() const { return status; }
    std::function<void(AVPlayerTimeControlStatus before, AVPlayerTimeControlStatus now)> onTimeControlStatusChange;
    AVPlayerActionAtItemEnd actionAtItemEnd() const { return actionAtEnd; }
    void setActionAtItemEnd(AVPlayerActionAtItemEnd action) { actionAtEnd = action; }

    double currentTime() const;
    // To exactly that time, or with a tolerance to the nearest frame that is quick to get at. Held between 0 and the duration;
    // not a number counts as 0. The completion gets false when a later seek took its place or the item has failed.
    void seek(double time, std::function<void(bool finished)> completion = nullptr, bool isExact = true);
    // Calls back at every multiple of `interval` of the item's time while it plays, and whenever it starts, stops or jumps. The
    // observer ends with the player.
    TimeObserver addPeriodicTimeObserver(double interval, std::function<void(double time)> callback);
    void removeTimeObserver(TimeObserver observer);

    bool isMuted() const { return muted; }
    void setMuted(bool mutes);
    double volume() const { return volume_; }
    void setVolume(double volume); // 0 to 1
    // The loudest sample that reached the sound device (or what stands in for a missing one) since the last call, 0 to 1.
    double takeAudioPeak();

    // For layers.
    void addOutput(const std::shared_ptr<VideoOutput>& output);
    void removeOutput(const std::shared_ptr<VideoOutput>& output);

private:
    struct Observer {
        double interval;
        std::function<void(double)> callback;
        std::optional<MainQueue::Ticket> ticket;
    };
    struct Seek {
        std::function<void(bool)> completion;
        CountedJob job;
    };

    // PlayerFeed::Owner
    void didBecomeReady(const MediaFacts& facts) override;
    void didFail(const std::string& problem) override;
    void didStep(std::uint64_t id, std::optional<double> next) override;
    void didSeek(std::uint64_t id, bool finished) override;
    void didStart(double time, double clock) override;
    void didStall() override;
    void didEnd() override;

    void open();
    void close();
    bool isReady() const { return item && item->status() == AVPlayerItemStatus::readyToPlay; }
    void roll(double time, double clock); // time goes on from there
    void stand(double time);
    void updateStatus();
    // In steps.
    void step();
    void scheduleStep();
    void cancelStep();
    // Observers.
    void tellObservers();
    void tellObserver(TimeObserver id);
    void schedule(TimeObserver id);
    void cancelSchedules();
    template <typename Call> MainQueue::Ticket callAt(double time, Call call);

    std::shared_ptr<AVPlayerItem> item;
    std::vector<std::shared_ptr<VideoOutput>> outputs;
    std::shared_ptr<PlayerFeed> feed; // null without an open pipeline
    std::unique_ptr<MediaPipeline> pipeline;
    std::optional<CountedJob> opening;
    bool isStepped = false;
    std::map<std::uint64_t, Seek> seeks;
    std::uint64_t lastId = 0;

    bool wantsToPlay = false, isRolling = false, isAtEnd = false;
    double anchorTime = 0; // where it stands, or stood when it began to roll
    double anchorClock = 0; // when that was
    AVPlayerTimeControlStatus status = AVPlayerTimeControlStatus::paused;
    AVPlayerActionAtItemEnd actionAtEnd = AVPlayerActionAtItemEnd::pause;
    bool muted = false;
    double volume_ = 1;

    // In steps.
    std::uint64_t stepId = 0; // the last one asked for
    std::optional<CountedJob> stepJob; // while it is under way
    std::optional<double> nextFrame; // when the shown frame gives way; absent for the last one
    std::optional<MainQueue::Ticket> stepTicket;

    std::map<TimeObserver, Observer> observers;
};

} // namespace platform
