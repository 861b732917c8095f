#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/UIKit/UIResponder.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

// Something that happened to a window.
struct WindowEvent {
    enum class Kind : unsigned char {
        touchDown,
        touchMove,
        touchUp,
        touchesLost, // the fingers' and the mouse's ends will not be told
        wheel, // turned, or two fingers on a trackpad
        key, // pressed, or held until it repeats
        text, // typed, or chosen in an input method
        composition, // what an input method would type now
        resized,
        exposed, // the window system lost what was shown
        hidden, // minimised or covered for good
        shown,
        closed,
    };
    Kind kind = Kind::closed;
    static constexpr int mouse = 0;
    int finger = mouse; // or a finger's number from 1 on
    CGPoint point; // window points
    double dx = 0, dy = 0; // of a wheel, in points: positive ones ask for what lies to the right or below
    std::optional<UIKey> named; // of a key: one without a character
    char32_t key = 0; // else the key's character without shift
    bool command = false; // Control, or the command key, is held
    bool shift = false; // is held
    std::string text; // UTF-8
    std::size_t caret = 0; // in a composition, bytes
};

// One window of the desktop. Main thread.
class NativeWindow {
public:
    virtual ~NativeWindow() = default;
    virtual CGSize size() const = 0; // points: the desktop's units, but for X11, where a unit is a pixel at any density
    virtual double density() const = 0; // pixels a point
    virtual void resize(CGSize size) = 0;
    // Takes what has happened since the last call.
    virtual std::vector<WindowEvent> takeEvents() = 0;
    // True when takeEvents has something. What came while a frame was shown does not make the descriptor readable again.
    virtual bool hasEvents() = 0;
    // Readable when something may have happened; -1 when the window system has no such descriptor.
    virtual int descriptor() const = 0;
    // Whether the display stays on while nobody touches it.
    virtual void keepAwake(bool awake) = 0;
    // Keys become text, through an input method if there is one, whose candidates keep clear of that caret (window points).
    virtual void startTextInput() = 0;
    virtual void setTextInputCaret(const CGRect& caret) = 0;
    virtual void stopTextInput() = 0; // and forgets what is being composed
    virtual std::string clipboardText() = 0; // UTF-8; empty for none; waits for whoever holds it
    virtual bool mayHaveClipboardText() = 0; // somebody holds something; does not wait
    virtual bool setClipboardText(const std::string& text) = 0; // false when the window system does not take it
    // Shows these rectangles of the frame (rows of 0xXXRRGGBB words); all of it when the window has lost what it showed.
    virtual void present(const std::uint32_t* pixels, int stride, int width, int height, const std::vector<PixelRect>& damage)
        = 0;
};

// The desktop, as a loadable module.
class SdlModule {
public:
    static constexpr const char* moduleInterface = "sdl 2";
    virtual ~SdlModule() = default;
    // Null when there is no display; `problem` then says why.
    virtual std::unique_ptr<NativeWindow> open(const std::string& title, CGSize size, std::string& problem) = 0;
};

} // namespace platform
