#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Tests/UI/Screens/LiveScreenStage.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColorExtensions.h"

namespace mv {
namespace {

class LiveScreenLayoutTest : public LiveScreenStage {
protected:
    // A place as it is when the interface runs from the left.
    CGRect at(const std::string& name) const
    {
        CGRect box = place(name);
        if (host.device().state().direction == UIUserInterfaceLayoutDirection::rightToLeft)
            box.x = window->bounds().width - box.maxX();
        return box;
    }
    // The same with its edges on whole pixels.
    CGRect aligned(const CGRect& box) const
    {
        const double scale = host.device().model().scale;
        const auto edge = [&](double value) { return std::round(value * scale) / scale; };
        return { edge(box.x), edge(box.y), edge(box.maxX()) - edge(box.x), edge(box.maxY()) - edge(box.y) };
    }
    void expectLayout(bool landscape) const
    {
        const CGSize size = host.device().size();
        const UIEdgeInsets safe = host.device().safeArea();
        const double right = size.width - safe.right, bottom = size.height - safe.bottom;
        ASSERT_EQ(size.width > size.height, landscape);
        const CGRect panel = landscape
            ? CGRect { size.width / 2, bottom - 50 - (size.height - 70), size.width / 2, size.height - 70 }
            : CGRect { 0, bottom - 55 - 0.45 * size.height, size.width, 0.45 * size.height };
        EXPECT_TRUE(isNear(at("productChatContainerView"), aligned(panel)));
        EXPECT_TRUE(isNear(at("streamContainerView"), { 0, 0, landscape ? size.width / 2 : size.width, size.height }));
        EXPECT_TRUE(isNear(at("commentInputView"), { 0, bottom - 50, size.width, 50 + safe.bottom }));
        EXPECT_TRUE(isNear(at("reactionAnimationView"), { -50, bottom - 55 - 300, right + 50, 300 }));
        const CGRect count = at("watchersCountView"), status = at("statusView"), buttons = at("rightButtonContainerView");
        EXPECT_TRUE(isNear({ count.x, count.y, 0, count.height }, { safe.left + 10, safe.top + 15, 0, 35 }));
        EXPECT_TRUE(isNear({ status.x, status.y, 0, status.height }, { count.maxX() + 10, safe.top + 15, 0, 35 }));
        EXPECT_TRUE(isNear({ buttons.maxX(), buttons.y, 0, 0 }, { right - 15, safe.top + 15, 0, 0 }));
    }
    void rotate(UIDeviceOrientation orientation)
    {
        host.rotate(orientation);
        host.advance(0.5);
    }
};

TEST_F(LiveScreenLayoutTest, followsTheDeviceAndStaysWhenItLiesFlat)
{
    for (const auto direction : { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
        for (const auto& device : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
            SCOPED_TRACE(device.name + (direction == UIUserInterfaceLayoutDirection::rightToLeft ? " mirrored" : ""));
            host.device().setModel(device);
            host.setDirection(direction);
            renewShow();
            openWithChat({ "m2", "m1" });
            expectLayout(false);
            rotate(UIDeviceOrientation::faceUp);
            expectLayout(false);
            rotate(UIDeviceOrientation::landscapeLeft);
            expectLayout(true);
            rotate(UIDeviceOrientation::faceDown);
            expectLayout(true);
            rotate(UIDeviceOrientation::landscapeRight);
            expectLayout(true);
            EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" }));
            rotate(UIDeviceOrientation::portrait);
            expectLayout(false);
            navigation->popViewController(false);
        }
    }
}

TEST_F(LiveScreenLayoutTest, opensTheWayTheDeviceIsHeld)
{
    rotate(UIDeviceOrientation::landscapeRight);
    openWithChat({ "m1" });
    expectLayout(true);
    EXPECT_EQ(chat(), Lines { "Ana: line 1" });
    EXPECT_EQ(cards(), "abc");
    EXPECT_NEAR(place("productCollectionView").maxY(), place("productChatContainerView").maxY(), 1e-6);
}

TEST_F(LiveScreenLayoutTest, bringsWhatWasHiddenBackForLandscapeOnly)
{
    openWithChat({ "m1" });
    press("chatToggleButton");
    press("productsToggleButton");
    expectLayout(false);
    EXPECT_TRUE(isChatHidden());
    EXPECT_FALSE(isStripShown());
    rotate(UIDeviceOrientation::landscapeLeft);
    expectLayout(true);
    EXPECT_EQ(part("chatTableContainerView")->alpha(), 1);
    EXPECT_TRUE(isStripShown());
    EXPECT_EQ(place("chatToggleButton").height, 0) << "there is nothing to toggle";
    rotate(UIDeviceOrientation::portrait);
    expectLayout(false);
    EXPECT_TRUE(isChatHidden());
    EXPECT_FALSE(isStripShown());
    EXPECT_NEAR(place("chatToggleButton").height, 37.5, 0.5);
}

TEST_F(LiveScreenLayoutTest, turnsWithinAQuarterOfASecond)
{
    openWithChat({ "m1" });
    const auto shown
        = [&] { return std::get<CGPoint>(part("streamContainerView")->layer()->presentationValue("position", host.now())).x; };
    ASSERT_EQ(shown(), 195);
    screen->didDeviceOrientationChanged(UIDeviceOrientation::landscapeLeft);
    host.advance(0.125);
    EXPECT_NEAR(shown(), (195 + 97.5) / 2, 8);
    host.advance(0.13);
    EXPECT_EQ(shown(), 97.5);
    screen->didDeviceOrientationChanged(UIDeviceOrientation::faceUp);
    screen->didDeviceOrientationChanged(UIDeviceOrientation::faceDown);
    host.advance(0.5);
    EXPECT_EQ(shown(), 97.5);
}

TEST_F(LiveScreenLayoutTest, liftsTheCommentBarWithTheKeyboardAndNothingElse)
{
    host.device().setModel(HostDevice::phone());
    openWithChat({ "m1" });
    const UIColor clear = UIColor::black().withAlphaComponent(0.5), opaque = colorWithHex("#2c2c2c");
    struct Case {
        double keyboard, top, barHeight;
        const UIColor& background;
    };
    const Case cases[] = { { 325, 477, 50, opaque }, { 101, 701, 50, opaque }, { 100, 702, 50, clear }, { 325, 477, 50, opaque },
        { 20, 768, 64, clear }, { 0, 768, 84, clear } };
    const CGRect panel = place("productChatContainerView"), stream = place("streamContainerView");
    for (const Case& each : cases) {
        SCOPED_TRACE(each.keyboard);
        host.setKeyboardHeight(each.keyboard, 0.4);
        EXPECT_TRUE(isNear(place("commentInputView"), { 0, each.top, 393, each.barHeight }));
        EXPECT_EQ(part("commentInputView")->backgroundColor(), each.background);
        host.advance(0.2);
        const bool moves = each.keyboard != 0; // the last 20 points lie within the safe area
        EXPECT_EQ(std::abs(part("commentInputView")->layer()->presentationFrame(host.now()).y - each.top) > 0.2, moves);
        host.advance(0.25);
        EXPECT_NEAR(part("commentInputView")->layer()->presentationFrame(host.now()).y, each.top, 1e-6);
        EXPECT_EQ(place("productChatContainerView"), panel);
        EXPECT_EQ(place("streamContainerView"), stream);
    }
    NotificationCenter::defaultCenter().post(UIKeyboard::willChangeFrameNotification, nullptr, {});
    EXPECT_NEAR(place("commentInputView").maxY(), 0, 1e-6) << "a keyboard that does not say where it is";
    rotate(UIDeviceOrientation::landscapeLeft);
    host.setKeyboardHeight(200);
    EXPECT_TRUE(isNear(place("commentInputView"), { 0, 393 - 250, 852, 50 }));
    host.setKeyboardHeight(0);
    rotate(UIDeviceOrientation::portrait);
    expectLayout(false);
}

TEST_F(LiveScreenLayoutTest, laysTheCommentBarAboveTheReactionsAndBelowTheButtons)
{
    openWithChat({ "m1" });
    std::vector<std::string> names;
    for (const auto& subview : screen->view()->subviews())
        names.push_back(subview->accessibilityIdentifier());
    EXPECT_EQ(names,
        (Lines { "streamContainerView", "watchersCountView", "statusView", "productChatContainerView", "reactionAnimationView",
            "commentInputView", "rightButtonContainerView" }));
}

TEST_F(LiveScreenLayoutTest, wearsItsPills)
{
    openWithChat({ "m1" });
    const auto text = [&](const char* pill) { return find<UILabel>(part(pill), "label"); };
    EXPECT_EQ(text("statusView")->text(), "LIVE");
    EXPECT_GT(onScreen(*find(part("statusView"), "iconView")).x, onScreen(*text("statusView")).x);
    EXPECT_LT(onScreen(*find(part("watchersCountView"), "iconView")).x, onScreen(*text("watchersCountView")).x);
    const double narrow = place("watchersCountView").width;
    countViewers("show", 100000);
    host.advance(0);
    EXPECT_GT(place("watchersCountView").width, narrow);
    expectLayout(false);
}

TEST_F(LiveScreenLayoutTest, keepsTheLoginBannerAlongItsBottom)
{
    host.device().setModel(HostDevice::phone());
    service->role = Role::guest;
    open();
    const auto banner = [&](const std::string& inset, CGFloat side, CGFloat bottom) {
        SCOPED_TRACE(inset);
        ASSERT_TRUE(find(screen->view(), "loginBannerView"));
        const CGRect screenBounds = window->bounds(), box = place("loginBannerView");
        const auto label = std::dynamic_pointer_cast<UILabel>(part("loginBannerView")->subviews().front());
        ASSERT_TRUE(label);
        EXPECT_EQ(label->text(), "Please login to send Chat Messages.");
        const CGRect text = onScreen(*label);
        EXPECT_TRUE(
            isNear(box, { 0, screenBounds.height - bottom - 30 - text.height, screenBounds.width, text.height + 30 + bottom }));
        EXPECT_NEAR(text.x, 15 + side, 1e-6);
        EXPECT_NEAR(text.maxX(), screenBounds.width - 15 - side, 1e-6);
        EXPECT_NEAR(text.y, box.y + 15, 1e-6);
        const auto line = part("loginBannerView")->viewWithTag(int(BordersViewTag::top));
        ASSERT_TRUE(line);
        EXPECT_TRUE(isNear(onScreen(*line), { 0, box.y, screenBounds.width, 1 }));
    };
    banner("portrait", 0, 34);
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.5);
    banner("landscape", 59, 21);
    screen->setBroadcast(show);
    service->role = Role::user;
    screen->setBroadcast(show);
    host.advance(0.5);
    banner("for the life of the screen", 59, 21);
    EXPECT_EQ(std::ranges::count_if(screen->view()->subviews(),
                  [](const auto& view) { return view->accessibilityIdentifier() == "loginBannerView"; }),
        1);
}

} // namespace
} // namespace mv
