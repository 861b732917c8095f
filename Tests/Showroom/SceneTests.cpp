#include "Showroom/Scenes/Scene.h"

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIWindow.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace showroom {
namespace {

using namespace platform;

// Looks at every view on the screen for what no scene may show.
class Inspection {
public:
    // The gallery cuts texts where it finds no room.
    Inspection(const SimulatedDevice& device, bool isGallery)
        : isGallery(isGallery)
    {
        const CGSize size = device.size();
        safe = device.safeArea().inset({ 0, 0, size.width, size.height });
        for (const auto& window : UIApplication::shared().windows())
            visit(*window, { { 0, 0, size.width, size.height }, Scrolling::none, false });
    }
    const std::vector<std::string>& faults() const { return found; }

private:
    enum class Scrolling { none, upAndDown, sideways };
    struct Place {
        CGRect clip;
        Scrolling scrolling;
        bool isInControl;
    };

    void visit(const UIView& view, Place place)
    {
        const CGRect frame = view.convertTo(view.bounds(), nullptr);
        if (view.isHidden() || view.alpha() == 0)
            return;
        if (view.clipsToBounds())
            place.clip = place.clip.intersection(frame);
        if (const auto* scroller = dynamic_cast<const UIScrollView*>(&view)) {
            const bool isSideways = scroller->contentSize().width > scroller->bounds().width + 0.5;
            place.scrolling = isSideways ? Scrolling::sideways : Scrolling::upAndDown;
        }
        if (const auto* label = dynamic_cast<const UILabel*>(&view); label && !label->text().empty())
            look(*label, place);
        else if (place.isInControl && dynamic_cast<const UIImageView*>(&view) && place.scrolling == Scrolling::none
            && !contains(safe, frame))
            found.push_back("the image of " + view.superview()->accessibilityIdentifier() + " reaches out of the safe area");
        place.isInControl = place.isInControl || dynamic_cast<const UIControl*>(&view);
        if (view.accessibilityIdentifier() == "hostVideo"
            && !contains(frame, view.superview()->convertTo(view.superview()->bounds(), nullptr)))
            found.push_back("the video leaves a part of its container bare");
        for (const auto& child : view.subviews())
            visit(*child, place);
    }

    void look(const UILabel& label, const Place& place)
    {
        const CGRect text = label.convertTo(label.textRect(), nullptr);
        if (text.intersection(place.clip).isEmpty())
            return;
        const auto layout = label.displayedLayout();
        const bool mayBeCut = label.accessibilityIdentifier() == "descriptionLabel"; // of a card
        if (!layout || (layout->isTruncated() && !mayBeCut && !isGallery))
            found.push_back("\"" + label.text() + "\" is cut");
        const CGRect room { safe.x, place.scrolling == Scrolling::none ? safe.y : text.y, safe.width,
            place.scrolling == Scrolling::none ? safe.height : text.height };
        if (place.scrolling != Scrolling::sideways && !contains(room, text))
            found.push_back("\"" + label.text() + "\" reaches out of the safe area");
    }

    static bool contains(const CGRect& outer, const CGRect& inner)
    {
        constexpr double rounding = 0.5; // points
        return inner.x >= outer.x - rounding && inner.y >= outer.y - rounding && inner.maxX() <= outer.maxX() + rounding
            && inner.maxY() <= outer.maxY() + rounding;
    }

    const bool isGallery;
    CGRect safe;
    std::vector<std::string> found;
};

// In the scene something of that name, or with the text of that key, is to be seen.
struct Expectation {
    std::string_view scene;
    std::string key;
};
const Expectation expectations[] = {
    { "gallery", "joinButton" },
    { "text-fields", "fieldRounded" },
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
    { "live-keyboard", "commentTextField" },
    { "live-typing", "sendCommentButton" },
    { "live-reaction-picker", "reactionButton" },
    { "live-reactions", "LIVE" },
    { "live-guest-prompt", "mvCancel" },
    { "live-featured", "Tall Terracotta Vase with Greek Key" },
    { "alert-stream-error", "Video Stream Error" },
};

bool showsVideo(std::string_view scene) { return scene.starts_with("live") || scene == "alert-stream-error"; }

UIUserInterfaceStyle other(UIUserInterfaceStyle appearance)
{
    return appearance == UIUserInterfaceStyle::light ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
}

// In the appearance of the state first, then in the other one.
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
    // Above the keyboard of a small phone on its side the prompt finds no room.
    const bool isTooLow = expected.scene == "live-guest-prompt" && host.device().size().height < 350;
    const auto check = [&] {
        EXPECT_TRUE(findOnScreen(host.device(), expected.key) || findOnScreen(host.device(), mv::MVLocalized(expected.key)));
        if (!isTooLow) {
            EXPECT_EQ(Inspection(host.device(), expected.scene == "gallery").faults(), std::vector<std::string> {});
        }
    };
    check();
    const int frames = host.frameCount();
    const bool isLive = showsVideo(expected.scene);
    if (expected.scene != "list-loading" && expected.scene != "gallery" && !isLive) {
        host.advance(1);
        EXPECT_EQ(host.frameCount(), frames) << "a scene stands still";
    }
    host.setAppearance(other(state.appearance));
    host.skip(0.1);
    check();
    for (const auto& line : console.lines())
        EXPECT_TRUE(isLive && (line == "Video Channel Joined Successfully" || line == "Recieved Host Video Stream")) << line;
}

class ScenesOn : public testing::TestWithParam<const char*> { };

TEST_P(ScenesOn, showWhatTheirNamesSay)
{
    using Direction = UIUserInterfaceLayoutDirection;
    const auto device = *HostDevice::named(GetParam());
    for (const auto& expected : expectations) {
        for (const auto orientation : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeLeft }) {
            checkScene(expected, device, { orientation, UIUserInterfaceStyle::light, Direction::leftToRight });
            checkScene(expected, device, { orientation, UIUserInterfaceStyle::dark, Direction::rightToLeft });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryDevice, ScenesOn, testing::Values("phone", "small", "tablet"),
    [](const auto& device) { return std::string(device.param); });

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
