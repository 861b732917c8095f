#include "Platform/AVFoundation/Modules/Media/AudioOutput.h"

#include <gst/gst.h>

#include <algorithm>
#include <cstdlib>

namespace platform {

namespace {

// The user's sound server; null when it does not answer.
GstElement* makeDevice()
{
    GstElement* device = gst_element_factory_make("pulsesink", nullptr);
    if (!device)
        return nullptr;
    // No element answers for it yet; without a bus of its own its complaint would go nowhere.
    const bool isThere = gst_element_set_state(device, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE;
    if (isThere)
        return device;
    gst_element_set_state(device, GST_STATE_NULL);
    gst_object_unref(gst_object_ref_sink(device));
    return nullptr;
}

GstElement* makeSilentSink(bool keepsTime)
{
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    if (sink)
        g_object_set(sink, "sync", gboolean(keepsTime), "enable-last-sample", FALSE, nullptr);
    return sink;
}

constexpr const char* heard = G_BYTE_ORDER == G_LITTLE_ENDIAN ? "audio/x-raw,format=S16LE,layout=interleaved"
                                                              : "audio/x-raw,format=S16BE,layout=interleaved";
// As it lies in the file: nothing of it is decoded.
constexpr const char* unheard = "audio/x-raw; audio/x-opus; audio/x-vorbis; audio/mpeg; audio/x-flac; audio/x-ac3";

GstPadProbeReturn didPass(GstPad*, GstPadProbeInfo* info, gpointer user)
{
    auto& tap = *static_cast<AudioTap*>(user);
    GstMapInfo map;
    if (!gst_buffer_map(GST_PAD_PROBE_INFO_BUFFER(info), &map, GST_MAP_READ))
        return GST_PAD_PROBE_OK;
    const auto* samples = reinterpret_cast<const std::int16_t*>(map.data);
    int loudest = 0;
    for (gsize i = 0; i < map.size / sizeof *samples; ++i)
        loudest = std::max(loudest, std::abs(int(samples[i])));
    gst_buffer_unmap(GST_PAD_PROBE_INFO_BUFFER(info), &map);
    int before = tap.peak.load();
    while (before < loudest && !tap.peak.compare_exchange_weak(before, loudest)) { }
    return GST_PAD_PROBE_OK;
}

} // namespace

void* makeAudioOutput(bool keepsTime, AudioTap& tap)
{
    GstElement* bin = gst_bin_new(nullptr);
    GstElement* filter = gst_element_factory_make("capsfilter", nullptr);
    GstElement* sink = keepsTime ? makeDevice() : nullptr;
    if (!sink)
        sink = makeSilentSink(keepsTime);
    if (!filter || !sink) {
        if (filter)
            gst_object_unref(gst_object_ref_sink(filter));
        if (sink)
            gst_object_unref(gst_object_ref_sink(sink));
        gst_object_unref(gst_object_ref_sink(bin));
        return nullptr;
    }
    GstCaps* caps = gst_caps_from_string(keepsTime ? heard : unheard);
    g_object_set(filter, "caps", caps, nullptr);
    gst_caps_unref(caps);
    gst_bin_add_many(GST_BIN(bin), filter, sink, nullptr);
    gst_element_link(filter, sink);
    GstPad* input = gst_element_get_static_pad(filter, "sink");
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", input));
    gst_object_unref(input);
    if (keepsTime) {
        GstPad* output = gst_element_get_static_pad(filter, "src");
        gst_pad_add_probe(output, GST_PAD_PROBE_TYPE_BUFFER, didPass, &tap, nullptr);
        gst_object_unref(output);
    }
    return bin;
}

} // namespace platform
