#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/Keyboard/KeyboardTyping.h"

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

class KeyboardView;
class UIResponder;
class UIWindow;

// The keyboard on the screen: a window above the application's that comes when a responder with a text input becomes the first
// one, and leaves when none is. It says so (UIKeyboard's notification) before it moves. There is one, while a device is attached.
// Main thread.
class ScreenKeyboard {
public:
    static ScreenKeyboard& shared();

    // From the screen's lower edge; 0 while it is away, floats, or is switched off.
    CGFloat coveredHeight() const;
    bool isVisible() const { return there; } // on the screen or on its way there
    // The key that leads to that character (a user-perceived one; "\n" is the return key, "\b" delete), in screen points, and
    // whether it types it: else it is a key that brings another page, and one asks again. Nothing when no page has it or the
    // keyboard is away.
    struct Step {
        CGRect key;
        bool types = false;
    };
    std::optional<Step> stepTowards(std::string_view character) const;

    // Host side.
    void attach(); // a device that starts; nothing is shown, nothing said
    void detach();
    void setHardwareKeyboard(bool connected, double duration); // while there is one, this one stays away
    void setFloating(bool floats, double duration); // on tablets
    bool isFloating() const { return floating; }
    void deviceChanged(double duration); // size, safe area, kind, appearance, direction; seconds that its windows take for it

    // The application's.
    void firstResponderChanged(); // looks at the end of the turn who it is now
    void textInputChanged();
    void firstRespondersTraitsChanged(); // a dark page gets a dark keyboard

private:
    ScreenKeyboard() = default;
    std::shared_ptr<UIResponder> servedResponder() const;
    bool isWanted() const;
    bool floatsNow() const;
    CGRect place() const; // of the window, in screen points
    void settle();
    void arrange(double duration, bool tells = false);
    void tell(const CGRect& frame, bool covers, double duration);
    void prepareWindow();
    void enter(double duration);
    void leave(double duration);
    void refresh();
    void strike(const KeyboardKey& key, double time);
    void movePanel(CGSize way);

    KeyboardTyping typing;
    std::shared_ptr<UIWindow> window; // made when it is first needed
    std::shared_ptr<KeyboardView> view;
    WeakRef<UIResponder> served; // whom it writes for
    CGRect told; // the end frame that listeners know
    std::optional<CGPoint> panelOrigin; // where the viewer put the floating panel
    bool toldCovering = false; // whether that covers anything
    bool attached = false;
    bool hardware = false;
    bool floating = false;
    bool settling = false; // at the end of this turn
    bool there = false; // or on its way there
};

} // namespace platform
