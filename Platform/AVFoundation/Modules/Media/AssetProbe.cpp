#include "Platform/AVFoundation/Modules/Media/AssetProbe.h"

#include "Platform/AVFoundation/Modules/Media/MediaWorker.h"

#include <gst/pbutils/pbutils.h>

#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr GstClockTime longestLook = 15 * GST_SECOND;

struct Probe {
    GstDiscoverer* discoverer = nullptr;
    std::function<void(const MediaFacts&)> done;
};

template <typename Visit> void visitStreams(GstDiscovererInfo* info, const Visit& visit)
{
    GList* const streams = gst_discoverer_info_get_stream_list(info);
    for (GList* entry = streams; entry; entry = entry->next)
        visit(static_cast<GstDiscovererStreamInfo*>(entry->data));
    gst_discoverer_stream_info_list_free(streams);
}

bool isEncrypted(GstDiscovererStreamInfo* stream)
{
    GstCaps* caps = gst_discoverer_stream_info_get_caps(stream);
    if (!caps)
        return false;
    const GstStructure* format = gst_caps_is_empty(caps) || gst_caps_is_any(caps) ? nullptr : gst_caps_get_structure(caps, 0);
    const std::string_view name = format ? gst_structure_get_name(format) : "";
    gst_caps_unref(caps);
    return name == "application/x-cenc" || name == "application/x-cbcs";
}

void addVideo(MediaFacts& facts, GstDiscovererVideoInfo* video)
{
    facts.width = int(gst_discoverer_video_info_get_width(video));
    facts.height = int(gst_discoverer_video_info_get_height(video));
    const auto across = gst_discoverer_video_info_get_par_num(video), down = gst_discoverer_video_info_get_par_denom(video);
    if (across > 0 && down > 0)
        facts.width = int(std::lround(double(facts.width) * across / down));
}

MediaFacts factsOf(GstDiscovererInfo* info, const GError* error)
{
    MediaFacts facts;
    bool hasSound = false, hasPicture = false;
    visitStreams(info, [&](GstDiscovererStreamInfo* stream) {
        facts.isProtected = facts.isProtected || isEncrypted(stream);
        hasSound = hasSound || GST_IS_DISCOVERER_AUDIO_INFO(stream);
        if (!GST_IS_DISCOVERER_VIDEO_INFO(stream) || gst_discoverer_video_info_is_image(GST_DISCOVERER_VIDEO_INFO(stream)))
            return;
        hasPicture = true;
        addVideo(facts, GST_DISCOVERER_VIDEO_INFO(stream));
    });
    const auto duration = gst_discoverer_info_get_duration(info);
    facts.duration = GST_CLOCK_TIME_IS_VALID(duration) && duration > 0 ? double(duration) / GST_SECOND
                                                                       : std::numeric_limits<double>::infinity();
    const std::string why = error ? error->message : "";
    switch (gst_discoverer_info_get_result(info)) {
    case GST_DISCOVERER_OK:
        if (!hasSound && !hasPicture)
            facts.unplayable = "holds neither picture nor sound";
        break;
    case GST_DISCOVERER_MISSING_PLUGINS:
        facts.unplayable = why.empty() ? "no decoder for it is installed" : why;
        break;
    case GST_DISCOVERER_TIMEOUT:
        facts.problem = "took too long to be read";
        break;
    default:
        (error && error->domain == GST_RESOURCE_ERROR ? facts.problem : facts.unplayable) = why.empty() ? "cannot be read" : why;
        break;
    }
    return facts;
}

void didDiscover(GstDiscoverer*, GstDiscovererInfo* info, GError* error, Probe* probe)
{
    if (const auto call = std::exchange(probe->done, nullptr))
        call(factsOf(info, error));
    // The library is still at it when it calls back.
    MediaWorker::shared().post([probe] {
        gst_discoverer_stop(probe->discoverer);
        g_object_unref(probe->discoverer);
        delete probe;
    });
}

} // namespace

void probeAsset(const std::string& address, std::function<void(const MediaFacts& facts)> done)
{
    GError* error = nullptr;
    GstDiscoverer* discoverer = gst_discoverer_new(longestLook, &error);
    if (!discoverer) {
        MediaFacts facts;
        facts.problem = error ? error->message : "the media library cannot look at it";
        g_clear_error(&error);
        return done(facts);
    }
    auto* probe = new Probe { discoverer, std::move(done) };
    g_signal_connect(discoverer, "discovered", G_CALLBACK(didDiscover), probe);
    gst_discoverer_start(discoverer);
    gst_discoverer_discover_uri_async(discoverer, address.c_str());
}

} // namespace platform
