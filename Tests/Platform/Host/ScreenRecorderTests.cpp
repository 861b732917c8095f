#include "Platform/Host/ScreenRecorder.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIWindow.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

struct DecodedFilm {
    int width = 0, height = 0;
    std::vector<int> grays; // of each frame's middle, 0 to 255
    std::vector<double> times; // seconds
};

// Reads the file as a player would: by its content, every frame.
DecodedFilm decode(const std::string& path)
{
    DecodedFilm film;
    gst_init(nullptr, nullptr);
    const auto description = "filesrc location=\"" + path
        + "\" ! qtdemux ! h264parse ! openh264dec ! videoconvert ! video/x-raw,format=GRAY8 ! appsink name=sink sync=false";
    GstElement* pipeline = gst_parse_launch(description.c_str(), nullptr);
    GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline), "sink");
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    while (GstSample* sample = gst_app_sink_pull_sample(GST_APP_SINK(sink))) {
        const GstStructure* format = gst_caps_get_structure(gst_sample_get_caps(sample), 0);
        gst_structure_get_int(format, "width", &film.width);
        gst_structure_get_int(format, "height", &film.height);
        GstBuffer* buffer = gst_sample_get_buffer(sample);
        GstMapInfo map;
        gst_buffer_map(buffer, &map, GST_MAP_READ);
        const auto stride = map.size / film.height;
        film.grays.push_back(map.data[film.height / 2 * stride + film.width / 2]);
        film.times.push_back(double(GST_BUFFER_PTS(buffer)) / GST_SECOND);
        gst_buffer_unmap(buffer, &map);
        gst_sample_unref(sample);
    }
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(sink);
    gst_object_unref(pipeline);
    return film;
}

class ScreenRecorderTest : public testing::Test {
protected:
    ScreenRecorderTest()
    {
        window->setBackgroundColor(UIColor::black());
        window->makeKeyAndVisible();
    }
    ~ScreenRecorderTest() override { std::filesystem::remove(path); }

    void film(ScreenRecorder& recorder, int frames)
    {
        for (int i = 0; i < frames; ++i) {
            recorder.add(host.pixels(), host.now());
            host.advance(1.0 / ScreenRecorder::framesPerSecond);
        }
    }

    const std::string path = std::filesystem::temp_directory_path() / ("film-" + std::to_string(getpid()) + ".mp4");
    HeadlessHost host { HostDevice::smallPhone() };
    std::shared_ptr<UIWindow> window = make<UIWindow>();
};

TEST_F(ScreenRecorderTest, filmsEveryFrameAsAPlayerReadsIt)
{
    const auto recorder = ScreenRecorder::open(path, host);
    ASSERT_TRUE(recorder);
    film(*recorder, 30);
    window->setBackgroundColor(UIColor::white());
    film(*recorder, 30);
    ASSERT_TRUE(recorder->finish());
    EXPECT_EQ(recorder->frameCount(), 60);

    const auto decoded = decode(path);
    EXPECT_EQ(decoded.width, 320);
    EXPECT_EQ(decoded.height, 568);
    ASSERT_EQ(decoded.grays.size(), 60u);
    EXPECT_LT(decoded.grays[29], 40);
    EXPECT_GT(decoded.grays[32], 215);
    EXPECT_NEAR(decoded.times.back() - decoded.times.front(), 59.0 / 30, 0.001);
}

TEST_F(ScreenRecorderTest, repeatsWhatStaysAndMarksTheFinger)
{
    const auto recorder = ScreenRecorder::open(path, host);
    ASSERT_TRUE(recorder);
    EXPECT_TRUE(recorder->add(host.pixels(), 0));
    EXPECT_FALSE(recorder->add(host.pixels(), 0.03)) << "the frame of that time is there";
    window->setBackgroundColor(UIColor::white());
    EXPECT_TRUE(recorder->add(host.pixels(), 1.001));
    EXPECT_TRUE(recorder->add(host.pixels(), 1.5, CGPoint { 160, 284 }));
    ASSERT_TRUE(recorder->finish());

    const auto decoded = decode(path);
    ASSERT_EQ(decoded.grays.size(), 46u);
    EXPECT_NEAR(decoded.times[45] - decoded.times[0], 1.5, 0.001);
    EXPECT_LT(decoded.grays[29], 40);
    EXPECT_GT(decoded.grays[30], 225);
    EXPECT_GT(decoded.grays[44], 225);
    EXPECT_NEAR(decoded.grays[45], 196, 8);
}

TEST_F(ScreenRecorderTest, fitsATurnedScreenBetweenBars)
{
    window->setBackgroundColor(UIColor::white());
    const auto recorder = ScreenRecorder::open(path, host);
    ASSERT_TRUE(recorder);
    film(*recorder, 10);
    host.advance(0.5);
    host.rotate(UIDeviceOrientation::landscapeLeft);
    film(*recorder, 20);
    ASSERT_TRUE(recorder->finish());

    const auto decoded = decode(path);
    EXPECT_EQ(decoded.height, 568) << "the film keeps the size of its beginning";
    EXPECT_EQ(decoded.grays.size(), 45u);
    EXPECT_GT(decoded.grays.back(), 215);
}

TEST_F(ScreenRecorderTest, saysWhenTheFileCannotBeWritten)
{
    const LogCapture console;
    const auto recorder = ScreenRecorder::open("/no/such/folder/film.mp4", host);
    const bool whole = recorder && (film(*recorder, 2), recorder->finish());
    EXPECT_FALSE(whole);
    ASSERT_EQ(console.lines().size(), 1u);
    EXPECT_EQ(console.lines()[0].find("film \"/no/such/folder/film.mp4\" not made: "), 0u);
}

} // namespace
} // namespace platform
