#include "Platform/AVFoundation/Modules/Media/PlaybinElements.h"

#include "Platform/AVFoundation/Modules/Media/AudioOutput.h"
#include "Platform/AVFoundation/Modules/Media/DecodedFrame.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr gint64 latestFrame = 100 * GST_MSECOND; // later ones are left out
constexpr guint settlingCheck = 100; // milliseconds

// Bits of the pipeline's flags.
enum PlayFlag : unsigned { playVideo = 1, playAudio = 2, softVolume = 0x10, bufferNetwork = 0x100 };

std::string takeMessage(GError* error)
{
    std::string text = error ? error->message : "unknown";
    g_clear_error(&error);
    return text;
}

void drop(GSource*& watch)
{
    if (!watch)
        return;
    g_source_destroy(watch);
    g_source_unref(std::exchange(watch, nullptr));
}

// Whether the element was to find out what a medium holds, found nothing, and has stopped.
bool isStuckDemuxer(GstElement* element)
{
    const auto* kind = gst_element_class_get_metadata(GST_ELEMENT_GET_CLASS(element), GST_ELEMENT_METADATA_KLASS);
    if (!kind || std::string(kind).find("Demux") == std::string::npos || element->numsrcpads > 0)
        return false;
    GstPad* pad = gst_element_get_static_pad(element, "sink");
    const bool hasStopped = pad && gst_pad_get_task_state(pad) == GST_TASK_PAUSED;
    if (pad)
        gst_object_unref(pad);
    return hasStopped;
}

} // namespace

struct PlaybinElements::Impl {
    const std::string address;
    const bool isStepped;
    Owner& owner;
    AudioTap audio;
    GstElement* playbin = nullptr;
    GstElement* videoSink = nullptr; // the pipeline's
    GSource* busWatch = nullptr;
    GSource* settlingWatch = nullptr; // until it has settled
    std::atomic<GstClockTime> dataEnd { 0 }; // nanoseconds of the medium

    Impl(const std::string& address, MediaPace pace, Owner& owner)
        : address(address)
        , isStepped(pace == MediaPace::steps)
        , owner(owner)
    {
    }
    bool make();
    void noteEnds(GstElement* sink);
    void watchBus();
    void watchSettling();
    bool isStuck() const;
    void take(GstMessage* message);
    GstFlowReturn show(GstSample* sample);

    static GstPadProbeReturn didArrive(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static gboolean didWait(gpointer self);
    static gboolean didPost(GstBus*, GstMessage* message, gpointer self);
    static GstFlowReturn didSample(GstAppSink* sink, gpointer self);
    static GstFlowReturn didPreroll(GstAppSink* sink, gpointer self);
};

PlaybinElements::PlaybinElements(const std::string& address, MediaPace pace, Owner& owner)
    : impl(std::make_unique<Impl>(address, pace, owner))
{
}

PlaybinElements::~PlaybinElements() { close(); }

bool PlaybinElements::open()
{
    if (!impl->make())
        return false;
    impl->watchBus();
    impl->watchSettling();
    // The same clock as RealClock, so that the player's arithmetic and the frames agree.
    GstClock* clock = gst_system_clock_obtain();
    gst_pipeline_use_clock(GST_PIPELINE(impl->playbin), clock);
    gst_object_unref(clock);
    setRunning(false); // a failure comes by the bus
    return true;
}

bool PlaybinElements::Impl::make()
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
void PlaybinElements::Impl::noteEnds(GstElement* sink)
{
    GstPad* pad = gst_element_get_static_pad(sink, "sink");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, didArrive, this, nullptr);
    gst_object_unref(pad);
}

GstPadProbeReturn PlaybinElements::Impl::didArrive(GstPad* pad, GstPadProbeInfo* info, gpointer self)
{
    auto& end = static_cast<Impl*>(self)->dataEnd;
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

void PlaybinElements::Impl::watchBus()
{
    GstBus* bus = gst_element_get_bus(playbin);
    busWatch = gst_bus_create_watch(bus);
    g_source_set_callback(busWatch, G_SOURCE_FUNC(didPost), this, nullptr);
    g_source_attach(busWatch, g_main_context_get_thread_default());
    gst_object_unref(bus);
}

// The library loses the complaint of an element that fails while it is being put in its place: then nothing follows, neither a
// picture nor a word.
void PlaybinElements::Impl::watchSettling()
{
    settlingWatch = g_timeout_source_new(settlingCheck);
    g_source_set_callback(settlingWatch, didWait, this, nullptr);
    g_source_attach(settlingWatch, g_main_context_get_thread_default());
}

bool PlaybinElements::Impl::isStuck() const
{
    GstIterator* all = gst_bin_iterate_recurse(GST_BIN(playbin));
    GValue found = G_VALUE_INIT;
    const auto compare = [](gconstpointer item, gconstpointer) -> gint {
        return isStuckDemuxer(static_cast<GstElement*>(g_value_get_object(static_cast<const GValue*>(item)))) ? 0 : 1;
    };
    const bool isStuck = gst_iterator_find_custom(all, compare, &found, nullptr);
    if (isStuck)
        g_value_unset(&found);
    gst_iterator_free(all);
    return isStuck;
}

gboolean PlaybinElements::Impl::didWait(gpointer self)
{
    auto& elements = *static_cast<Impl*>(self);
    if (!elements.isStuck())
        return G_SOURCE_CONTINUE;
    elements.owner.didFail("it holds nothing that can be played");
    return G_SOURCE_REMOVE;
}

void PlaybinElements::close()
{
    if (!impl->playbin)
        return;
    drop(impl->busWatch);
    drop(impl->settlingWatch);
    gst_element_set_state(impl->playbin, GST_STATE_NULL); // returns when its threads have let go
    gst_object_unref(std::exchange(impl->playbin, nullptr));
    impl->videoSink = nullptr;
}

void PlaybinElements::setRunning(bool isRunning)
{
    if (impl->playbin)
        gst_element_set_state(impl->playbin, isRunning ? GST_STATE_PLAYING : GST_STATE_PAUSED);
}

bool PlaybinElements::seek(double seconds, bool isExact)
{
    impl->dataEnd = 0;
    const int flags = GST_SEEK_FLAG_FLUSH | (isExact ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT);
    return impl->playbin
        && gst_element_seek_simple(
            impl->playbin, GST_FORMAT_TIME, static_cast<GstSeekFlags>(flags), gint64(std::min(seconds, 1e9) * GST_SECOND));
}

std::shared_ptr<const VideoFrame> PlaybinElements::pull()
{
    GstSample* sample = impl->videoSink ? gst_app_sink_try_pull_sample(GST_APP_SINK(impl->videoSink), 0) : nullptr;
    return sample ? makeDecodedFrame(sample) : nullptr;
}

void PlaybinElements::setVolume(double volume, bool isMuted)
{
    if (impl->playbin)
        g_object_set(impl->playbin, "volume", std::clamp(volume, 0.0, 1.0), "mute", gboolean(isMuted), nullptr);
}

MediaFacts PlaybinElements::facts() const
{
    MediaFacts facts;
    if (!impl->playbin)
        return facts;
    gint64 duration = 0;
    const bool isKnown = gst_element_query_duration(impl->playbin, GST_FORMAT_TIME, &duration) && duration > 0;
    facts.duration = isKnown ? double(duration) / GST_SECOND : std::numeric_limits<double>::infinity();
    GstPad* pad = gst_element_get_static_pad(impl->videoSink, "sink");
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
    return facts;
}

std::optional<double> PlaybinElements::position() const
{
    gint64 position = 0;
    if (!impl->playbin || !gst_element_query_position(impl->playbin, GST_FORMAT_TIME, &position))
        return std::nullopt;
    return double(position) / GST_SECOND;
}

double PlaybinElements::dataEnd() const { return double(impl->dataEnd.load()) / GST_SECOND; }

double PlaybinElements::takeAudioPeak() { return impl->audio.peak.exchange(0) / 32768.0; }

void PlaybinElements::Impl::take(GstMessage* message)
{
    const bool isOwn = GST_MESSAGE_SRC(message) == GST_OBJECT(playbin);
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
        if (!isOwn)
            return;
        drop(settlingWatch);
        return owner.didSettle();
    case GST_MESSAGE_STATE_CHANGED: {
        GstState state = GST_STATE_NULL;
        gst_message_parse_state_changed(message, nullptr, &state, nullptr);
        return isOwn && state == GST_STATE_PLAYING ? owner.didRun() : void();
    }
    case GST_MESSAGE_BUFFERING: {
        int percent = 100;
        gst_message_parse_buffering(message, &percent);
        return owner.didBuffer(percent);
    }
    case GST_MESSAGE_EOS:
        return owner.didEnd();
    case GST_MESSAGE_ERROR: {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        return owner.didFail(takeMessage(error));
    }
    default:
        return;
    }
}

gboolean PlaybinElements::Impl::didPost(GstBus*, GstMessage* message, gpointer self)
{
    static_cast<Impl*>(self)->take(message);
    return G_SOURCE_CONTINUE;
}

GstFlowReturn PlaybinElements::Impl::didSample(GstAppSink* sink, gpointer self)
{
    auto& elements = *static_cast<Impl*>(self);
    if (!elements.isStepped)
        return elements.show(gst_app_sink_try_pull_sample(sink, 0));
    elements.owner.didQueue();
    return GST_FLOW_OK;
}

GstFlowReturn PlaybinElements::Impl::didPreroll(GstAppSink* sink, gpointer self)
{
    auto& elements = *static_cast<Impl*>(self);
    return elements.isStepped ? GST_FLOW_OK : elements.show(gst_app_sink_try_pull_preroll(sink, 0));
}

GstFlowReturn PlaybinElements::Impl::show(GstSample* sample)
{
    if (!sample)
        return GST_FLOW_OK;
    if (auto frame = makeDecodedFrame(sample))
        owner.didShow(std::move(frame));
    return GST_FLOW_OK;
}

} // namespace platform
