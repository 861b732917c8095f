#include "Tests/Support/TestVideo.h"

#include "Showroom/Media/FrameCode.h"

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace test {

namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels frameOf(const TestVideo& video, int number)
{
    Pixels pixels(std::size_t(video.width) * std::size_t(video.height));
    const auto cells = showroom::media::frameCode::cells(number);
    const int cell = video.width / (int(cells.size()) + 6), left = (video.width - cell * int(cells.size())) / 2;
    const int top = video.height / 2 - 2 * cell, bottom = video.height / 2 + 2 * cell;
    for (int y = 0; y < video.height; ++y) {
        const std::uint32_t gray = 160 - std::uint32_t(80 * y / video.height);
        for (int x = 0; x < video.width; ++x) {
            std::uint32_t word = gray << 16 | gray << 8 | gray;
            const int at = x - left < 0 ? -1 : (x - left) / cell;
            if (y >= top && y < bottom && at >= 0 && at < int(cells.size()))
                word = cells[std::size_t(at)] ? 0xf0f0f0 : 0x101010;
            else if (x < video.width / 16)
                word = 0xc02020;
            else if (x >= video.width - video.width / 16)
                word = 0x2020c0;
            pixels[std::size_t(y) * std::size_t(video.width) + std::size_t(x)] = word;
        }
    }
    return pixels;
}

// The encoder would take the end for a broken frame and complain on the console.
GstPadProbeReturn passEnd(GstPad* input, GstPadProbeInfo* info, gpointer)
{
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS)
        return GST_PAD_PROBE_OK;
    GstElement* encoder = gst_pad_get_parent_element(input);
    GstPad* output = gst_element_get_static_pad(encoder, "src");
    gst_pad_push_event(output, gst_event_new_eos());
    gst_object_unref(output);
    gst_object_unref(encoder);
    return GST_PAD_PROBE_DROP;
}

void pushFrames(GstElement* source, const TestVideo& video)
{
    const auto timeOf
        = [&](int frame) { return gst_util_uint64_scale(guint64(frame), GST_SECOND, guint64(video.framesPerSecond)); };
    for (int number = 0; number < video.frames; ++number) {
        const Pixels pixels = frameOf(video, number);
        GstBuffer* buffer = gst_buffer_new_memdup(pixels.data(), pixels.size() * 4);
        GST_BUFFER_PTS(buffer) = timeOf(number);
        GST_BUFFER_DURATION(buffer) = timeOf(number + 1) - timeOf(number);
        gst_app_src_push_buffer(GST_APP_SRC(source), buffer);
    }
    gst_app_src_end_of_stream(GST_APP_SRC(source));
}

std::string descriptionOf(const TestVideo& video)
{
    const auto text = [](auto number) { return std::to_string(number); };
    std::string all = "appsrc name=source format=time block=true max-buffers=4 max-bytes=0 caps=video/x-raw,format=BGRx,width="
        + text(video.width) + ",height=" + text(video.height) + ",framerate=" + text(video.framesPerSecond)
        + "/1 ! videoconvert ! video/x-raw,format=I420 ! openh264enc name=encoder complexity=low bitrate=4000000 gop-size="
        + text(video.framesFromKeyToKey)
        + " ! h264parse ! queue max-size-time=0 ! mp4mux name=muxer faststart=true ! filesink name=sink";
    if (video.loudness > 0) {
        constexpr int samples = 480; // a buffer's, at 48 kHz
        all += " audiotestsrc freq=440 volume=" + text(video.loudness) + " samplesperbuffer=" + text(samples)
            + " num-buffers=" + text(video.frames * (48000 / samples) / video.framesPerSecond)
            + " ! audio/x-raw,rate=48000,channels=2 ! audioconvert ! opusenc ! queue max-size-time=0 ! muxer.";
    }
    return all;
}

} // namespace

bool writeTestVideo(const std::string& path, const TestVideo& video)
{
    gst_init(nullptr, nullptr);
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch(descriptionOf(video).c_str(), &error);
    if (error) {
        ADD_FAILURE() << "no test video: " << error->message;
        g_clear_error(&error);
        return false;
    }
    const auto named = [&](const char* name) { return gst_bin_get_by_name(GST_BIN(pipeline), name); };
    GstElement *source = named("source"), *sink = named("sink"), *encoder = named("encoder");
    g_object_set(sink, "location", path.c_str(), nullptr);
    GstPad* input = gst_element_get_static_pad(encoder, "sink");
    gst_pad_add_probe(input, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, passEnd, nullptr, nullptr);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    pushFrames(source, video);
    GstBus* bus = gst_element_get_bus(pipeline);
    GstMessage* message
        = gst_bus_timed_pop_filtered(bus, 30 * GST_SECOND, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool isWhole = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    EXPECT_TRUE(isWhole) << "no test video";
    if (message)
        gst_message_unref(message);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    for (gpointer object :
        { gpointer(bus), gpointer(input), gpointer(source), gpointer(sink), gpointer(encoder), gpointer(pipeline) })
        gst_object_unref(object);
    return isWhole;
}

} // namespace test
