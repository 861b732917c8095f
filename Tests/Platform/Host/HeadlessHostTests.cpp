#include "Platform/Host/HeadlessHost.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSTimer.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace platform {
namespace {

class HeadlessHostTest : public testing::Test {
protected:
    HeadlessHostTest()
    {
        window->setBackgroundColor(UIColor::white());
        window->makeKeyAndVisible();
    }

    template <typename View> std::shared_ptr<View> add(const std::shared_ptr<View>& view, const CGRect& frame)
    {
        view->setFrame(frame);
        window->addSubview(view);
        return view;
    }
    std::uint32_t pixel(CGPoint point) // 0xRRGGBB
    {
        const auto scale = host.device().model().scale;
        return host.pixels().row(int(point.y * scale))[int(point.x * scale)] & 0xffffff;
    }

    HeadlessHost host;
    std::shared_ptr<UIWindow> window = make<UIWindow>();
};

TEST_F(HeadlessHostTest, animatesInFramesOfASixtiethToTheExactEnd)
{
    const auto box = add(make<UIView>(), { 0, 0, 10, 10 });
    box->setBackgroundColor(UIColor::red());
    host.advance(0);
    const int before = host.frameCount();
    bool finished = false;
    UIView::animate(
        0.5, 0, UIViewAnimationCurve::linear,
        [&] {
            box->setFrame({ 100, 0, 10, 10 });
        },
        [&](bool whole) { finished = whole; });
    host.advance(0.25);
    EXPECT_EQ(pixel({ 55, 5 }), 0xff0000u);
    EXPECT_EQ(pixel({ 49, 5 }), 0xffffffu);
    EXPECT_EQ(pixel({ 61, 5 }), 0xffffffu);
    EXPECT_EQ(host.frameCount() - before, 16);
    EXPECT_FALSE(finished);
    host.advance(0.25);
    EXPECT_TRUE(finished);
    EXPECT_EQ(pixel({ 100.1, 5 }), 0xff0000u);
    const int after = host.frameCount();
    host.advance(1);
    EXPECT_LE(host.frameCount() - after, 1);
}

// A chain of what hangs on frames: an animation's end begins the next one, and a timer changes a text that has to be drawn.
TEST_F(HeadlessHostTest, skippedTimeEndsAsIfItHadBeenSeen)
{
    const auto label = add(make<UILabel>(), { 20, 100, 200, 30 });
    const auto box = add(make<UIView>(), { 0, 0, 10, 10 });
    box->setBackgroundColor(UIColor::red());
    const auto play = [&](void (HeadlessHost::*pass)(double)) {
        std::vector<double> ends;
        box->setFrame({ 0, 0, 10, 10 });
        label->setText("0");
        host.advance(0.1);
        const double start = host.now();
        UIView::animate(
            0.111, 0, UIViewAnimationCurve::linear,
            [&] {
                box->setFrame({ 100, 0, 10, 10 });
            },
            [&](bool) {
                ends.push_back(host.now() - start);
                UIView::animate(0.4, 0, UIViewAnimationCurve::easeIn, [&] { box->setFrame({ 0, 60, 10, 10 }); });
            });
        MainQueue::shared().asyncAfter(0.2, [&] { label->setText("1,204 watching"); });
        const int before = host.frameCount();
        (host.*pass)(0.4);
        std::vector<std::uint32_t> pixels;
        for (int y = 0; y < 450; ++y)
            pixels.insert(pixels.end(), host.pixels().row(y), host.pixels().row(y) + host.pixels().width());
        return std::tuple(ends, pixels, host.frameCount() - before);
    };
    const auto [endsSeen, pixelsSeen, framesSeen] = play(&HeadlessHost::advance);
    const auto [ends, pixels, frames] = play(&HeadlessHost::skip);
    ASSERT_EQ(ends.size(), 1u);
    EXPECT_NEAR(ends[0], endsSeen[0], 1e-6);
    EXPECT_TRUE(pixels == pixelsSeen);
    EXPECT_GT(framesSeen, 20);
    EXPECT_EQ(frames, 1);
}

TEST_F(HeadlessHostTest, runsTimersAtTheirTimesBetweenFrames)
{
    std::vector<double> fired;
    const auto timer = NSTimer::scheduledTimer(0.03, Repeats::yes, [&](NSTimer&) { fired.push_back(host.now()); });
    host.advance(0.1);
    timer->invalidate();
    host.advance(1);
    ASSERT_EQ(fired.size(), 3u);
    for (std::size_t i = 0; i < fired.size(); ++i)
        EXPECT_NEAR(fired[i], 0.03 * double(i + 1), 1e-9);
}

TEST_F(HeadlessHostTest, turnsTheInterfaceWhereTheApplicationSupportsIt)
{
    std::vector<UIDeviceOrientation> heard;
    const auto token = NotificationCenter::defaultCenter().addObserver(UIDevice::orientationDidChangeNotification,
        [&](const Notification&) { heard.push_back(UIDevice::current().orientation()); });
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.5);
    EXPECT_EQ(window->bounds(), (CGRect { 0, 0, 852, 393 }));
    EXPECT_EQ(window->safeAreaInsets(), (UIEdgeInsets { 0, 59, 21, 59 }));
    EXPECT_EQ(host.pixels().width(), 2556);

    host.rotate(UIDeviceOrientation::faceUp);
    EXPECT_EQ(window->bounds().width, 852);
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::landscape);
    host.rotate(UIDeviceOrientation::portrait);
    EXPECT_EQ(window->bounds().width, 852);
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::all);
    host.rotate(UIDeviceOrientation::portrait);
    host.advance(0.5);
    EXPECT_EQ(window->safeAreaInsets(), (UIEdgeInsets { 59, 0, 34, 0 }));
    EXPECT_EQ(heard.size(), 3u) << "the device tells of itself, whatever the interface does";
}

class Typewriter final : public UIView {
public:
    bool canBecomeFirstResponder() const override { return true; }
    bool resignFirstResponder() override { return mayLeave && UIView::resignFirstResponder(); }
    void insertText(const std::string& text) override { paper += text; }
    void deleteBackward() override { paper.pop_back(); }

    std::string paper;
    bool mayLeave = true;
};

TEST_F(HeadlessHostTest, typesForTheFirstResponderOnly)
{
    const auto one = add(make<Typewriter>(), { 0, 0, 10, 10 });
    auto two = add(make<Typewriter>(), { 0, 20, 10, 10 });
    host.type("nobody listens");
    EXPECT_FALSE(window->becomeFirstResponder());
    EXPECT_TRUE(one->becomeFirstResponder());
    host.type("néw");
    host.pressDelete();
    EXPECT_EQ(one->paper, "né");
    one->mayLeave = false;
    EXPECT_FALSE(two->becomeFirstResponder());
    one->mayLeave = true;
    EXPECT_TRUE(two->becomeFirstResponder());
    EXPECT_FALSE(one->isFirstResponder());
    host.type("x");
    EXPECT_EQ(two->paper, "x");
    EXPECT_EQ(one->paper, "né");

    two->removeFromSuperview();
    two = nullptr;
    host.type("the first responder has gone");
    EXPECT_TRUE(one->becomeFirstResponder());
    EXPECT_TRUE(one->resignFirstResponder());
    host.pressDelete();
    EXPECT_EQ(one->paper, "né");
}

TEST(HeadlessHostInRealTime, dropsFramesThatComeLateAndWaitsForNothing)
{
    HeadlessHost host(HostDevice::smallPhone(), {}, HostTime::real);
    const auto window = make<UIWindow>();
    const auto box = make<UIView>(CGRect { 0, 0, 10, 10 });
    box->setBackgroundColor(UIColor::red());
    window->addSubview(box);
    window->makeKeyAndVisible();
    const CountedJob endless; // for which manual time would wait
    host.advance(0);
    const int before = host.frameCount();
    EXPECT_EQ(before, 1);
    host.advance(0.05);
    EXPECT_EQ(host.frameCount(), before) << "nothing moves";

    const double start = host.now();
    double end = 0;
    UIView::animate(
        0.4, 0, UIViewAnimationCurve::linear,
        [&] {
            box->setFrame({ 100, 0, 10, 10 });
        },
        [&](bool) { end = host.now(); });
    MainQueue::shared().asyncAfter(0.1, [&] { std::this_thread::sleep_for(std::chrono::milliseconds(150)); });
    while (end == 0 && host.now() < start + 20)
        host.advance(0.05);
    const double elapsed = host.now() - start;
    EXPECT_GE(end - start, 0.4);
    EXPECT_GE(elapsed, 0.4);
    EXPECT_GE(host.droppedFrameCount(), 7) << "the main thread was busy for nine";
    EXPECT_GT(host.frameCount() - before, 2);
    EXPECT_LE(host.frameCount() - before + host.droppedFrameCount(), elapsed * 60 + 3);
    host.advance(0.05);
    EXPECT_EQ(host.pixels().row(10)[210] & 0xffffff, 0xff0000u) << "the box is where it was to go";
    EXPECT_EQ(host.pixels().row(10)[190] & 0xffffff, 0u);
}

} // namespace
} // namespace platform
