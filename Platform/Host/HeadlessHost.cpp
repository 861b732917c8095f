#include "Platform/Host/HeadlessHost.h"

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
#include "Platform/UIKit/UIPasteboard.h"

#include <algorithm>
#include <cmath>
#include <poll.h>

namespace platform {

namespace {

constexpr double framesPerSecond = 60;
constexpr int mostStrikes = 8; // of keys for one character: pages, shift and itself
constexpr double instant = 1e-9; // seconds; shorter than anything that counts

// The next multiple of a frame's length after that time.
double nextFrame(double time) { return (std::floor(time * framesPerSecond + 1e-6) + 1) / framesPerSecond; }

bool isFrameTime(double time)
{
    const double frame = time * framesPerSecond;
    return std::abs(frame - std::round(frame)) < 1e-6;
}

} // namespace

HeadlessHost::HeadlessHost(HostDevice model, const DeviceState& state, HostTime time)
    : time_(time)
    , device_(
          (Clock::setCurrent(time == HostTime::real ? static_cast<Clock*>(&realClock) : &manualClock), std::move(model)), state)
{
    UIApplication::shared().setHost(this);
    UIPasteboard::general().setHost(nullptr); // empty, and the application's own
}

HeadlessHost::~HeadlessHost() { UIApplication::shared().setHost(nullptr); }

void HeadlessHost::advance(double seconds)
{
    isSeen = true;
    goOn(seconds);
}

void HeadlessHost::skip(double seconds)
{
    isSeen = false;
    goOn(seconds);
    isSeen = true;
    drawIfNeeded();
}

void HeadlessHost::goOn(double seconds)
{
    if (time_ == HostTime::real)
        return goOnForReal(seconds);
    MainQueue::shared().waitUntilQuiescent();
    drawIfNeeded();
    const double end = now() + std::max(seconds, 0.0);
    while (now() < end - instant) {
        // While nothing moves, only a timed block or an animation that waits for its beginning can change that.
        double next = nextFrame(now());
        if (!driver.needsFrame())
            next = std::min(std::max(next, driver.nextFrameTime()), MainQueue::shared().nextDeadline().value_or(end));
        pass(std::clamp(next, now(), end) - now());
        if (isFrameTime(now()) || now() >= end - instant)
            drawIfNeeded();
    }
}

void HeadlessHost::goOnForReal(double seconds)
{
    const double end = now() + std::max(seconds, 0.0);
    for (;;) {
        pass(0);
        drawIfDue();
        if (now() >= end)
            return;
        const double frame = frameDue.value_or(driver.nextFrameTime());
        sleepUntil(std::min({ frame, MainQueue::shared().nextDeadline().value_or(end), end }));
    }
}

void HeadlessHost::sleepUntil(double wake) const
{
    const double seconds = wake - now();
    if (seconds <= 0)
        return;
    pollfd watched { MainQueue::shared().fileDescriptor(), POLLIN, 0 };
    const timespec timeout { time_t(seconds), long((seconds - std::floor(seconds)) * 1e9) };
    ppoll(&watched, 1, &timeout, nullptr);
}

void HeadlessHost::touchDown(CGPoint point, int finger)
{
    UIApplication::shared().sendTouch(finger, UITouchPhase::began, point, now());
    pass(0);
}

void HeadlessHost::touchMove(CGPoint point, int finger)
{
    UIApplication::shared().sendTouch(finger, UITouchPhase::moved, point, now());
    pass(0);
}

void HeadlessHost::touchUp(CGPoint point, int finger)
{
    UIApplication::shared().sendTouch(finger, UITouchPhase::ended, point, now());
    pass(0);
}

void HeadlessHost::touchCancel()
{
    UIApplication::shared().cancelTouches(now());
    pass(0);
}

void HeadlessHost::tap(CGPoint point)
{
    advance(0); // what the viewer sees is what is hit
    touchDown(point);
    advance(0.05);
    touchUp(point);
    advance(0);
}

void HeadlessHost::drag(CGPoint from, CGPoint to, double seconds)
{
    advance(0);
    touchDown(from);
    const int steps = std::max(int(std::lround(seconds * framesPerSecond)), 1);
    for (int step = 1; step <= steps; ++step) {
        advance(seconds / steps);
        const double part = double(step) / steps;
        touchMove({ from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part });
    }
    touchUp(to);
    advance(0);
}

void HeadlessHost::type(const std::string& text)
{
    UIApplication::shared().sendText(text);
    pass(0);
}

void HeadlessHost::pressDelete()
{
    UIApplication::shared().sendDeleteBackward();
    pass(0);
}

void HeadlessHost::pressKey(UIKey key, UIKeyModifiers modifiers)
{
    UIApplication::shared().sendKey(key, modifiers);
    pass(0);
}

void HeadlessHost::perform(UIEditAction action)
{
    UIApplication::shared().sendEditAction(action);
    pass(0);
}

void HeadlessHost::compose(const std::string& text, std::size_t caret)
{
    UIApplication::shared().sendMarkedText(text, std::min(caret, text.size()));
    pass(0);
}

bool HeadlessHost::tapKeys(const std::string& text)
{
    const auto& keyboard = ScreenKeyboard::shared();
    for (const auto character : Characters(text)) {
        int strikes = 0;
        for (bool typed = false; !typed; ++strikes) {
            advance(0); // the first responder may just have changed
            const auto step = strikes < mostStrikes ? keyboard.stepTowards(character) : std::nullopt;
            if (!step) {
                NSLog("\"" + std::string(character) + "\" of \"" + text
                    + "\" not tapped: " + (keyboard.isVisible() ? "no key types it" : "no keyboard is on the screen"));
                return false;
            }
            tap(step->key.center());
            typed = step->types;
        }
    }
    return true;
}

const Bitmap& HeadlessHost::pixels()
{
    if (time_ == HostTime::manual || !driver.frame())
        drawIfNeeded();
    return *driver.frame();
}

bool HeadlessHost::writePicture(const std::string& path) { return writePNG(pixels(), path); }

bool HeadlessHost::open(const URL& url)
{
    opened.push_back(url);
    return true;
}

void HeadlessHost::drawIfNeeded()
{
    driver.setScreen(device_.pixelWidth(), device_.pixelHeight(), device_.model().scale);
    const bool timeWentOn = now() > drawnAt + instant;
    const bool due = timeWentOn && (driver.isMoving() || driver.nextFrameTime() <= now() + instant);
    const bool isOwed = isSeen && driver.isBehind();
    if (driver.hasChanged() || due || isOwed)
        draw();
}

// A frame a sixtieth: what has changed since the last one is shown at the next, or at once when that one is past.
void HeadlessHost::drawIfDue()
{
    driver.setScreen(device_.pixelWidth(), device_.pixelHeight(), device_.model().scale);
    const double time = now();
    if (!driver.needsFrame() && driver.nextFrameTime() > time)
        return frameDue.reset();
    if (!frameDue)
        frameDue = std::max(nextFrame(drawnAt), time);
    if (time < *frameDue)
        return;
    dropped += int((time - *frameDue) * framesPerSecond);
    draw();
    frameDue = driver.needsFrame() ? std::optional(nextFrame(drawnAt)) : std::nullopt;
}

void HeadlessHost::draw()
{
    drawnAt = now();
    if (!isSeen)
        return driver.passFrame(drawnAt);
    change = driver.drawFrame(drawnAt);
    ++frames;
}

void HeadlessHost::pass(double seconds)
{
    if (time_ == HostTime::real)
        MainQueue::shared().run(now());
    else
        MainQueue::shared().advance(manualClock, seconds);
}

} // namespace platform
