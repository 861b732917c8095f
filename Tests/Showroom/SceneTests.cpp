#include "Showroom/Scenes/Scene.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ViewTree.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace showroom {
namespace {

using namespace platform;

// Everything shown whose text reaches out of the screen sideways, or into a notch.
void collectCutOff(const JSONValue& node, const CGRect& safe, std::vector<std::string>& texts)
{
    if (!node["visible"].boolean().value_or(true))
        return;
    const auto& frame = node["frame"];
    const double left = *frame[0].number(), right = left + *frame[2].number();
    const bool isInSight = left < safe.maxX() && right > safe.minX() && *frame[1].number() < safe.maxY();
    if (node["class"].text() == "MVProductListCollectionCell")
        return; // which scrolls sideways
    if (node["class"].text() == "UILabel" && node["textAlignment"].text() != "center" && node["text"].text() && isInSight
        && (left < safe.minX() - 0.5 || right > safe.maxX() + 0.5))
        texts.push_back(*node["text"].text());
    if (const auto* children = node["children"].array())
        for (const auto& child : *children)
            collectCutOff(child, safe, texts);
}

// In the scene something of that name, or with the text of that key, is to be seen.
struct Expectation {
    std::string_view scene;
    std::string key;
};
const Expectation expectations[] = {
    { "home", "liveShowsButton" },
    { "list-live", "mvJoinNow" },
    { "list-upcoming", "mvPreview" },
    { "list-past", "mvPlayNow" },
    { "list-empty", "There are currently no Live Shows. Please check back later." },
    { "list-loading", "loaderView" },
    { "alert-login", "Please Login First" },
    { "live", "LIVE" },
    { "live-waiting", "Waiting for Host video" },
    { "live-chat-hidden", "LIVE" },
    { "live-products-hidden", "LIVE" },
    { "live-login-banner", "Please login to send Chat Messages." },
    { "live-reactions", "LIVE" },
    { "live-featured", "LIVE" },
    { "alert-stream-error", "Video Stream Error" },
};

bool showsVideo(std::string_view scene) { return scene.starts_with("live") || scene == "alert-stream-error"; }

void checkScene(const Expectation& expected, const HostDevice& model, const DeviceState& state)
{
    SCOPED_TRACE(std::string(expected.scene) + ", " + model.name
        + (state.orientation == UIDeviceOrientation::portrait ? ", portrait" : ", landscape")
        + (state.direction == UIUserInterfaceLayoutDirection::leftToRight ? "" : ", right to left")
        + (state.appearance == UIUserInterfaceStyle::dark ? ", dark" : ""));
    const LogCapture console;
    HeadlessHost host(model, state);
    ShowroomApp app(state);
    const Scene* scene = findScene(expected.scene);
    ASSERT_TRUE(scene);
    scene->bringAbout(app, host);
    EXPECT_TRUE(findOnScreen(host.device(), expected.key) || findOnScreen(host.device(), mv::MVLocalized(expected.key)));
    const auto size = host.device().size();
    std::vector<std::string> cutOff;
    const auto tree = viewTree(host.device());
    collectCutOff(tree["root"], host.device().safeArea().inset({ 0, 0, size.width, size.height }), cutOff);
    EXPECT_EQ(cutOff, std::vector<std::string> {});
    const int frames = host.frameCount();
    host.advance(1);
    const bool isLive = showsVideo(expected.scene);
    if (expected.scene != "list-loading" && !isLive) {
        EXPECT_EQ(host.frameCount(), frames) << "a scene stands still";
    }
    for (const auto& line : console.lines())
        EXPECT_TRUE(isLive && (line == "Video Channel Joined Successfully" || line == "Recieved Host Video Stream")) << line;
}

TEST(Scenes, showWhatTheirNamesSayOnEveryDevice)
{
    for (const auto& expected : expectations) {
        if (showsVideo(expected.scene)) { // every frame of which takes its time
            checkScene(expected, HostDevice::smallPhone(), {});
            continue;
        }
        for (const auto& model : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
            for (const auto orientation : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeLeft }) {
                checkScene(expected, model, { .orientation = orientation });
                checkScene(
                    expected, model, { .orientation = orientation, .direction = UIUserInterfaceLayoutDirection::rightToLeft });
            }
            checkScene(expected, model, { .appearance = UIUserInterfaceStyle::dark });
        }
    }
}

TEST(Scenes, areAlwaysTheSame)
{
    const auto picture = [](const Scene& scene) {
        HeadlessHost host(HostDevice::smallPhone());
        ShowroomApp app(host.device().state());
        srand48(0); // the reactions' curves
        scene.bringAbout(app, host);
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < host.pixels().height(); ++y)
            pixels.insert(pixels.end(), host.pixels().row(y), host.pixels().row(y) + host.pixels().width());
        return pixels;
    };
    const LogCapture console;
    for (const auto& scene : allScenes()) {
        if (!showsVideo(scene.name) || scene.name == "live-reactions") { // one with video stands for all
            EXPECT_TRUE(picture(scene) == picture(scene)) << scene.name;
        }
    }
}

} // namespace
} // namespace showroom
