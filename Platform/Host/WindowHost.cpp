#include "Platform/Host/WindowHost.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/URL.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <utility>

extern char** environ;

namespace platform {

namespace {

constexpr double frameLength = 1.0 / 60; // seconds
constexpr double forever = std::numeric_limits<double>::infinity();

// The desktop shows a device at the window's own density, in the model's size.
HostDevice onDesktop(HostDevice model, const NativeWindow& window)
{
    model.scale = std::clamp(window.density(), 1.0, 4.0);
    return model;
}

// Within what a window system rounds at a fractional density.
bool isAbout(CGSize one, CGSize other)
{
    return std::abs(one.width - other.width) < 1 && std::abs(one.height - other.height) < 1;
}

} // namespace

std::unique_ptr<WindowHost> WindowHost::open(
    const std::string& title, HostDevice model, const DeviceState& state, std::string& problem)
{
    auto* sdl = loadModule<SdlModule>("sdl");
    if (!sdl) {
        problem = "the window module is missing";
        return nullptr;
    }
    auto window = sdl->open(title, model.portraitSize, problem);
    if (!window)
        return nullptr;
    auto adapted = onDesktop(std::move(model), *window);
    return std::unique_ptr<WindowHost>(new WindowHost(std::move(window), std::move(adapted), state));
}

WindowHost::WindowHost(std::unique_ptr<NativeWindow> newWindow, HostDevice model, const DeviceState& state)
    : window(std::move(newWindow))
    , device_((Clock::setCurrent(&clock), std::move(model)), state)
{
    UIApplication::shared().setHost(this);
    UIPasteboard::general().setHost(this);
    window->stopTextInput(); // which the window system begins with
    fitWindow();
}

WindowHost::~WindowHost()
{
    UIPasteboard::general().setHost(nullptr);
    UIApplication::shared().setHost(nullptr);
}

void WindowHost::run()
{
    while (running) {
        for (const auto& event : window->takeEvents())
            handle(event);
        MainQueue::shared().run(clock.now());
        followWriter();
        if (visible && clock.now() >= nextFrame)
            showFrame();
        if (running && !window->hasEvents())
            sleep();
    }
}

bool WindowHost::open(const URL& url)
{
    const char* arguments[] = { "xdg-open", url.absoluteString().c_str(), nullptr };
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], nullptr, nullptr, const_cast<char**>(arguments), environ) != 0)
        return false;
    std::thread([child] { waitpid(child, nullptr, 0); }).detach();
    return true;
}

void WindowHost::handle(const WindowEvent& event)
{
    auto& application = UIApplication::shared();
    const auto touch = [&](UITouchPhase phase) {
        const auto type = event.finger == WindowEvent::mouse ? UITouchType::pointer : UITouchType::direct;
        application.sendTouch(event.finger, phase, event.point, clock.now(), type);
    };
    switch (event.kind) {
    case WindowEvent::Kind::touchDown:
        return touch(UITouchPhase::began);
    case WindowEvent::Kind::touchMove:
        return touch(UITouchPhase::moved);
    case WindowEvent::Kind::touchUp:
        return touch(UITouchPhase::ended);
    case WindowEvent::Kind::touchesLost:
        return application.cancelTouches(clock.now());
    case WindowEvent::Kind::wheel:
        application.sendScroll(event.point, event.dx, event.dy);
        return;
    case WindowEvent::Kind::key:
        if (event.named)
            return handleKey(*event.named, event.command, event.shift);
        return event.command ? handleCommand(event.key, event.shift) : void();
    case WindowEvent::Kind::text:
        return application.sendText(event.text);
    case WindowEvent::Kind::composition:
        return application.sendMarkedText(event.text, event.caret);
    case WindowEvent::Kind::resized:
        resized = true; // however many sizes come between two frames, one is laid out
        return;
    case WindowEvent::Kind::exposed:
        exposed = true;
        return;
    case WindowEvent::Kind::hidden:
        visible = false;
        return application.enterBackground();
    case WindowEvent::Kind::shown:
        if (!visible)
            application.becomeActive();
        visible = true;
        exposed = true;
        return;
    case WindowEvent::Kind::closed:
        running = false;
        return;
    }
}

void WindowHost::handleKey(UIKey key, bool command, bool shift)
{
    auto& application = UIApplication::shared();
    if (key == UIKey::deleteBackward && !command)
        return application.sendDeleteBackward();
    const auto held
        = (command ? UIKeyModifiers::control : UIKeyModifiers::none) | (shift ? UIKeyModifiers::shift : UIKeyModifiers::none);
    application.sendKey(key, held);
}

void WindowHost::handleCommand(char32_t key, bool shift)
{
    const auto& state = device_.state();
    auto& application = UIApplication::shared();
    switch (key) {
    case 'a':
        application.sendEditAction(UIEditAction::selectAll);
        return;
    case 'c':
        application.sendEditAction(UIEditAction::copy);
        return;
    case 'x':
        application.sendEditAction(UIEditAction::cut);
        return;
    case 'v':
        application.sendEditAction(UIEditAction::paste);
        return;
    case 'z':
        application.sendEditAction(shift ? UIEditAction::redo : UIEditAction::undo);
        return;
    case 'r':
        device_.rotate(device_.isLandscape() ? UIDeviceOrientation::portrait : UIDeviceOrientation::landscapeLeft);
        return fitWindow();
    case 'd':
        return device_.setAppearance(
            state.appearance == UIUserInterfaceStyle::dark ? UIUserInterfaceStyle::light : UIUserInterfaceStyle::dark);
    case 'l':
        return device_.setDirection(state.direction == UIUserInterfaceLayoutDirection::leftToRight
                ? UIUserInterfaceLayoutDirection::rightToLeft
                : UIUserInterfaceLayoutDirection::leftToRight);
    case 't':
        device_.setModel(
            onDesktop(device_.model().idiom == UIUserInterfaceIdiom::pad ? HostDevice::phone() : HostDevice::tablet(), *window));
        return fitWindow();
    case 'k':
        return device_.setHardwareKeyboard(!state.hardwareKeyboard);
    case 'q':
        running = false;
        return;
    default:
        return;
    }
}

// Keys become text while somebody takes it, beside whose caret an input method shows what it offers.
void WindowHost::followWriter()
{
    const auto present = UIApplication::shared().firstResponder();
    if (writer.lock() != present) {
        window->stopTextInput();
        if (present)
            window->startTextInput();
        writer = WeakRef<UIResponder>(present.get());
        writersCaret = {};
    }
    const auto* input = present ? present->textInput() : nullptr;
    const CGRect caret = input ? input->caretRect() : CGRect {};
    if (caret != writersCaret)
        window->setTextInputCaret(caret);
    writersCaret = caret;
}

// The viewer has drawn the window to another size: the device takes it.
void WindowHost::followWindow()
{
    resized = false;
    exposed = true;
    const auto size = window->size();
    if (size.isEmpty() || isAbout(size, device_.size()))
        return;
    if ((size.width > size.height) != device_.isLandscape())
        device_.rotate(size.width > size.height ? UIDeviceOrientation::landscapeLeft : UIDeviceOrientation::portrait, 0);
    device_.setModel(onDesktop(HostDevice::window(size, 1), *window));
}

void WindowHost::fitWindow()
{
    if (!isAbout(window->size(), device_.size()))
        window->resize(device_.size());
}

void WindowHost::showFrame()
{
    if (resized)
        followWindow();
    driver.setScreen(device_.pixelWidth(), device_.pixelHeight(), device_.model().scale);
    const bool due = driver.needsFrame() || driver.nextFrameTime() <= clock.now();
    if (!due && !exposed)
        return;
    std::vector<PixelRect> shown;
    if (due) {
        const double now = clock.now();
        nextFrame = std::max(nextFrame + frameLength, now); // an even rhythm, unless a frame came late
        auto change = driver.drawFrame(now);
        shown = std::move(change.damage);
        for (const auto& move : change.moves)
            shown.push_back({ move.from.x + move.dx, move.from.y + move.dy, move.from.width, move.from.height });
    }
    const auto frame = driver.frame();
    if (!frame)
        return;
    if (std::exchange(exposed, false))
        shown = { frame->bounds() };
    ++frames;
    window->present(frame->row(0), frame->stride(), frame->width(), frame->height(), shown);
}

void WindowHost::sleep() const
{
    const double now = clock.now();
    double wake = MainQueue::shared().nextDeadline().value_or(forever);
    if (visible) {
        if (driver.needsFrame() || exposed || resized)
            wake = std::min(wake, nextFrame);
        wake = std::min(wake, std::max(driver.nextFrameTime(), nextFrame));
    }
    pollfd watched[] = { { MainQueue::shared().fileDescriptor(), POLLIN, 0 }, { window->descriptor(), POLLIN, 0 } };
    if (watched[1].fd < 0)
        wake = std::min(wake, now + frameLength); // nothing to watch: look again a frame later
    if (wake <= now)
        return;
    const double seconds = std::min(wake - now, 3600.0);
    const timespec timeout { time_t(seconds), long((seconds - std::floor(seconds)) * 1e9) };
    ppoll(watched, 2, &timeout, nullptr);
}

} // namespace platform
