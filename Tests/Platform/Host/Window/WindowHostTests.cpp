#include "Platform/Host/WindowHost.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/QuartzCore/CAAnimation.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UITextField.h"
#include "Platform/UIKit/UIWindow.h"
#include "Tests/Support/VirtualDisplay.h"

#include <SDL_clipboard.h>
#include <SDL_events.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>
#include <sys/resource.h>
#include <thread>

namespace platform {
namespace {

using namespace std::chrono_literals;

const UIColor blue(0, 0, 1);

double processorSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class KeyCatcher final : public UIView {
public:
    std::string typed;

    bool canBecomeFirstResponder() const override { return true; }
    void insertText(const std::string& text) override { typed += text; }
    void deleteBackward() override { typed += "<"; }
};

// A window on a display of its own, whose viewer acts on another thread.
class WindowHostTest : public testing::Test {
protected:
    void open(HostDevice model = HostDevice::smallPhone(), int dotsPerInch = 0)
    {
        display = std::make_unique<test::VirtualDisplay>(dotsPerInch);
        ASSERT_TRUE(display->isOpen()) << "Xvfb is missing";
        std::string problem;
        host = WindowHost::open("Test", std::move(model), {}, problem);
        ASSERT_TRUE(host) << problem;
        window = make<UIWindow>();
        window->setBackgroundColor(UIColor::white());
        window->makeKeyAndVisible();
    }

    // Runs the host until the viewer has done everything.
    void play(const std::function<void()>& viewer)
    {
        std::thread thread([&] {
            EXPECT_TRUE(display->waitForWindow("Test"));
            settle();
            viewer();
            MainQueue::shared().async([&] { host->stop(); });
        });
        host->run();
        thread.join();
    }

    // For the viewer: the value of something that belongs to the main thread.
    template <typename Function> auto onMain(Function function)
    {
        std::promise<decltype(function())> promise;
        MainQueue::shared().async([&] { promise.set_value(function()); });
        return promise.get_future().get();
    }
    // Until the window has taken and shown what has happened.
    void settle()
    {
        for (int i = 0; i < 3; ++i) {
            std::this_thread::sleep_for(60ms);
            onMain([] { return 0; });
        }
    }

    std::unique_ptr<test::VirtualDisplay> display;
    std::unique_ptr<WindowHost> host;
    std::shared_ptr<UIWindow> window;
};

TEST_F(WindowHostTest, scrollsWhatIsUnderTheWheel)
{
    open();
    const auto scroller = make<UIScrollView>();
    scroller->setFrame({ 0, 100, 320, 300 });
    scroller->setContentSize({ 320, 2000 });
    window->addSubview(scroller);
    CGPoint down, up;
    play([&] {
        display->turnWheel(160, 200, 3);
        settle();
        down = onMain([&] { return scroller->contentOffset(); });
        display->turnWheel(160, 200, -1);
        display->turnWheel(160, 500, 2); // beside it
        settle();
        up = onMain([&] { return scroller->contentOffset(); });
    });
    EXPECT_GT(down.y, 100);
    EXPECT_NEAR(up.y, down.y * 2 / 3, 1) << "three notches down, one up";
}

// As a touch screen's driver tells them: large identifiers, places as parts of the window.
TEST_F(WindowHostTest, takesSeveralFingersAtOnce)
{
    open();
    std::string presses;
    std::vector<std::shared_ptr<UIButton>> buttons;
    for (const auto& [name, y] : { std::pair { 'a', 100.0 }, { 'b', 300.0 } }) {
        buttons.push_back(make<UIButton>());
        buttons.back()->setFrame({ 40, y, 240, 100 });
        buttons.back()->addAction(UIControlEvent::touchUpInside, [&presses, name = name] { presses += name; });
        window->addSubview(buttons.back());
    }
    const auto touch = [&](std::uint32_t kind, SDL_FingerID finger, float y) {
        SDL_Event event {};
        event.type = kind;
        event.tfinger.fingerId = finger;
        event.tfinger.x = 0.5F;
        event.tfinger.y = y / 568;
        onMain([&] { return SDL_PushEvent(&event); });
        settle();
    };
    play([&] {
        touch(SDL_FINGERDOWN, 0x100000001, 150);
        touch(SDL_FINGERDOWN, 0x200000001, 350);
        touch(SDL_FINGERUP, 0x200000001, 350);
        touch(SDL_FINGERDOWN, 0x300000001, 350);
        touch(SDL_FINGERUP, 0x100000001, 150);
        touch(SDL_FINGERUP, 0x300000001, 350);
    });
    EXPECT_EQ(presses, "bab");
}

TEST_F(WindowHostTest, obeysItsKeysAndTypesTheOthers)
{
    open();
    const auto catcher = make<KeyCatcher>();
    window->addSubview(catcher);
    catcher->becomeFirstResponder();
    test::Screenshot turned;
    play([&] {
        display->moveTo(10, 10);
        for (const char* key : { "d", "l", "r" })
            display->pressKey(key, true);
        for (const char* key : { "a", "BackSpace", "Return", "Tab" })
            display->pressKey(key);
        settle();
        turned = display->screenshot();
    });
    const auto& state = host->device().state();
    EXPECT_EQ(state.appearance, UIUserInterfaceStyle::dark);
    EXPECT_EQ(state.direction, UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_EQ(UIScreen::main().bounds().size(), (CGSize { 568, 320 }));
    EXPECT_EQ(turned.width, 568);
    EXPECT_EQ(turned.height, 320);
    EXPECT_EQ(catcher->typed, "a<\n\t");
}

// The window's field is written in: with keys, through an input method, with the desktop's clipboard.
TEST_F(WindowHostTest, writesWithTheDesktopsMeans)
{
    open();
    const auto field = make<UITextField>();
    field->setFrame({ 20, 60, 280, 40 });
    window->addSubview(field);
    field->becomeFirstResponder();
    const auto push = [&](SDL_Event event) {
        onMain([&] { return SDL_PushEvent(&event); });
        settle();
    };
    struct Seen {
        std::string text;
        NSRange marked, selected;
        bool operator==(const Seen&) const = default;
    };
    const auto look = [&] {
        return onMain([&] { return Seen { field->text(), field->markedRange().value_or(NSRange {}), field->selectedRange() }; });
    };
    const auto covered = [&] { return onMain([&] { return host->device().state().keyboardHeight; }); };
    play([&] {
        EXPECT_EQ(covered(), 260);
        display->pressKey("k", true);
        settle();
        EXPECT_EQ(covered(), 0) << "Control+K takes the keyboard away";
        display->pressKey("k", true);
        settle();
        EXPECT_EQ(covered(), 260);

        SDL_Event composed {};
        composed.type = SDL_TEXTEDITING;
        std::strcpy(composed.edit.text, "\u4f60\u597d");
        composed.edit.start = 1;
        push(composed);
        EXPECT_EQ(look(), (Seen { "\u4f60\u597d", { 0, 6 }, { 3, 0 } })) << "the caret is counted in characters there";
        composed = {};
        composed.type = SDL_TEXTEDITING_EXT;
        composed.editExt.text = SDL_strdup("ni hao");
        composed.editExt.start = 100;
        push(composed);
        EXPECT_EQ(look(), (Seen { "ni hao", { 0, 6 }, { 6, 0 } }));
        SDL_Event chosen {};
        chosen.type = SDL_TEXTINPUT;
        std::strcpy(chosen.text.text, "\u4f60");
        push(chosen);
        EXPECT_EQ(look(), (Seen { "\u4f60", {}, { 3, 0 } }));

        for (const char* key : { "a", "x" })
            display->pressKey(key, true);
        settle();
        EXPECT_EQ(look().text, "");
        const auto onClipboard = [&] {
            return onMain([] {
                char* text = SDL_GetClipboardText();
                const std::string copy = text;
                SDL_free(text);
                return copy;
            });
        };
        EXPECT_EQ(onClipboard(), "\u4f60");
        onMain([] { return SDL_SetClipboardText("two\nlines"); });
        for (const char* key : { "v", "a", "c" })
            display->pressKey(key, true);
        settle();
        EXPECT_EQ(look(), (Seen { "two lines", {}, { 0, 9 } }));
        EXPECT_EQ(onClipboard(), "two lines");
        display->pressKey("z", true);
        settle();
        EXPECT_EQ(look().text, "");
        display->pressKey("z", true, true);
        settle();
        EXPECT_EQ(look(), (Seen { "two lines", {}, { 9, 0 } }));

        display->click(30, 80);
        display->click(30, 80);
        settle();
        EXPECT_EQ(look().selected, (NSRange { 0, 3 })) << "the word that is clicked twice";
        display->moveTo(299, 80);
        display->pressButton(1);
        display->moveTo(60, 80);
        display->releaseButton(1);
        settle();
        EXPECT_EQ(look().selected.end(), 9u) << "what the mouse is drawn over";
        EXPECT_GT(look().selected.location, 0u);
        EXPECT_GT(look().selected.length, 0u);

        display->holdClipboard();
        for (const char* key : { "End", "x", "y" })
            display->pressKey(key);
        display->pressKey("a", true);
        settle();
        EXPECT_EQ(display->takeClipboardRequests(), 0) << "what others have copied is fetched to be pasted, not for every key";
        EXPECT_TRUE(onMain([&] { return field->textInput()->canPerform(UIEditAction::paste); }));
        display->pressKey("v", true);
        settle();
        EXPECT_EQ(display->takeClipboardRequests(), 1);
        EXPECT_EQ(look().text, "two linesxy") << "nothing came, and nothing is lost";
    });
}

TEST_F(WindowHostTest, becomesADeviceOfTheSizeThatItIsDrawnTo)
{
    open();
    test::Screenshot shot;
    play([&] {
        for (int width = 400; width <= 900; width += 20)
            display->resizeWindow(width, 700);
        settle();
        shot = display->screenshot();
    });
    EXPECT_EQ(host->device().size(), (CGSize { 900, 700 }));
    EXPECT_EQ(host->device().model().idiom, UIUserInterfaceIdiom::pad);
    EXPECT_EQ(host->device().safeArea(), UIEdgeInsets {}) << "nothing covers a part of a desktop window";
    ASSERT_EQ(shot.width, 900);
    EXPECT_EQ(shot.at(899, 699), 0xffffffu) << "all of it is shown";
}

TEST_F(WindowHostTest, isSharpOnADisplayOfHighDensity)
{
    open(HostDevice::smallPhone(), 192);
    const auto line = make<UIView>();
    line->setFrame({ 100, 100, 50, 0.5 });
    line->setBackgroundColor(UIColor::black());
    window->addSubview(line);
    const auto button = make<UIButton>();
    button->setFrame({ 200, 300, 20, 20 });
    int presses = 0;
    button->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    window->addSubview(button);
    test::Screenshot shot;
    play([&] {
        shot = display->screenshot();
        display->click(410, 610);
        settle();
    });
    EXPECT_EQ(host->device().model().scale, 2);
    EXPECT_EQ(shot.width, 640);
    EXPECT_EQ(shot.at(220, 199), 0xffffffu);
    EXPECT_EQ(shot.at(220, 200), 0x000000u) << "half a point is a pixel";
    EXPECT_EQ(shot.at(220, 201), 0xffffffu);
    EXPECT_EQ(presses, 1);
}

TEST_F(WindowHostTest, sleepsWhileNothingHappensAndWhileItIsHidden)
{
    open();
    double still = 0, moving = 0, hidden = 0;
    const auto spent = [](auto length) {
        const double before = processorSeconds();
        std::this_thread::sleep_for(length);
        return processorSeconds() - before;
    };
    const auto box = make<UIView>();
    box->setFrame({ 0, 0, 300, 300 });
    box->setBackgroundColor(UIColor::red());
    window->addSubview(box);
    test::Screenshot shownAgain;
    play([&] {
        still = spent(1s);
        onMain([&] {
            const auto animation = CABasicAnimation::withKeyPath("opacity");
            animation->fromValue = 0.0;
            animation->toValue = 1.0;
            animation->duration = 0.3;
            animation->repeatCount = 1e9;
            box->layer()->addAnimation(animation, "pulse");
            return 0;
        });
        moving = spent(500ms);
        display->hideWindow();
        settle();
        hidden = spent(1s);
        onMain([&] {
            box->layer()->removeAllAnimations();
            box->setBackgroundColor(blue);
            return 0;
        });
        display->showWindow();
        settle();
        shownAgain = display->screenshot();
    });
    // In twice the time; a display server's own messages cost a little.
    EXPECT_LT(still, moving / 4);
    EXPECT_GT(moving, 0.002) << "the measurement sees work";
    EXPECT_LT(hidden, moving / 4);
    EXPECT_EQ(shownAgain.at(10, 10), 0x0000ffu);
}

} // namespace
} // namespace platform
