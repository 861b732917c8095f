#pragma once

#include "Platform/Foundation/Clock.h"
#include "Platform/Host/FrameDriver.h"
#include "Platform/Host/SdlModule.h"
#include "Platform/Host/SimulatedDevice.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIPasteboard.h"

#include <memory>
#include <string>

namespace platform {

// A host with a window on the desktop, real time, mouse, fingers, wheel and keys. With Control (or the command key) held, R turns
// the device, D changes between light and dark, L the direction, T between phone and tablet, K takes the on-screen keyboard away
// and gives it back, Q closes the window; A, C, X and V select, copy, cut and paste where there is text being written, Z takes
// back what was done to it, or with Shift does it again. Drawn to another size, the window becomes a device of that size. Main
// thread.
class WindowHost final : private UIApplicationHost, private UIPasteboardHost {
public:
    // Null when there is no display; `problem` then says why.
    static std::unique_ptr<WindowHost> open(
        const std::string& title, HostDevice model, const DeviceState& state, std::string& problem);
    ~WindowHost() override;

    // Shows frames and hands on what happens until the window is closed or stop is called. Without anything to do or to show it
    // sleeps.
    void run();
    void stop() { running = false; }

    SimulatedDevice& device() { return device_; }
    int frameCount() const { return frames; } // shown so far

private:
    WindowHost(std::unique_ptr<NativeWindow> window, HostDevice model, const DeviceState& state);
    bool open(const URL& url) override;
    void setIdleTimerDisabled(bool disabled) override { window->keepAwake(disabled); }
    std::string pasteboardText() override { return window->clipboardText(); }
    bool mayHavePasteboardText() override { return window->mayHaveClipboardText(); }
    bool setPasteboardText(const std::string& text) override { return window->setClipboardText(text); }
    void handle(const WindowEvent& event);
    void handleKey(UIKey key, bool command, bool shift);
    void handleCommand(char32_t key, bool shift);
    void followWriter();
    void followWindow();
    void fitWindow();
    void showFrame();
    void sleep() const;

    std::unique_ptr<NativeWindow> window;
    RealClock clock;
    SimulatedDevice device_;
    FrameDriver driver;
    WeakRef<UIResponder> writer; // the first responder that the window types for
    CGRect writersCaret; // screen points, as the window knows it
    double nextFrame = 0; // seconds on the clock: the earliest time of another frame
    int frames = 0;
    bool running = true;
    bool visible = true;
    bool exposed = false; // everything has to be shown again
    bool resized = false; // the device has to take the window's size before the next frame
};

} // namespace platform
