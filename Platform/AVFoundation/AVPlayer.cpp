#include "Platform/AVFoundation/AVPlayer.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NotificationCenter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr double shortestInterval = 0.01; // seconds between two calls of an observer

} // namespace

AVPlayer::AVPlayer(std::shared_ptr<AVPlayerItem> newItem) { replaceCurrentItem(std::move(newItem)); }

AVPlayer::~AVPlayer()
{
    close();
    cancelSchedules();
}

void AVPlayer::replaceCurrentItem(std::shared_ptr<AVPlayerItem> newItem)
{
    if (item == newItem)
        return;
    close();
    item = std::move(newItem);
    if (item)
        open();
    updateStatus();
}

void AVPlayer::open()
{
    feed = std::make_shared<PlayerFeed>(static_cast<PlayerFeed::Owner&>(*this));
    for (const auto& output : outputs)
        feed->addOutput(output);
    auto* module = loadModule<MediaModule>("media");
    if (!module)
        return feed->mediaDidFail("the media module is missing");
    isStepped = dynamic_cast<const ManualClock*>(&Clock::current());
    opening.emplace();
    pipeline = module->open(item->asset()->url().absoluteString(), isStepped ? MediaPace::steps : MediaPace::realTime, feed);
    pipeline->setVolume(volume_, muted);
    if (wantsToPlay)
        pipeline->play();
}

void AVPlayer::close()
{
    stand(0);
    isAtEnd = false;
    cancelStep();
    stepJob.reset();
    nextFrame.reset();
    if (feed)
        feed->close();
    feed = nullptr;
    pipeline = nullptr;
    opening.reset();
    for (const auto& output : outputs)
        output->clear();
    for (auto& [id, seek] : std::exchange(seeks, {})) {
        if (seek.completion)
            MainQueue::shared().async([call = std::move(seek.completion), job = seek.job] { call(false); });
    }
}

void AVPlayer::play()
{
    if (std::exchange(wantsToPlay, true))
        return;
    if (pipeline)
        pipeline->play();
    if (isStepped && isReady() && !isAtEnd && seeks.empty())
        roll(anchorTime, Clock::current().now());
    updateStatus();
}

void AVPlayer::pause()
{
    if (!std::exchange(wantsToPlay, false))
        return;
    const auto self = weak(this).lock(); // whoever is told may drop the player
    if (pipeline)
        pipeline->pause();
    const bool wasRolling = isRolling;
    stand(currentTime());
    updateStatus();
    if (wasRolling)
        tellObservers();
}

double AVPlayer::currentTime() const
{
    if (!isRolling)
        return anchorTime;
    return std::clamp(anchorTime + (Clock::current().now() - anchorClock), 0.0, item ? item->duration() : 0.0);
}

void AVPlayer::seek(double time, std::function<void(bool finished)> completion, bool isExact)
{
    const bool canSeek = pipeline && item->status() != AVPlayerItemStatus::failed;
    if (!canSeek) {
        if (completion)
            MainQueue::shared().async([call = std::move(completion)] { call(false); });
        return;
    }
    const double target = time > 0 ? std::min(time, isReady() ? item->duration() : time) : 0;
    const auto id = ++lastId;
    seeks.emplace(id, Seek { std::move(completion), {} });
    cancelStep();
    stand(std::isfinite(target) ? target : 0);
    isAtEnd = false;
    pipeline->seek(id, anchorTime, isExact);
}

void AVPlayer::setMuted(bool mutes)
{
    muted = mutes;
    if (pipeline)
        pipeline->setVolume(volume_, muted);
}

void AVPlayer::setVolume(double volume)
{
    volume_ = volume > 0 ? std::min(volume, 1.0) : 0;
    if (pipeline)
        pipeline->setVolume(volume_, muted);
}

double AVPlayer::takeAudioPeak() { return pipeline ? pipeline->takeAudioPeak() : 0; }

void AVPlayer::addOutput(const std::shared_ptr<VideoOutput>& output)
{
    outputs.push_back(output);
    if (feed)
        feed->addOutput(output);
}

void AVPlayer::removeOutput(const std::shared_ptr<VideoOutput>& output)
{
    std::erase(outputs, output);
    if (feed)
        feed->removeOutput(output);
    output->clear();
}

void AVPlayer::didBecomeReady(const MediaFacts& facts)
{
    const auto self = weak(this).lock();
    opening.reset();
    const auto ready = item;
    if (isStepped)
        step();
    ready->becomeReady(facts);
    if (item != ready || !isStepped || !wantsToPlay || isRolling || !seeks.empty())
        return;
    roll(anchorTime, Clock::current().now());
    updateStatus();
}

void AVPlayer::didFail(const std::string& problem)
{
    const auto self = weak(this).lock();
    NSLog("video \"" + item->asset()->url().absoluteString() + "\" not played: " + problem);
    const auto failed = item;
    const double time = currentTime();
    close();
    stand(time);
    failed->fail(problem);
    updateStatus();
}

void AVPlayer::didStep(std::uint64_t id, std::optional<double> next)
{
    if (id != stepId)
        return;
    const auto job = std::exchange(stepJob, std::nullopt); // until what follows is scheduled
    nextFrame = next;
    scheduleStep();
}

void AVPlayer::didSeek(std::uint64_t id, bool finished)
{
    const auto self = weak(this).lock();
    const auto entry = seeks.find(id);
    if (entry == seeks.end())
        return;
    const Seek done = std::move(entry->second);
    seeks.erase(entry);
    const bool isLast = seeks.empty();
    if (isLast && isStepped) {
        step();
        if (wantsToPlay && isReady())
            roll(anchorTime, Clock::current().now());
        updateStatus();
    }
    if (done.completion)
        done.completion(finished);
    if (isLast && pipeline)
        tellObservers();
}

void AVPlayer::didStart(double time, double clock)
{
    if (!wantsToPlay || isAtEnd || !seeks.empty())
        return;
    const auto self = weak(this).lock();
    roll(time, clock);
    updateStatus();
    tellObservers();
}

void AVPlayer::didStall()
{
    stand(currentTime());
    updateStatus();
}

void AVPlayer::didEnd()
{
    if (!seeks.empty() || std::exchange(isAtEnd, true))
        return;
    const auto self = weak(this).lock();
    const auto ended = item;
    stand(std::isfinite(ended->duration()) ? ended->duration() : currentTime());
    if (actionAtEnd == AVPlayerActionAtItemEnd::pause) {
        wantsToPlay = false;
        pipeline->pause();
    }
    updateStatus();
    tellObservers();
    NotificationCenter::defaultCenter().post(AVPlayerItem::didPlayToEndTimeNotification, ended);
}

void AVPlayer::roll(double time, double clock)
{
    isRolling = true;
    anchorTime = time;
    anchorClock = clock;
    scheduleStep();
    for (auto& [id, observer] : observers)
        schedule(id);
}

void AVPlayer::stand(double time)
{
    isRolling = false;
    anchorTime = time;
    if (stepTicket)
        MainQueue::shared().cancel(*std::exchange(stepTicket, std::nullopt));
    cancelSchedules();
}

void AVPlayer::updateStatus()
{
    using Status = AVPlayerTimeControlStatus;
    const bool plays = isRolling || isAtEnd;
    const Status now = !wantsToPlay ? Status::paused : plays ? Status::playing : Status::waitingToPlay;
    const Status before = std::exchange(status, now);
    if (before == now)
        return;
    if (const auto call = onTimeControlStatusChange)
        call(before, now);
}

template <typename Call> MainQueue::Ticket AVPlayer::callAt(double time, Call call)
{
    return MainQueue::shared().asyncAt(anchorClock + (time - anchorTime), [weakSelf = weak(this), call] {
        if (const auto self = weakSelf.lock())
            call(*self);
    });
}

// Asks for the frame of the present time.
void AVPlayer::step()
{
    stepId = ++lastId;
    stepJob.emplace();
    pipeline->step(stepId, currentTime());
}

// The next frame when its time comes, and after the last one the end.
void AVPlayer::scheduleStep()
{
    if (!isStepped || !isRolling || stepJob || stepTicket)
        return;
    if (nextFrame) {
        stepTicket = callAt(*nextFrame, [](AVPlayer& self) {
            self.stepTicket.reset();
            self.step();
        });
    } else if (std::isfinite(item->duration())) {
        stepTicket = callAt(item->duration(), [](AVPlayer& self) {
            self.stepTicket.reset();
            self.didEnd();
        });
    }
}

// An answer that is still under way counts no more.
void AVPlayer::cancelStep()
{
    stepId = 0;
    stepJob.reset();
    nextFrame.reset();
}

AVPlayer::TimeObserver AVPlayer::addPeriodicTimeObserver(double interval, std::function<void(double time)> callback)
{
    const auto id = ++lastId;
    observers.emplace(id, Observer { interval > shortestInterval ? interval : shortestInterval, std::move(callback), {} });
    schedule(id);
    return id;
}

void AVPlayer::removeTimeObserver(TimeObserver observer)
{
    const auto entry = observers.find(observer);
    if (entry == observers.end())
        return;
    if (entry->second.ticket)
        MainQueue::shared().cancel(*entry->second.ticket);
    observers.erase(entry);
}

void AVPlayer::tellObservers()
{
    std::vector<TimeObserver> all;
    for (const auto& [id, observer] : observers)
        all.push_back(id);
    for (const auto id : all)
        tellObserver(id);
}

void AVPlayer::tellObserver(TimeObserver id)
{
    const auto entry = observers.find(id);
    if (entry == observers.end())
        return;
    const auto call = entry->second.callback;
    call(currentTime());
}

void AVPlayer::schedule(TimeObserver id)
{
    auto& observer = observers.at(id);
    if (observer.ticket)
        MainQueue::shared().cancel(*std::exchange(observer.ticket, std::nullopt));
    if (!isRolling)
        return;
    const double next = (std::floor(currentTime() / observer.interval + 1e-6) + 1) * observer.interval;
    if (next >= item->duration())
        return; // the end tells itself
    observer.ticket = callAt(next, [id](AVPlayer& self) {
        if (const auto entry = self.observers.find(id); entry != self.observers.end())
            entry->second.ticket.reset();
        else
            return;
        self.schedule(id);
        self.tellObserver(id);
    });
}

void AVPlayer::cancelSchedules()
{
    for (auto& [id, observer] : observers)
        if (observer.ticket)
            MainQueue::shared().cancel(*std::exchange(observer.ticket, std::nullopt));
}

} // namespace platform
