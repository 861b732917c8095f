#include "Platform/AVFoundation/Modules/Media/Playbin.h"

#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"

#include <glib.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr double underDuration = 0.001; // seconds; a seek to the very end may never come to its end
constexpr double sameTime = 1e-6; // seconds; the times of frames are rounded to nanoseconds
constexpr double missingEnd = 0.5; // seconds; a medium that ends so much before its duration was cut off

} // namespace

Playbin::Playbin(const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener)
    : isStepped(pace == MediaPace::steps)
    , listener(std::move(listener))
    , elements(address, pace, *this)
{
}

void Playbin::open()
{
    if (!elements.open())
        didFail("the media library lacks a part");
}

void Playbin::close()
{
    upcoming = reached = nullptr;
    elements.close();
}

void Playbin::play()
{
    wantsToPlay = true;
    setRunning();
}

void Playbin::pause()
{
    wantsToPlay = false;
    setRunning();
}

// In steps the pipeline runs ahead until its short queue is full.
void Playbin::setRunning()
{
    if (isReady && !hasFailed)
        elements.setRunning(isStepped || (wantsToPlay && !isBuffering));
}

void Playbin::seek(std::uint64_t id, double seconds, bool isExact)
{
    if (hasFailed)
        return listener->mediaDidSeek(id, false);
    stepping = std::nullopt; // whoever seeks waits for no step of before
    const Seek wanted { id, seconds, isExact };
    if (isReady && !seeking)
        return beginSeek(wanted);
    if (nextSeek)
        listener->mediaDidSeek(nextSeek->id, false);
    nextSeek = wanted;
}

void Playbin::beginSeek(const Seek& wanted)
{
    seeking = wanted;
    isEnded = hasShown = false;
    upcoming = reached = nullptr;
    if (elements.seek(std::clamp(wanted.seconds, 0.0, std::max(facts.duration - underDuration, 0.0)), wanted.isExact))
        return; // didSettle says when it is there
    seeking = std::nullopt;
    listener->mediaDidSeek(wanted.id, false);
}

void Playbin::step(std::uint64_t id, double seconds)
{
    if (hasFailed)
        return listener->mediaDidStep(id, std::nullopt);
    stepping = Step { id, seconds };
    pump();
}

// Takes frames until the one of the wanted time is known: the last that does not lie after it.
void Playbin::pump()
{
    if (!stepping || !isReady || seeking || nextSeek)
        return;
    for (;;) {
        if (!upcoming)
            upcoming = elements.pull();
        if (!upcoming && !isEnded && facts.width > 0)
            return; // asks again with the next frame, or the end
        if (!upcoming || (hasShown && upcoming->time() > stepping->seconds + sameTime))
            break;
        reached = std::exchange(upcoming, nullptr);
        hasShown = true;
    }
    if (reached)
        listener->mediaDidShow(std::exchange(reached, nullptr));
    const auto id = std::exchange(stepping, std::nullopt)->id;
    listener->mediaDidStep(id, upcoming ? std::optional(upcoming->time()) : std::nullopt);
}

void Playbin::didSettle()
{
    if (!isReady)
        becomeReady();
    else if (seeking)
        listener->mediaDidSeek(std::exchange(seeking, std::nullopt)->id, !nextSeek);
    if (!seeking && nextSeek)
        beginSeek(*std::exchange(nextSeek, std::nullopt));
    pump();
}

void Playbin::becomeReady()
{
    facts = elements.facts();
    isReady = true;
    listener->mediaDidBecomeReady(facts);
    setRunning();
}

void Playbin::didRun()
{
    if (isStepped || !wantsToPlay)
        return;
    if (const auto position = elements.position())
        listener->mediaDidStart(*position, double(g_get_monotonic_time()) / G_USEC_PER_SEC);
}

void Playbin::didBuffer(int percent)
{
    const bool waits = percent < 100;
    if (waits == isBuffering || isStepped)
        return;
    isBuffering = waits;
    if (waits && wantsToPlay && isReady)
        listener->mediaDidStall();
    setRunning();
}

void Playbin::didEnd()
{
    const double end = elements.dataEnd();
    if (end + missingEnd < facts.duration && facts.duration < std::numeric_limits<double>::infinity())
        return didFail("it breaks off after " + std::to_string(end) + " of " + std::to_string(facts.duration) + " s");
    isEnded = true;
    if (isStepped)
        pump();
    else
        listener->mediaDidEnd();
}

void Playbin::didFail(const std::string& problem)
{
    if (std::exchange(hasFailed, true))
        return;
    for (const auto& waiting : { std::exchange(seeking, std::nullopt), std::exchange(nextSeek, std::nullopt) })
        if (waiting)
            listener->mediaDidSeek(waiting->id, false);
    if (const auto waiting = std::exchange(stepping, std::nullopt))
        listener->mediaDidStep(waiting->id, std::nullopt);
    listener->mediaDidFail(problem);
    close();
}

void Playbin::didShow(std::shared_ptr<const VideoFrame> frame) { listener->mediaDidShow(std::move(frame)); }

void Playbin::didQueue()
{
    MediaWorker::shared().post([weak = weak_from_this()] {
        if (const auto kept = weak.lock())
            kept->pump();
    });
}

} // namespace platform
