#include "Platform/AVFoundation/Modules/Media/Playbin.h"

#include "Platform/AVFoundation/Modules/Media/AudioOutput.h"
#include "Platform/AVFoundation/Modules/Media/DecodedFrame.h"
#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr double underDuration = 0.001; // seconds; a seek to the very end may never come to its end
constexpr double sameTime = 1e-6; // seconds; the times of frames are rounded to nanoseconds
constexpr double missingEnd = 0.5; // seconds; a medium that ends so much before its duration was cut off
constexpr gint64 latestFrame = 100 * GST_MSECOND; // later ones are left out

// Bits of the pipeline's flags.
enum PlayFlag : unsigned { playVideo = 1, playAudio = 2, softVolume = 0x10, bufferNetwork = 0x100 };

std::string takeMessage(GError* error)
{
    std::string text = error ? error->message : "unknown";
    g_clear_error(&error);
    return text;
}

// The library's pipeline. Lives on the worker's thread; frames come from a thread of the library.
class Playbin final : public std::enable_shared_from_this<Playbin> {
public:
    Playbin(std::string address, MediaPace pace, std::shared_ptr<MediaListener> listener)
        : address(std::move(address))
        , isStepped(pace == MediaPace::steps)
        , listener(std::move(listener))
    {
    }
    ~Playbin() { close(); }

    void open();
    void close();
    void play();
    void pause();
    void seek(std::uint64_t id, double seconds, bool isExact);
    void step(std::uint64_t id, double seconds);
    void setVolume(double volume, bool isMuted);

    AudioTap audio;

private:
    struct Seek {
        std::uint64_t id;
        double seconds;
        bool isExact;
    };
    struct Step {
        std::uint64_t id;
        double seconds;
    };

    bool makeElements();
    void noteEnds(GstElement* sink);
    void watchBus();
    void take(GstMessage* message);
    void didSettle();
    void didBuffer(int percent);
    void didEnd();
    void fail(const std::string& problem);
    void becomeReady();
    void beginSeek(const Seek& wanted);
    void pump();
    std::shared_ptr<const VideoFrame> pull();
    void setState(GstState state) { gst_element_set_state(playbin, state); }
    void setRunning();
    void tellStart();

    static GstPadProbeReturn didArrive(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static gboolean didPost(GstBus*, GstMessage* message, gpointer self);
    static GstFlowReturn didSample(GstAppSink* sink, gpointer self);
    static GstFlowReturn didPreroll(GstAppSink* sink, gpointer self);
    GstFlowReturn show(GstSample* sample);

    const std::string address;
    const bool isStepped;
    const std::shared_ptr<MediaListener> listener;
    GstElement* playbin = nullptr;
    GstElement* videoSink = nullptr; // the pipeline's
    GSource* busWatch = nullptr;
    MediaFacts facts;
    bool isReady = false, hasFailed = false, isEnded = false;
    bool wantsToPlay = false, isBuffering = false;
    std::optional<Seek> seeking, nextSeek;
    std::atomic<GstClockTime> dataEnd { 0 }; // where the last picture or sound ended, nanoseconds of the medium
    // In steps.
    std::optional<Step> stepping;
    std::shared_ptr<const VideoFrame> upcoming; // the first frame that is not shown yet
    std::shared_ptr<const VideoFrame> reached; // the last frame taken for the step under way
    bool hasShown = false; // since the last seek; or is about to
};

void Playbin::open()
{
    if (!makeElements())
        return fail("the media library lacks a part");
    watchBus();
    // The same clock as RealClock, so that the player's arithmetic and the frames agree.
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(playbin), clock);
    gst_object_unref(clock);
    setState(GST_STATE_PAUSED); // a failure comes by the bus
}

bool Playbin::makeElements()
{
    playbin = gst_element_factory_make("playbin", nullptr);
    videoSink = gst_element_factory_make("appsink", nullptr);
    auto* audioSink = static_cast<GstElement*>(makeAudioOutput(!isStepped, audio));
    if (!playbin || !videoSink || !audioSink) {
        for (GstElement* made : { std::exchange(playbin, nullptr), std::exchange(videoSink, nullptr), audioSink })
            if (made)
                gst_object_unref(gst_object_ref_sink(made));
        return false;
    }
    gst_object_ref_sink(playbin);
    GstCaps* caps = gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", nullptr);
    g_object_set(videoSink, "caps", caps, "max-buffers", 2u, "drop", gboolean(!isStepped), "sync", gboolean(!isStepped), "qos",
        gboolean(!isStepped), "max-lateness", isStepped ? gint64(-1) : latestFrame, "enable-last-sample", FALSE, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks {};
    callbacks.new_sample = didSample;
    callbacks.new_preroll = didPreroll;
    gst_app_sink_set_callbacks(GST_APP_SINK(videoSink), &callbacks, this, nullptr);
    noteEnds(videoSink);
    noteEnds(audioSink);
    const bool isRemote = address.rfind("file:", 0) != 0;
    const unsigned flags = playVideo | playAudio | softVolume | (isRemote ? unsigned(bufferNetwork) : 0u);
    g_object_set(playbin, "uri", address.c_str(), "video-sink", videoSink, "audio-sink", audioSink, "flags", flags, nullptr);
    return true;
}

// A medium that was cut off ends like a whole one, only early.
void Playbin::noteEnds(GstElement* sink)
{
    GstPad* pad = gst_element_get_static_pad(sink, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, didArrive, this, nullptr);
    gst_object_unref(pad);
}

GstPadProbeReturn Playbin::didArrive(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto& end = static_cast<Playbin*>(self)->dataEnd;
    const GstBuffer* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
    GstEvent* event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (!event)
        return GST_PAD_PROBE_OK;
    const GstSegment* segment = nullptr;
    gst_event_parse_segment(event, &segment);
    auto time = gst_segment_to_stream_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    if (GST_CLOCK_TIME_IS_VALID(time)) {
        time += GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : 0;
        GstClockTime before = end.load();
        while (before < time && !end.compare_exchange_weak(before, time)) { }
    }
    gst_event_unref(event);
    return GST_PAD_PROBE_OK;
}

void Playbin::watchBus()
{
    GstBus* bus = gst_element_get_bus(playbin);
    busWatch = gst_bus_create_watch(bus);
    g_source_set_callback(busWatch, G_SOURCE_FUNC(didPost), this, nullptr);
    g_source_attach(busWatch, g_main_context_get_thread_default());
    gst_object_unref(bus);
}

void Playbin::close()
{
    if (!playbin)
        return;
    if (busWatch) {
        g_source_destroy(busWatch);
        g_source_unref(busWatch);
        busWatch = nullptr;
    }
    upcoming = reached = nullptr;
    setState(GST_STATE_NULL); // returns when its threads have let go
    gst_object_unref(std::exchange(playbin, nullptr));
    videoSink = nullptr;
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
        setState(isStepped || (wantsToPlay && !isBuffering) ? GST_STATE_PLAYING : GST_STATE_PAUSED);
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
    dataEnd = 0;
    const double seconds = std::clamp(wanted.seconds, 0.0, std::max(facts.duration - underDuration, 0.0));
    const int flags = GST_SEEK_FLAG_FLUSH | (wanted.isExact ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT);
    if (gst_element_seek_simple(
            playbin, GST_FORMAT_TIME, static_cast<GstSeekFlags>(flags), gint64(std::min(seconds, 1e9) * GST_SECOND)))
        return; // the bus says when it is there
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
    if (!stepping || !isReady || seeking || nextSeek || !playbin)
        return;
    for (;;) {
        if (!upcoming)
            upcoming = pull();
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

std::shared_ptr<const VideoFrame> Playbin::pull()
{
    GstSample* sample = gst_app_sink_try_pull_sample(GST_APP_SINK(videoSink), 0);
    return sample ? makeDecodedFrame(sample) : nullptr;
}

void Playbin::setVolume(double volume, bool isMuted)
{
    if (playbin)
        g_object_set(playbin, "volume", std::clamp(volume, 0.0, 1.0), "mute", gboolean(isMuted), nullptr);
}

void Playbin::take(GstMessage* message)
{
    const bool isOwn = GST_MESSAGE_SRC(message) == GST_OBJECT(playbin);
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
        return isOwn ? didSettle() : void();
    case GST_MESSAGE_STATE_CHANGED: {
        GstState state = GST_STATE_NULL;
        gst_message_parse_state_changed(message, nullptr, &state, nullptr);
        return isOwn && state == GST_STATE_PLAYING && !isStepped && wantsToPlay ? tellStart() : void();
    }
    case GST_MESSAGE_BUFFERING: {
        int percent = 100;
        gst_message_parse_buffering(message, &percent);
        return didBuffer(percent);
    }
    case GST_MESSAGE_EOS:
        return didEnd();
    case GST_MESSAGE_ERROR: {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        return fail(takeMessage(error));
    }
    default:
        return;
    }
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
    gint64 duration = 0;
    const bool isKnown = gst_element_query_duration(playbin, GST_FORMAT_TIME, &duration) && duration > 0;
    facts.duration = isKnown ? double(duration) / GST_SECOND : std::numeric_limits<double>::infinity();
    GstPad* pad = gst_element_get_static_pad(videoSink, "sink");
    if (GstCaps* caps = gst_pad_get_current_caps(pad)) {
        const GstStructure* format = gst_caps_get_structure(caps, 0);
        int across = 1, down = 1;
        gst_structure_get_int(format, "width", &facts.width);
        gst_structure_get_int(format, "height", &facts.height);
        if (gst_structure_get_fraction(format, "pixel-aspect-ratio", &across, &down) && across > 0 && down > 0)
            facts.width = int(gst_util_uint64_scale_int_round(guint64(facts.width), across, down));
        gst_caps_unref(caps);
    }
    gst_object_unref(pad);
    isReady = true;
    listener->mediaDidBecomeReady(facts);
    setRunning();
}

void Playbin::tellStart()
{
    gint64 position = 0;
    if (gst_element_query_position(playbin, GST_FORMAT_TIME, &position))
        listener->mediaDidStart(double(position) / GST_SECOND, double(g_get_monotonic_time()) / G_USEC_PER_SEC);
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
    const double end = double(dataEnd.load()) / GST_SECOND;
    if (end + missingEnd < facts.duration && facts.duration < std::numeric_limits<double>::infinity())
        return fail("it breaks off after " + std::to_string(end) + " of " + std::to_string(facts.duration) + " s");
    isEnded = true;
    if (isStepped)
        pump();
    else
        listener->mediaDidEnd();
}

void Playbin::fail(const std::string& problem)
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

gboolean Playbin::didPost(GstBus*, GstMessage* message, gpointer self)
{
    const auto kept = static_cast<Playbin*>(self)->shared_from_this();
    kept->take(message);
    return G_SOURCE_CONTINUE;
}

GstFlowReturn Playbin::didSample(GstAppSink* sink, gpointer self)
{
    auto& playbin = *static_cast<Playbin*>(self);
    if (!playbin.isStepped)
        return playbin.show(gst_app_sink_try_pull_sample(sink, 0));
    MediaWorker::shared().post([weak = playbin.weak_from_this()] {
        if (const auto kept = weak.lock())
            kept->pump();
    });
    return GST_FLOW_OK;
}

GstFlowReturn Playbin::didPreroll(GstAppSink* sink, gpointer self)
{
    auto& playbin = *static_cast<Playbin*>(self);
    return playbin.isStepped ? GST_FLOW_OK : playbin.show(gst_app_sink_try_pull_preroll(sink, 0));
}

GstFlowReturn Playbin::show(GstSample* sample)
{
    if (!sample)
        return GST_FLOW_OK;
    if (auto frame = makeDecodedFrame(sample))
        listener->mediaDidShow(std::move(frame));
    return GST_FLOW_OK;
}

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
    double takeAudioPeak() override { return playbin->audio.peak.exchange(0) / 32768.0; }

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
