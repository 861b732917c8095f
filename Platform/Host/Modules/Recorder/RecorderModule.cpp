#include "Platform/Host/RecorderModule.h"

#include "Platform/Foundation/ModuleExport.h"

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <cstring>
#include <utility>

namespace platform {

namespace {

template <typename Object> struct ObjectDeleter {
    void operator()(Object* object) const { gst_object_unref(object); }
};
struct BufferDeleter {
    void operator()(GstBuffer* buffer) const { gst_buffer_unref(buffer); }
};
using BufferPointer = std::unique_ptr<GstBuffer, BufferDeleter>;
template <typename Object> using ObjectPointer = std::unique_ptr<Object, ObjectDeleter<Object>>;

constexpr unsigned mostWaiting = 8; // pictures; at half of a phone's pixels each way 3 MB each
constexpr int bitsPerPixelAndFrame = 4; // in sixteenths: enough for texts to stay sharp
constexpr GstClockTime longestEnding = 30 * GST_SECOND;

std::string takeMessage(GError* error)
{
    std::string text = error ? error->message : "unknown";
    g_clear_error(&error);
    return text;
}

// Carries the end of the film past the encoder, which holds nothing back but would take the end for a broken frame and complain
// on the console.
GstPadProbeReturn passEnd(GstPad* input, GstPadProbeInfo* info, gpointer)
{
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS)
        return GST_PAD_PROBE_OK;
    const ObjectPointer<GstElement> encoder(gst_pad_get_parent_element(input));
    const ObjectPointer<GstPad> output(gst_element_get_static_pad(encoder.get(), "src"));
    gst_pad_push_event(output.get(), gst_event_new_eos());
    return GST_PAD_PROBE_DROP;
}

class Mp4Encoder final : public FilmEncoder {
public:
    Mp4Encoder(GstElement* newPipeline, int framesPerSecond)
        : pipeline(newPipeline)
        , source(gst_bin_get_by_name(GST_BIN(newPipeline), "source"))
        , rate(framesPerSecond)
    {
    }
    ~Mp4Encoder() override { gst_element_set_state(pipeline.get(), GST_STATE_NULL); }

    bool add(std::int64_t number, const std::uint32_t* pixels, int stride, int width, int height, bool mayWait) override
    {
        if (!mayWait && gst_app_src_get_current_level_buffers(GST_APP_SRC(source.get())) >= mostWaiting)
            return false;
        // What fills the gaps repeats the nearer picture, so the former one is there up to now.
        if (last && number > lastNumber + 1 && !push(last.get(), number - 1))
            return false;
        if (width != frameWidth || height != frameHeight)
            setFrameSize(width, height);
        const auto rowLength = std::size_t(width) * 4;
        GstBuffer* buffer = gst_buffer_new_allocate(nullptr, rowLength * height, nullptr);
        GstMapInfo map;
        if (!buffer || !gst_buffer_map(buffer, &map, GST_MAP_WRITE)) {
            gst_clear_buffer(&buffer);
            return false;
        }
        for (int y = 0; y < height; ++y) {
            const auto* row = reinterpret_cast<const std::uint8_t*>(pixels) + std::ptrdiff_t(y) * stride;
            std::memcpy(map.data + y * rowLength, row, rowLength);
        }
        gst_buffer_unmap(buffer, &map);
        last.reset(buffer);
        lastNumber = number;
        return push(buffer, number);
    }

    bool finish(std::string& problem) override
    {
        gst_app_src_end_of_stream(GST_APP_SRC(source.get()));
        ObjectPointer<GstBus> bus(gst_element_get_bus(pipeline.get()));
        GstMessage* message = gst_bus_timed_pop_filtered(
            bus.get(), longestEnding, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
        const bool whole = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
        if (!message) {
            problem = "the encoder does not come to its end";
        } else if (!whole) {
            GError* error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            problem = takeMessage(error);
        }
        if (message)
            gst_message_unref(message);
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        return whole;
    }

private:
    // A copy that shares the pixels.
    bool push(GstBuffer* picture, std::int64_t number)
    {
        GstBuffer* shown = gst_buffer_copy(picture);
        GST_BUFFER_PTS(shown) = timeOf(std::uint64_t(number));
        GST_BUFFER_DURATION(shown) = timeOf(std::uint64_t(number) + 1) - timeOf(std::uint64_t(number));
        return gst_app_src_push_buffer(GST_APP_SRC(source.get()), shown) == GST_FLOW_OK;
    }

    GstClockTime timeOf(std::uint64_t frame) const { return gst_util_uint64_scale(frame, GST_SECOND, rate); }

    void setFrameSize(int width, int height)
    {
        frameWidth = width;
        frameHeight = height;
        // The words 0xXXRRGGBB, in memory blue first.
        GstCaps* caps = gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "BGRx", "width", G_TYPE_INT, width, "height",
            G_TYPE_INT, height, "framerate", GST_TYPE_FRACTION, 0, 1, "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr);
        gst_app_src_set_caps(GST_APP_SRC(source.get()), caps);
        gst_caps_unref(caps);
    }

    ObjectPointer<GstElement> pipeline, source;
    const int rate;
    int frameWidth = 0, frameHeight = 0;
    BufferPointer last; // what was added last
    std::int64_t lastNumber = 0;
};

class Recorder final : public RecorderModule {
public:
    std::unique_ptr<FilmEncoder> open(
        const std::string& path, int width, int height, int framesPerSecond, std::string& problem) override
    {
        GError* error = nullptr;
        if (!gst_init_check(nullptr, nullptr, &error)) {
            problem = takeMessage(error);
            return nullptr;
        }
        const auto bits = std::to_string(std::int64_t(width) * height * framesPerSecond * bitsPerPixelAndFrame / 16);
        const auto description
            = "appsrc name=source format=time block=true max-bytes=0 max-buffers=" + std::to_string(mostWaiting)
            + " ! videoscale add-borders=true ! videoconvert ! video/x-raw,format=I420,pixel-aspect-ratio=1/1,width="
            + std::to_string(width) + ",height=" + std::to_string(height)
            + " ! videorate ! video/x-raw,framerate=" + std::to_string(framesPerSecond) + "/1"
            + " ! openh264enc name=encoder complexity=low gop-size=" + std::to_string(2 * framesPerSecond) + " bitrate=" + bits
            + " ! h264parse ! mp4mux faststart=true ! filesink name=sink";
        GstElement* pipeline = gst_parse_launch(description.c_str(), &error);
        if (error) {
            problem = takeMessage(error);
            if (pipeline)
                gst_object_unref(pipeline);
            return nullptr;
        }
        auto film = std::make_unique<Mp4Encoder>(pipeline, framesPerSecond);
        const ObjectPointer<GstElement> encoder(gst_bin_get_by_name(GST_BIN(pipeline), "encoder"));
        const ObjectPointer<GstPad> input(gst_element_get_static_pad(encoder.get(), "sink"));
        gst_pad_add_probe(input.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, passEnd, nullptr, nullptr);
        const ObjectPointer<GstElement> sink(gst_bin_get_by_name(GST_BIN(pipeline), "sink"));
        g_object_set(sink.get(), "location", path.c_str(), nullptr);
        if (gst_element_set_state(pipeline, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
            problem = "the file cannot be written";
            return nullptr;
        }
        return film;
    }
};

} // namespace

} // namespace platform

MIVORA_EXPORT_MODULE(platform::RecorderModule, platform::Recorder);
