#pragma once

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/URL.h"
#include "Platform/Host/FrameDriver.h"
#include "Platform/Host/SimulatedDevice.h"
#include "Platform/UIKit/UIApplication.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

// How time passes for a host without a display.
enum class HostTime : unsigned char {
    manual, // stands still until it is moved; nothing is late
    real, // goes on by itself; a frame that comes late is dropped, and nothing waits for work under way
};

// A host without a display, whose frames are there as pixels. One at a time. Main thread.
class HeadlessHost final : private UIApplicationHost {
public:
    explicit HeadlessHost(
        HostDevice model = HostDevice::phone(), const DeviceState& state = {}, HostTime time = HostTime::manual);
    ~HeadlessHost() override;
    HeadlessHost(const HeadlessHost&) = delete;
    HeadlessHost& operator=(const HeadlessHost&) = delete;

    HostTime time() const { return time_; }
    double now() const { return clock().now(); } // seconds
    // Lets so many seconds pass: frames at every sixtieth of a second while something moves, queued blocks and timers at their
    // times. With manual time these are exact, a last frame is drawn at the end, and all counted jobs are done on return. 0 draws
    // what has changed.
    void advance(double seconds);
    // The same for whoever looks at the end only: no pixels on the way, but what moves or happens does so in the same frames.
    void skip(double seconds);

    // The finger, in screen points.
    void touchDown(CGPoint point, int finger = 0);
    void touchMove(CGPoint point, int finger = 0);
    void touchUp(CGPoint point, int finger = 0);
    void touchCancel();
    void tap(CGPoint point); // down and, 0.05 s later, up
    void drag(CGPoint from, CGPoint to, double seconds); // even steps, a frame each

    // The keys of a hardware keyboard, for whoever is the first responder.
    void type(const std::string& text); // UTF-8
    void pressDelete();
    void pressKey(UIKey key, UIKeyModifiers modifiers = UIKeyModifiers::none);
    void perform(UIEditAction action); // as Control with A, C, X, V or Z does
    void compose(const std::string& text, std::size_t caret = std::string::npos); // by an input method; bytes, its end at most
    // Taps the on-screen keyboard's keys one after another, with shift and the keys to other pages where they are needed. "\n" is
    // the return key, "\b" delete. False, after one console line, at the first character that no key types, or when no keyboard
    // is on the screen.
    bool tapKeys(const std::string& text); // UTF-8

    SimulatedDevice& device() { return device_; }
    const SimulatedDevice& device() const { return device_; }
    void rotate(UIDeviceOrientation orientation) { device_.rotate(orientation); }
    void setAppearance(UIUserInterfaceStyle appearance) { device_.setAppearance(appearance); }
    void setDirection(UIUserInterfaceLayoutDirection direction) { device_.setDirection(direction); }
    void setHardwareKeyboard(bool connected) { device_.setHardwareKeyboard(connected); }
    void setFloatingKeyboard(bool floats) { device_.setFloatingKeyboard(floats); }
    void setKeyboardHeight(CGFloat height, double duration = 0.25) { device_.setKeyboardHeight(height, duration); }

    const Bitmap& pixels(); // of the last frame; draws the first one if there is none, and with manual time what has changed
    bool writePicture(const std::string& path); // as PNG; false after one console line
    const FrameChange& lastChange() const { return change; } // of the last drawn frame
    int frameCount() const { return frames; } // drawn so far
    int droppedFrameCount() const { return dropped; } // of what moved, in real time
    const std::vector<URL>& openedURLs() const { return opened; } // what the application asked to be opened
    bool isIdleTimerDisabled() const { return idleTimerDisabled; }

private:
    bool open(const URL& url) override;
    void setIdleTimerDisabled(bool disabled) override { idleTimerDisabled = disabled; }
    const Clock& clock() const { return time_ == HostTime::real ? static_cast<const Clock&>(realClock) : manualClock; }
    void goOn(double seconds);
    void goOnForReal(double seconds);
    void sleepUntil(double wake) const;
    void drawIfNeeded();
    void drawIfDue();
    void draw();
    void pass(double seconds);

    const HostTime time_;
    ManualClock manualClock;
    RealClock realClock;
    SimulatedDevice device_;
    FrameDriver driver;
    FrameChange change;
    std::vector<URL> opened;
    double drawnAt = -1; // the last frame's time
    std::optional<double> frameDue; // in real time: when the frame that is wanted should be there
    int frames = 0;
    int dropped = 0;
    bool isSeen = true; // frames are drawn
    bool idleTimerDisabled = false;
};

} // namespace platform
