#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstdint>
#include <memory>
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
        text, // typed, composed
        resized,
        exposed, // the window system lost what was shown
        hidden, // minimised or covered for good
        shown,
        closed,
    };
    Kind kind = Kind::closed;
    int finger = 0; // 0: the mouse or the first finger
    CGPoint point; // window points
    double dx = 0, dy = 0; // of a wheel, in points: positive ones ask for what lies to the right or below
    char32_t key = 0; // the key's character without shift, or 8, 9, 13, 27 for Backspace, Tab, Return, Escape
    bool command = false; // Control, or the command key, is held
    bool shift = false; // is held
    std::string text; // UTF-8
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
