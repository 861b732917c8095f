#include "Showroom/Media/HostVideo/FilmFile.h"

#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace showroom::media {
namespace {

struct Unref {
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstPad* pad) const { gst_object_unref(pad); }
    void operator()(GstBus* bus) const { gst_object_unref(bus); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

constexpr GstClockTime longestEnding = 120 * GST_SECOND;

// Carries the end past the encoder, which would take it for a broken frame and complain.
GstPadProbeReturn passEnd(GstPad* input, GstPadProbeInfo* info, gpointer)
{
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS)
        return GST_PAD_PROBE_OK;
    const Handle<GstElement> encoder(gst_pad_get_parent_element(input));
    const Handle<GstPad> output(gst_element_get_static_pad(encoder.get(), "src"));
    gst_pad_push_event(output.get(), gst_event_new_eos());
    return GST_PAD_PROBE_DROP;
}

// Sets the times of making to 0 in the boxes from `from` to `to`, and in those inside of them.
void eraseTimes(std::string& file, std::size_t from, std::size_t to)
{
    while (from + 8 <= to) {
        const auto byte = [&](std::size_t at) { return std::size_t(static_cast<unsigned char>(file[from + at])); };
        const std::size_t size = byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
        const std::string type = file.substr(from + 4, 4);
        if (size < 8 || from + size > to)
            return; // a large one, or the last: nothing of interest
        if (type == "moov" || type == "trak" || type == "mdia")
            eraseTimes(file, from + 8, from + size);
        else if ((type == "mvhd" || type == "tkhd" || type == "mdhd") && size > 28)
            std::fill_n(file.begin() + std::ptrdiff_t(from + 12), byte(8) == 1 ? 16 : 8, '\0');
        from += size;
    }
}

std::string descriptionOf(const FilmFormat& format)
{
    const auto text = [](int number) { return std::to_string(number); };
    // One thread of the encoder: with more the cuts, and so the bytes, would depend on the machine.
    return "appsrc name=frames format=time block=true max-buffers=8 max-bytes=0 caps=video/x-raw,format=BGRx,width="
        + text(format.width) + ",height=" + text(format.height) + ",framerate=" + text(format.framesPerSecond)
        + "/1,pixel-aspect-ratio=1/1 ! videoconvert ! video/x-raw,format=I420 ! queue max-size-buffers=4 "
          "! openh264enc name=encoder complexity=low multi-thread=1 usage-type=camera rate-control=bitrate "
          "scene-change-detection=false "
          "gop-size="
        + text(2 * format.framesPerSecond) + " bitrate=" + text(format.bitsPerSecond)
        + " ! h264parse ! queue max-size-time=0 max-size-bytes=0 max-size-buffers=0 ! mp4mux name=muxer faststart=true ! "
          "filesink name=file "
          "appsrc name=sound format=time block=true max-bytes=200000 "
          "caps=audio/x-raw,format=S16LE,layout=interleaved,channels=2,rate="
        + text(format.soundRate)
        + " ! audioconvert ! opusenc bitrate=64000 ! queue max-size-time=0 max-size-bytes=0 max-size-buffers=0 ! muxer.";
}

} // namespace

struct FilmFile::Impl {
    std::string path;
    FilmFormat format;
    std::vector<std::int16_t> sound;
    Handle<GstElement> pipeline;
    std::thread soundThread;
    std::uint64_t count = 0;

    Handle<GstElement> element(const char* name) const
    {
        return Handle<GstElement>(gst_bin_get_by_name(GST_BIN(pipeline.get()), name));
    }

    ~Impl()
    {
        if (pipeline)
            gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        if (soundThread.joinable())
            soundThread.join();
    }

    void pushSound() const
    {
        const auto source = element("sound");
        const auto rate = guint64(format.soundRate);
        const std::size_t each = rate / 10 * 2; // a tenth of a second, both sides
        for (std::size_t at = 0; at < sound.size(); at += each) {
            const std::size_t length = std::min(each, sound.size() - at);
            GstBuffer* buffer = gst_buffer_new_memdup(sound.data() + at, length * sizeof sound[0]);
            GST_BUFFER_PTS(buffer) = gst_util_uint64_scale(at / 2, GST_SECOND, rate);
            GST_BUFFER_DURATION(buffer) = gst_util_uint64_scale(length / 2, GST_SECOND, rate);
            if (gst_app_src_push_buffer(GST_APP_SRC(source.get()), buffer) != GST_FLOW_OK)
                return;
        }
        gst_app_src_end_of_stream(GST_APP_SRC(source.get()));
    }

    // Throws what the pipeline complains about, if anything, within the given time.
    void waitForEnd(GstClockTime longest) const
    {
        const Handle<GstBus> bus(gst_element_get_bus(pipeline.get()));
        GstMessage* message
            = gst_bus_timed_pop_filtered(bus.get(), longest, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
        if (!message)
            throw std::runtime_error("the encoder does not come to its end");
        const bool isWhole = GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
        std::string problem;
        if (!isWhole) {
            GError* error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            problem = error->message;
            g_clear_error(&error);
        }
        gst_message_unref(message);
        if (!isWhole)
            throw std::runtime_error(path + ": " + problem);
    }

    void eraseTimesOfMaking() const
    {
        std::string bytes;
        {
            std::ifstream file(path, std::ios::binary);
            bytes.assign(std::istreambuf_iterator<char>(file), {});
        }
        eraseTimes(bytes, 0, bytes.size());
        std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    }
};

FilmFile::FilmFile(const std::string& path, const FilmFormat& format, std::vector<std::int16_t> sound)
    : impl(std::make_unique<Impl>())
{
    gst_init(nullptr, nullptr);
    impl->path = path;
    impl->format = format;
    impl->sound = std::move(sound);
    GError* error = nullptr;
    impl->pipeline.reset(gst_parse_launch(descriptionOf(format).c_str(), &error));
    if (error) {
        const std::string problem = error->message;
        g_clear_error(&error);
        throw std::runtime_error(problem);
    }
    g_object_set(impl->element("file").get(), "location", path.c_str(), nullptr);
    const Handle<GstPad> input(gst_element_get_static_pad(impl->element("encoder").get(), "sink"));
    gst_pad_add_probe(input.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, passEnd, nullptr, nullptr);
    if (gst_element_set_state(impl->pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
        throw std::runtime_error("cannot write " + path);
    impl->soundThread = std::thread([this] { impl->pushSound(); });
}

FilmFile::~FilmFile() = default;

void FilmFile::add(const Picture& frame)
{
    const std::size_t rowBytes = std::size_t(frame.width()) * 4;
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, rowBytes * std::size_t(frame.height()), nullptr);
    GstMapInfo map;
    gst_buffer_map(buffer, &map, GST_MAP_WRITE);
    for (int y = 0; y < frame.height(); ++y)
        std::memcpy(map.data + rowBytes * std::size_t(y), frame.row(y), rowBytes);
    gst_buffer_unmap(buffer, &map);
    const auto timeOf
        = [&](std::uint64_t number) { return gst_util_uint64_scale(number, GST_SECOND, guint64(impl->format.framesPerSecond)); };
    GST_BUFFER_PTS(buffer) = timeOf(impl->count);
    GST_BUFFER_DURATION(buffer) = timeOf(impl->count + 1) - timeOf(impl->count);
    ++impl->count;
    if (gst_app_src_push_buffer(GST_APP_SRC(impl->element("frames").get()), buffer) != GST_FLOW_OK)
        impl->waitForEnd(GST_SECOND);
}

void FilmFile::finish()
{
    gst_app_src_end_of_stream(GST_APP_SRC(impl->element("frames").get()));
    impl->waitForEnd(longestEnding);
    gst_element_set_state(impl->pipeline.get(), GST_STATE_NULL);
    impl->eraseTimesOfMaking();
}

} // namespace showroom::media
