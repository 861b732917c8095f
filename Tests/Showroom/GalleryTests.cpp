#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "Tests/Support/ViewSearch.h"

#include <gtest/gtest.h>

namespace showroom {
namespace {

std::vector<std::uint32_t> copyOf(const Bitmap& bitmap)
{
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < bitmap.height(); ++y)
        pixels.insert(pixels.end(), bitmap.row(y), bitmap.row(y) + bitmap.width());
    return pixels;
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
    const auto place = findOnScreen(host.device(), "joinButton");
    ASSERT_TRUE(place);
    host.tap({ place->x + 20, place->y + 20 });
    EXPECT_TRUE(findOnScreen(host.device(), "1205"));
}

TEST_F(GalleryTest, reactionsFlyAndLeaveNothingBehind)
{
    gallery->startReactions();
    host.advance(3);
    const auto flying = [&] { return test::findView(gallery->view(), "reactionView")->subviews().size(); };
    EXPECT_GT(flying(), 5u);
    host.advance(10);
    EXPECT_LT(flying(), 16u) << "no more than those sent within five seconds";
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
