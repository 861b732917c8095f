#include "Tests/Platform/Host/OnScreenKeyboardTest.h"

#include "Platform/Host/ViewTree.h"
#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
#include "Platform/UIKit/UIButton.h"

#include <algorithm>

namespace platform {
namespace {

class OnScreenKeyboardOfTablet : public OnScreenKeyboard {
protected:
    OnScreenKeyboardOfTablet()
        : OnScreenKeyboard(HostDevice::tablet())
    {
    }
};

using Frames = std::vector<CGRect>;

TEST_F(OnScreenKeyboard, comesForWhatCanBeWrittenInAndLeavesWithIt)
{
    paper->becomeFirstResponder();
    host.advance(0);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 527, 393, 325 } }));
    host.advance(1);
    EXPECT_EQ(covered(), 325);
    const auto keyboard = UIApplication::shared().windows().back();
    EXPECT_EQ(keyboard->frame(), (CGRect { 0, 527, 393, 325 }));
    EXPECT_EQ(UIApplication::shared().keyWindow(), window);
    const auto later = make<UIWindow>();
    later->makeKeyAndVisible();
    EXPECT_EQ(UIApplication::shared().windows(), (std::vector { window, later, keyboard }));
    later->setHidden(true);

    paper->resignFirstResponder();
    host.advance(0.1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 852, 393, 325 } }));
    EXPECT_EQ(covered(), 0);
    EXPECT_EQ(UIApplication::shared().windows().size(), 2u) << "it is still sliding";
    host.advance(1);
    EXPECT_EQ(UIApplication::shared().windows(), (std::vector { window }));
    EXPECT_TRUE(heard.empty());
}

TEST_F(OnScreenKeyboard, staysThroughChangesWithinOneTurn)
{
    beginWriting();
    const auto other = add();
    other->becomeFirstResponder();
    host.advance(1);
    other->resignFirstResponder();
    paper->becomeFirstResponder();
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames {});
    EXPECT_EQ(covered(), 325);
    paper->resignFirstResponder();
    host.advance(1);
    heard.clear();
    paper->becomeFirstResponder();
    paper->resignFirstResponder();
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames {}) << "it has never come";
    beginWriting();
    paper->removeFromSuperview();
    paper = nullptr;
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 852, 393, 325 } })) << "whom it wrote for has ended";
    EXPECT_EQ(UIApplication::shared().windows().size(), 1u);
}

// A bar that a listener animates stays on its upper edge in every frame, also when it turns round on its way.
TEST_F(OnScreenKeyboard, movesAsOneWithWhatListens)
{
    const auto bar = make<UIView>(CGRect { 0, 802, 393, 50 });
    window->addSubview(bar);
    const auto listener
        = NotificationCenter::defaultCenter().addObserver(UIKeyboard::willChangeFrameNotification, [&](const Notification& told) {
              const CGFloat top = told.value<CGRect>(UIKeyboard::frameEndUserInfoKey)->y;
              EXPECT_NE(UIApplication::shared().windows().back()->frame().y, top) << "told before it moves";
              const double duration = *told.value<double>(UIKeyboard::animationDurationUserInfoKey);
              EXPECT_EQ(duration, 0.25);
              UIView::animate(duration, [&] { bar->setFrame({ 0, top - 50, 393, 50 }); });
          });
    host.advance(0);
    paper->becomeFirstResponder();
    host.advance(0);
    const auto keyboard = UIApplication::shared().windows().back();
    double way = 0;
    for (int frame = 0; frame < 40; ++frame) {
        if (frame == 8)
            paper->resignFirstResponder();
        if (frame == 14)
            paper->becomeFirstResponder();
        host.advance(1.0 / 60);
        const CGFloat barEnd = bar->layer()->presentationFrame(host.now()).maxY();
        EXPECT_NEAR(barEnd, keyboard->layer()->presentationFrame(host.now()).y, 1e-6) << frame;
        way = std::max(way, 852 - barEnd);
    }
    EXPECT_NEAR(way, 325, 1e-6);
}

TEST_F(OnScreenKeyboard, followsTheDevice)
{
    beginWriting();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 184, 852, 209 } }));
    EXPECT_EQ(covered(), 209);
    host.device().setModel(HostDevice::tablet());
    host.rotate(UIDeviceOrientation::portrait);
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 420, 1180, 400 }, { 0, 860, 820, 320 } }));
    EXPECT_FALSE(key("dockKey").isEmpty());
    const auto light = host.pixels().row(1722)[2] & 0xffffff;
    host.setAppearance(UIUserInterfaceStyle::dark);
    host.advance(0);
    EXPECT_EQ(light, 0xd1d4dau);
    EXPECT_EQ(host.pixels().row(1722)[2] & 0xffffff, 0x1f1f21u);
    EXPECT_EQ(takeHeard(), Frames {});
}

TEST_F(OnScreenKeyboard, isAsDarkAsWhatIsWrittenInAtOnce)
{
    const auto page = make<UIView>(CGRect { 0, 0, 393, 852 });
    window->addSubview(page);
    page->addSubview(paper);
    beginWriting();
    const auto expectDark = [this](bool dark, const char* why) {
        host.advance(0);
        EXPECT_EQ(host.pixels().row(1582)[2] & 0xffffff, dark ? 0x1f1f21u : 0xd1d4dau) << why;
    };
    expectDark(false, "as the device");
    page->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    expectDark(true, "as its page is forced to be");
    paper->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::light);
    expectDark(false, "as it is itself");
    paper->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    page->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::unspecified);
    expectDark(false, "as the device again");
    host.setAppearance(UIUserInterfaceStyle::dark);
    expectDark(true, "which has turned dark");
    window->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::light);
    expectDark(false, "as its window");
    EXPECT_EQ(takeHeard(), Frames {});
}

TEST_F(OnScreenKeyboard, letsNothingThroughAndKeepsTheEditingUp)
{
    int presses = 0;
    const auto below = make<UIButton>();
    below->setFrame({ 0, 400, 393, 452 });
    below->addAction(UIControlEvent::touchUpInside, [&presses] { ++presses; });
    window->addSubview(below);
    beginWriting();
    for (CGFloat y = 530; y < 850; y += 20)
        host.tap({ 60, y });
    EXPECT_EQ(presses, 0);
    EXPECT_TRUE(paper->isFirstResponder());
    host.tap({ 60, 500 });
    EXPECT_EQ(presses, 1);
    tap("hideKey");
    EXPECT_FALSE(paper->isFirstResponder());
    host.advance(1);
    host.tap({ 60, 700 });
    EXPECT_EQ(presses, 2);
}

TEST_F(OnScreenKeyboard, staysAwayBesideAHardwareKeyboard)
{
    beginWriting();
    host.setHardwareKeyboard(true);
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 852, 393, 325 } }));
    host.type("a");
    EXPECT_EQ(written(), "a");
    EXPECT_EQ(UIApplication::shared().windows().size(), 1u);
    paper->resignFirstResponder();
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames {});
    paper->becomeFirstResponder();
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 852, 393, 325 } })) << "a height of 0";
    EXPECT_EQ(covered(), 0);
    host.setHardwareKeyboard(false);
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 527, 393, 325 } }));
    EXPECT_EQ(covered(), 325);
}

TEST_F(OnScreenKeyboardOfTablet, floatsWhereItIsPutAndCoversNothing)
{
    beginWriting();
    tap("dockKey");
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 1180, 820, 320 } }));
    EXPECT_EQ(covered(), 0);
    const auto keyboard = UIApplication::shared().windows().back();
    const CGRect before = keyboard->frame();
    EXPECT_EQ(before.size(), (CGSize { 320, 260 }));
    const CGPoint grip = key("grip").center();
    host.drag(grip, { grip.x - 100, grip.y - 400 }, 0.2);
    EXPECT_EQ(keyboard->frame(), before.offsetBy(-100, -400));
    host.drag(key("grip").center(), { -500, 3000 }, 0.2);
    EXPECT_EQ(keyboard->frame().origin(), (CGPoint { 12, 1180 - 20 - 12 - 260 })) << "it stays on the screen";
    EXPECT_TRUE(host.tapKeys("Panel 1"));
    EXPECT_EQ(written(), "Panel 1");
    EXPECT_EQ(takeHeard(), Frames {});
    tap("dockKey");
    host.advance(1);
    EXPECT_EQ(takeHeard(), Frames({ { 0, 860, 820, 320 } }));
    EXPECT_EQ(covered(), 320);
}

TEST_F(OnScreenKeyboard, drawsWhatChangesAndNothingWhileItRests)
{
    beginWriting();
    paper->resignFirstResponder();
    host.advance(1);
    const auto before = PixelPool::bytesInUse();
    beginWriting();
    EXPECT_TRUE(host.tapKeys("Ab"));
    EXPECT_LE(PixelPool::bytesInUse(), before + (8 << 20)) << "one picture of rows, one of the strip";
    host.advance(1);
    const int frames = host.frameCount();
    host.advance(20);
    EXPECT_EQ(host.frameCount(), frames);
    const CGRect pressed = key("t");
    host.touchDown(pressed.center());
    host.advance(0);
    PixelRect touched;
    for (const auto& rect : host.lastChange().damage)
        touched = touched.unionWith(rect);
    EXPECT_FALSE(touched.isEmpty());
    const CGRect around = pressed.insetBy(-30, -70);
    EXPECT_TRUE(PixelRect::around({ around.x * 3, around.y * 3, around.width * 3, around.height * 3 }).contains(touched));
    host.touchUp(pressed.center());
    paper->resignFirstResponder();
    host.advance(1);
    EXPECT_LE(PixelPool::bytesInUse(), before + (1 << 20)) << "the pictures are gone";
}

TEST(OnScreenKeyboardOfEndedDevice, isNotThereForTheNextOne)
{
    for (const bool isOwn : { true, false }) {
        SCOPED_TRACE(isOwn);
        const auto window = make<UIWindow>();
        {
            HeadlessHost host;
            window->makeKeyAndVisible();
            const auto paper = make<Paper>();
            window->addSubview(paper);
            host.setHardwareKeyboard(!isOwn);
            paper->becomeFirstResponder();
            host.advance(1);
            if (isOwn)
                EXPECT_TRUE(host.tapKeys("ا"));
            else
                host.setKeyboardHeight(325);
            EXPECT_EQ(UIApplication::shared().keyboardFrame(), (CGRect { 0, 527, 393, 325 }));
            paper->removeFromSuperview();
        }
        EXPECT_TRUE(UIApplication::shared().keyboardFrame().isEmpty());
        EXPECT_EQ(UIApplication::shared().windows(), (std::vector { window })) << "the keyboard's is gone";
        HeadlessHost next;
        EXPECT_TRUE(UIApplication::shared().keyboardFrame().isEmpty());
        const auto paper = make<Paper>();
        window->addSubview(paper);
        paper->becomeFirstResponder();
        next.advance(0);
        EXPECT_TRUE(ScreenKeyboard::shared().stepTowards("Q")->types) << "nobody has chosen other letters here";
    }
}

} // namespace
} // namespace platform
