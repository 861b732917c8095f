#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/UIOrientation.h"
#include "Platform/UIKit/UIResponder.h"
#include "Platform/UIKit/UITextInput.h"
#include "Platform/UIKit/UITouch.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class CALayer;
class URL;
class UIPresentationController;
class UIWindow;

// What only the outside can do.
class UIApplicationHost {
public:
    virtual ~UIApplicationHost() = default;
    virtual bool open(const URL& url) = 0; // false when nothing opens it
    virtual void setIdleTimerDisabled(bool disabled) = 0; // whether the display stays on while nobody touches it
};

class UIApplication final : public UIResponder {
public:
    static constexpr const char* didEnterBackgroundNotification = "UIApplicationDidEnterBackgroundNotification";
    static constexpr const char* didBecomeActiveNotification = "UIApplicationDidBecomeActiveNotification";

    UIApplication();

    static UIApplication& shared();

    std::vector<std::shared_ptr<UIWindow>> windows() const; // shown ones, back to front
    std::shared_ptr<UIWindow> keyWindow() const;
    // What can be written in tells it after its text, its caret or its selection has changed, by whatever: keyboards follow.
    void textInputDidChange();
    // Null asks for the application as a whole.
    UIInterfaceOrientationMask supportedInterfaceOrientations(const UIWindow* window) const;
    void setSupportedInterfaceOrientations(UIInterfaceOrientationMask mask) { supportedOrientations = mask; }
    bool open(const URL& url); // false, after one console line, when nothing opens it
    bool isIdleTimerDisabled() const { return idleTimerDisabled; }
    void setIdleTimerDisabled(bool disabled);

    // Host side.
    void setHost(UIApplicationHost* newHost) { host = newHost; } // which clears it at its end
    // A change of one touch, named by a number of the host's choice, at a point of the screen. A began touch goes to the
    // uppermost window that takes it; a change of an unknown touch does nothing.
    void sendTouch(int identifier, UITouchPhase phase, CGPoint point, double timestamp, UITouchType type = UITouchType::direct);
    void cancelTouches(double timestamp);
    // A wheel's or trackpad's step in points over that point of the screen: scrolls the innermost scroll view there that can.
    bool sendScroll(CGPoint point, double dx, double dy);
    std::shared_ptr<UIResponder> firstResponder() const { return first.lock(); } // null for none
    // Typed on a keyboard: goes to the first responder, or nowhere when there is none.
    void sendText(const std::string& text);
    void sendDeleteBackward();
    // A key without a character: for what is presented on top, else for the first responder, else for the topmost controller. One
    // that nobody wants is typed as text where it stands for some.
    void sendKey(UIKey pressed, UIKeyModifiers modifiers = UIKeyModifiers::none);
    // What an input method is composing, see UITextInput::setMarkedText; nothing where nobody can show it.
    void sendMarkedText(const std::string& text, std::size_t caret);
    // A command of the keyboard for what is written in. False when there is nothing to be done.
    bool sendEditAction(UIEditAction action);
    // Where the on-screen keyboard is or is moving to, in screen points; empty before the first one, below the screen after it.
    const CGRect& keyboardFrame() const { return keyboard; }
    void forgetKeyboard() { keyboard = {}; } // when the device ends whose keyboard it was
    // The frame's layout pass: everything marked, until nothing is; and once more after what follows other views has followed.
    void layoutWindows();
    std::vector<std::shared_ptr<CALayer>> windowLayers() const; // for the frame's steps, back to front
    void enterBackground();
    void becomeActive();

private:
    friend class UIPresentationController;
    friend class UIResponder;
    friend class UIWindow;

    void setFirstResponder(UIResponder* responder);
    void responderEnds(const UIResponder& responder);

    void addLayoutFollower(UIPresentationController& presentation);
    void settleLayout();
    void show(UIWindow& window);
    void hide(UIWindow& window);
    void makeKey(UIWindow& window);

    std::vector<WeakRef<UIWindow>> shown; // a window is kept by whoever made it
    WeakRef<UIWindow> key;
    WeakRef<UIResponder> first;
    std::vector<WeakRef<UIPresentationController>> layoutFollowers;
    CGRect keyboard;
    NotificationToken keyboardToken;
    UIApplicationHost* host = nullptr;
    UIInterfaceOrientationMask supportedOrientations = UIInterfaceOrientationMask::all;
    bool idleTimerDisabled = false;
};

} // namespace platform
