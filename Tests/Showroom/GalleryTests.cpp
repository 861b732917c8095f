#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ViewTree.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/ShowroomApp.h"

#include <gtest/gtest.h>

#include <cstring>

namespace showroom {
namespace {

const JSONValue* find(const JSONValue& node, const std::string& name)
{
    if (node["name"].text() == name)
        return &node;
    if (const auto* children = node["children"].array()) {
        for (const auto& child : *children) {
            if (const auto* found = find(child, name))
                return found;
        }
    }
    return nullptr;
}

// Everything shown that reaches out of the safe area sideways or below, by name or text.
void collectOutside(const JSONValue& node, const CGRect& safe, std::vector<std::string>& outside)
{
    const auto& frame = node["frame"];
    const CGRect rect { *frame[0].number(), *frame[1].number(), *frame[2].number(), *frame[3].number() };
    const bool isShown = node["visible"].boolean().value_or(true);
    if (isShown && node["text"].text() && !safe.insetBy(-0.5, -0.5).contains(rect))
        outside.push_back(*node["text"].text());
    if (const auto* children = node["children"].array()) {
        for (const auto& child : *children)
            collectOutside(child, safe, outside);
    }
}

std::vector<std::uint32_t> copyOf(const Bitmap& bitmap)
{
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < bitmap.height(); ++y)
        pixels.insert(pixels.end(), bitmap.row(y), bitmap.row(y) + bitmap.width());
    return pixels;
}

TEST(Gallery, fitsEveryDeviceWithoutAConsoleLine)
{
    for (const auto& model : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
        for (const auto orientation : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeLeft }) {
            for (const auto direction :
                { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
                SCOPED_TRACE(model.name + (orientation == UIDeviceOrientation::portrait ? " portrait" : " landscape"));
                const LogCapture console;
                const DeviceState state { .orientation = orientation, .direction = direction };
                HeadlessHost host(model, state);
                ShowroomApp app(state);
                app.show(make<GalleryViewController>());
                host.advance(0);
                const auto size = host.device().size();
                std::vector<std::string> outside;
                collectOutside(
                    viewTree(host.device())["root"], host.device().safeArea().inset({ 0, 0, size.width, size.height }), outside);
                EXPECT_EQ(outside, std::vector<std::string> {});
                EXPECT_EQ(console.lines(), std::vector<std::string> {});
            }
        }
    }
}

class GalleryTest : public testing::Test {
protected:
    GalleryTest()
    {
        app.show(gallery);
        host.advance(0.1);
    }

    HeadlessHost host;
    ShowroomApp app { host.device().state() };
    std::shared_ptr<GalleryViewController> gallery = make<GalleryViewController>();
};

TEST_F(GalleryTest, looksTheSameAfterChangesThatAreTakenBack)
{
    const auto before = copyOf(host.pixels());
    host.setAppearance(UIUserInterfaceStyle::dark);
    host.advance(0.5);
    EXPECT_NE(copyOf(host.pixels()), before);
    host.setAppearance(UIUserInterfaceStyle::light);
    host.advance(0.5);
    EXPECT_EQ(copyOf(host.pixels()), before);

    const LogCapture console;
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.1); // turned back half-way
    host.rotate(UIDeviceOrientation::portrait);
    host.advance(1);
    EXPECT_EQ(copyOf(host.pixels()), before);
    EXPECT_EQ(console.lines(), std::vector<std::string> {}) << "swapping the constraints of two orientations is no conflict";
}

TEST_F(GalleryTest, countsAPressOfItsButton)
{
    const auto tree = viewTree(host.device());
    const auto& frame = (*find(tree["root"], "joinButton"))["frame"];
    host.tap({ *frame[0].number() + 20, *frame[1].number() + 20 });
    EXPECT_EQ((*find(viewTree(host.device())["root"], "watchersLabel"))["text"].text(), "1205");
}

TEST_F(GalleryTest, reactionsFlyAndLeaveNothingBehind)
{
    gallery->startReactions();
    host.advance(3);
    const auto count = [&] {
        const auto tree = viewTree(host.device());
        const auto* icons = (*find(tree["root"], "reactionView"))["children"].array();
        return icons ? icons->size() : 0;
    };
    const auto flying = count();
    EXPECT_GT(flying, 5u);
    host.advance(10);
    EXPECT_LT(count(), 16u) << "no more than those sent within five seconds";
}

TEST(Gallery, openingAndClosingLeavesNoController)
{
    HeadlessHost host;
    for (int i = 0; i < 20; ++i) {
        WeakRef<GalleryViewController> watched;
        {
            ShowroomApp app(host.device().state());
            auto gallery = make<GalleryViewController>();
            watched = weak(gallery);
            app.show(std::move(gallery));
            host.advance(0.1);
        }
        host.advance(0.1);
        EXPECT_FALSE(watched.lock());
    }
}

} // namespace
} // namespace showroom
