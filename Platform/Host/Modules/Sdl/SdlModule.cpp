#include "Platform/Host/SdlModule.h"

#include "Platform/Foundation/ModuleExport.h"

#include <SDL.h>
#include <SDL_syswm.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <optional>

namespace platform {

namespace {

struct WindowDeleter {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};

constexpr double wheelStep = 60; // points a notch of a wheel
constexpr int smallestSide = 240; // points of a window

std::optional<WindowEvent> touchEvent(WindowEvent::Kind kind, int finger, CGPoint point)
{
    WindowEvent event;
    event.kind = kind;
    event.finger = finger;
    event.point = point;
    return event;
}

std::optional<WindowEvent> plainEvent(WindowEvent::Kind kind) { return touchEvent(kind, WindowEvent::mouse, {}); }

std::optional<WindowEvent> windowEvent(const SDL_WindowEvent& event)
{
    switch (event.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED:
        return plainEvent(WindowEvent::Kind::resized);
    case SDL_WINDOWEVENT_EXPOSED:
        return plainEvent(WindowEvent::Kind::exposed);
    case SDL_WINDOWEVENT_MINIMIZED:
    case SDL_WINDOWEVENT_HIDDEN:
        return plainEvent(WindowEvent::Kind::hidden);
    case SDL_WINDOWEVENT_RESTORED:
    case SDL_WINDOWEVENT_SHOWN:
        return plainEvent(WindowEvent::Kind::shown);
    case SDL_WINDOWEVENT_FOCUS_LOST:
        return plainEvent(WindowEvent::Kind::touchesLost);
    case SDL_WINDOWEVENT_CLOSE:
        return plainEvent(WindowEvent::Kind::closed);
    default:
        return std::nullopt;
    }
}

std::optional<UIKey> namedKey(SDL_Keycode key)
{
    static const std::map<SDL_Keycode, UIKey> keys { { SDLK_RETURN, UIKey::enter }, { SDLK_KP_ENTER, UIKey::enter },
        { SDLK_ESCAPE, UIKey::escape }, { SDLK_TAB, UIKey::tab }, { SDLK_LEFT, UIKey::left }, { SDLK_RIGHT, UIKey::right },
        { SDLK_UP, UIKey::up }, { SDLK_DOWN, UIKey::down }, { SDLK_HOME, UIKey::home }, { SDLK_END, UIKey::end },
        { SDLK_BACKSPACE, UIKey::deleteBackward }, { SDLK_DELETE, UIKey::deleteForward } };
    const auto found = keys.find(key);
    return found == keys.end() ? std::nullopt : std::optional(found->second);
}

// The caret is counted in characters there; before the first and behind the last are allowed for.
std::optional<WindowEvent> compositionEvent(const char* text, int caret)
{
    auto event = plainEvent(WindowEvent::Kind::composition);
    event->text = text ? text : "";
    const auto isInside = [&](std::size_t at) { return (static_cast<unsigned char>(event->text[at]) & 0xc0) == 0x80; };
    for (; caret > 0 && event->caret < event->text.size(); --caret) {
        do
            ++event->caret;
        while (event->caret < event->text.size() && isInside(event->caret));
    }
    return event;
}

std::optional<SDL_SysWMinfo> systemInfo(SDL_Window* window)
{
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    return SDL_GetWindowWMInfo(window, &info) ? std::optional(info) : std::nullopt;
}

// X11 knows pixels only; the user's setting for texts ("Xft.dpi", 96 being plain) says how many a point has.
double unitsPerPoint(SDL_Window* window)
{
#if defined(SDL_VIDEO_DRIVER_X11)
    const auto info = systemInfo(window);
    if (info && info->subsystem == SDL_SYSWM_X11) {
        const char* setting = XGetDefault(info->info.x11.display, "Xft", "dpi");
        const double dots = setting ? std::atof(setting) : 0;
        return dots > 0 ? std::clamp(std::round(dots / 96 * 4) / 4, 1.0, 4.0) : 1;
    }
#endif
    return 1;
}

class SdlWindow final : public NativeWindow {
public:
    explicit SdlWindow(SDL_Window* window)
        : window(window)
        , units(unitsPerPoint(window))
    {
        const int least = int(smallestSide * units);
        SDL_SetWindowMinimumSize(window, least, least);
    }
    ~SdlWindow() override
    {
        window.reset();
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }

    CGSize size() const override
    {
        int width = 0, height = 0;
        SDL_GetWindowSize(window.get(), &width, &height);
        return { width / units, height / units };
    }

    double density() const override
    {
        int pixels = 0;
        SDL_GetWindowSizeInPixels(window.get(), &pixels, nullptr);
        const auto width = size().width;
        return width > 0 && pixels > 0 ? pixels / width : 1;
    }

    void resize(CGSize size) override
    {
        SDL_SetWindowSize(window.get(), int(std::lround(size.width * units)), int(std::lround(size.height * units)));
    }

    std::vector<WindowEvent> takeEvents() override
    {
        std::vector<WindowEvent> events;
        SDL_Event event;
        while (SDL_PollEvent(&event)) {
            if (auto translated = translate(event))
                events.push_back(std::move(*translated));
        }
        return events;
    }

    bool hasEvents() override { return SDL_PollEvent(nullptr) == 1; }

    int descriptor() const override
    {
        const auto info = systemInfo(window.get());
#if defined(SDL_VIDEO_DRIVER_X11)
        if (info && info->subsystem == SDL_SYSWM_X11)
            return XConnectionNumber(info->info.x11.display);
#endif
#if defined(SDL_VIDEO_DRIVER_WAYLAND)
        if (info && info->subsystem == SDL_SYSWM_WAYLAND)
            return waylandDescriptor(info->info.wl.display);
#endif
        return -1;
    }

    void keepAwake(bool awake) override { awake ? SDL_DisableScreenSaver() : SDL_EnableScreenSaver(); }

    void startTextInput() override { SDL_StartTextInput(); }

    void setTextInputCaret(const CGRect& caret) override
    {
        const auto whole = [&](double points) { return int(std::lround(points * units)); };
        const SDL_Rect area { whole(caret.x), whole(caret.y), whole(caret.width), whole(caret.height) };
        SDL_SetTextInputRect(&area);
    }

    void stopTextInput() override { SDL_StopTextInput(); }

    std::string clipboardText() override
    {
        const std::unique_ptr<char, void (*)(void*)> text(SDL_GetClipboardText(), SDL_free);
        return text ? text.get() : "";
    }

    bool mayHaveClipboardText() override
    {
#if defined(SDL_VIDEO_DRIVER_X11) // where SDL would fetch all of it, and wait for a second when nobody answers
        const auto info = systemInfo(window.get());
        if (info && info->subsystem == SDL_SYSWM_X11) {
            auto* display = info->info.x11.display;
            return XGetSelectionOwner(display, XInternAtom(display, "CLIPBOARD", False)) != None;
        }
#endif
        return SDL_HasClipboardText();
    }

    bool setClipboardText(const std::string& text) override { return SDL_SetClipboardText(text.c_str()) == 0; }

    void present(const std::uint32_t* pixels, int stride, int width, int height, const std::vector<PixelRect>& damage) override
    {
        SDL_Surface* surface = SDL_GetWindowSurface(window.get());
        if (!surface || surface->format->BytesPerPixel != 4)
            return;
        const PixelRect whole { 0, 0, std::min(width, surface->w), std::min(height, surface->h) };
        const bool isNew = surface->pixels != shownIn || whole != shownPart; // after a resize it holds nothing
        shownIn = surface->pixels;
        shownPart = whole;
        std::vector<SDL_Rect> shown;
        const auto show = [&](const PixelRect& rect) {
            const auto part = rect.intersection(whole);
            if (part.isEmpty())
                return;
            const auto* from = reinterpret_cast<const std::uint8_t*>(pixels) + std::ptrdiff_t(part.y) * stride + part.x * 4;
            auto* to = static_cast<std::uint8_t*>(surface->pixels) + std::ptrdiff_t(part.y) * surface->pitch + part.x * 4;
            SDL_ConvertPixels(
                part.width, part.height, SDL_PIXELFORMAT_RGB888, from, stride, surface->format->format, to, surface->pitch);
            shown.push_back({ part.x, part.y, part.width, part.height });
        };
        if (isNew)
            show(whole);
        else
            std::for_each(damage.begin(), damage.end(), show);
        if (!shown.empty())
            SDL_UpdateWindowSurfaceRects(window.get(), shown.data(), int(shown.size()));
    }

private:
    std::optional<WindowEvent> translate(const SDL_Event& event)
    {
        switch (event.type) {
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            if (event.button.which == SDL_TOUCH_MOUSEID || event.button.button != SDL_BUTTON_LEFT)
                return std::nullopt; // the finger's own events tell it
            return touchEvent(event.type == SDL_MOUSEBUTTONDOWN ? WindowEvent::Kind::touchDown : WindowEvent::Kind::touchUp,
                WindowEvent::mouse, point(event.button.x, event.button.y));
        case SDL_MOUSEMOTION:
            if (event.motion.which == SDL_TOUCH_MOUSEID || !(event.motion.state & SDL_BUTTON_LMASK))
                return std::nullopt;
            return touchEvent(WindowEvent::Kind::touchMove, WindowEvent::mouse, point(event.motion.x, event.motion.y));
        case SDL_MOUSEWHEEL:
            return event.wheel.which == SDL_TOUCH_MOUSEID ? std::nullopt : wheelEvent(event.wheel);
        case SDL_FINGERDOWN:
            return fingerEvent(WindowEvent::Kind::touchDown, event.tfinger);
        case SDL_FINGERMOTION:
            return fingerEvent(WindowEvent::Kind::touchMove, event.tfinger);
        case SDL_FINGERUP:
            return fingerEvent(WindowEvent::Kind::touchUp, event.tfinger);
        case SDL_KEYDOWN: {
            auto pressed = plainEvent(WindowEvent::Kind::key);
            pressed->named = namedKey(event.key.keysym.sym);
            pressed->key = char32_t(event.key.keysym.sym);
            pressed->command = event.key.keysym.mod & (KMOD_CTRL | KMOD_GUI);
            pressed->shift = event.key.keysym.mod & KMOD_SHIFT;
            return pressed;
        }
        case SDL_TEXTINPUT: {
            auto typed = plainEvent(WindowEvent::Kind::text);
            typed->text = event.text.text;
            return typed;
        }
        case SDL_TEXTEDITING:
            return compositionEvent(event.edit.text, event.edit.start);
        case SDL_TEXTEDITING_EXT: { // a long one
            auto composed = compositionEvent(event.editExt.text, event.editExt.start);
            SDL_free(event.editExt.text);
            return composed;
        }
        case SDL_QUIT:
            return plainEvent(WindowEvent::Kind::closed);
        case SDL_WINDOWEVENT:
            return windowEvent(event.window);
        default:
            return std::nullopt;
        }
    }

    CGPoint point(int x, int y) const { return { x / units, y / units }; }

    std::optional<WindowEvent> wheelEvent(const SDL_MouseWheelEvent& event) const
    {
        auto turned = touchEvent(WindowEvent::Kind::wheel, WindowEvent::mouse, point(event.mouseX, event.mouseY));
        // A trackpad tells parts of a notch. Away from the viewer is positive there.
        turned->dx = double(event.preciseX) * wheelStep;
        turned->dy = -double(event.preciseY) * wheelStep;
        return turned;
    }

    // Fingers get small numbers for as long as they touch.
    std::optional<WindowEvent> fingerEvent(WindowEvent::Kind kind, const SDL_TouchFingerEvent& event)
    {
        int& finger = fingers[event.fingerId];
        if (finger == 0) {
            const auto isTaken = [&](int number) {
                return std::any_of(fingers.begin(), fingers.end(), [&](const auto& each) { return each.second == number; });
            };
            int number = 1;
            while (isTaken(number))
                ++number;
            finger = number;
        }
        const auto all = size();
        auto touch = touchEvent(kind, finger, { double(event.x) * all.width, double(event.y) * all.height });
        if (kind == WindowEvent::Kind::touchUp)
            fingers.erase(event.fingerId);
        return touch;
    }

#if defined(SDL_VIDEO_DRIVER_WAYLAND)
    // The library is in the process already when this is called: SDL has opened it.
    static int waylandDescriptor(wl_display* display)
    {
        using Get = int (*)(wl_display*);
        void* library = dlopen("libwayland-client.so.0", RTLD_LAZY | RTLD_NOLOAD);
        const auto get = library ? reinterpret_cast<Get>(dlsym(library, "wl_display_get_fd")) : nullptr;
        return get ? get(display) : -1;
    }
#endif

    std::unique_ptr<SDL_Window, WindowDeleter> window;
    const double units; // of the window system, a point
    std::map<SDL_FingerID, int> fingers; // those that touch
    const void* shownIn = nullptr; // the surface's pixels at the last frame
    PixelRect shownPart;
};

class Sdl final : public SdlModule {
public:
    std::unique_ptr<NativeWindow> open(const std::string& title, CGSize size, std::string& problem) override
    {
        const bool hasWayland = std::getenv("WAYLAND_DISPLAY") != nullptr;
        if (!hasWayland && !std::getenv("DISPLAY")) {
            problem = "there is no display";
            return nullptr;
        }
        SDL_SetMainReady();
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        SDL_SetHint(SDL_HINT_VIDEODRIVER, hasWayland ? "x11,wayland" : "x11"); // Wayland complains where it is not
        SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
        // The text field shows what is composed, the input method its candidates.
        SDL_SetHint(SDL_HINT_IME_INTERNAL_EDITING, "1");
        SDL_SetHint(SDL_HINT_IME_SHOW_UI, "1");
        SDL_SetHint(SDL_HINT_IME_SUPPORT_EXTENDED_TEXT, "1");
        SDL_SetHint(
            SDL_HINT_FRAMEBUFFER_ACCELERATION, "0"); // frames are made by the processor: a driver would take 50 MiB to copy them
        if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
            problem = SDL_GetError();
            return nullptr;
        }
        auto* window = SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, int(size.width),
            int(size.height), SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI);
        if (!window) {
            problem = SDL_GetError();
            SDL_QuitSubSystem(SDL_INIT_VIDEO);
            return nullptr;
        }
        auto opened = std::make_unique<SdlWindow>(window);
        if (opened->size() != size)
            opened->resize(size);
        return opened;
    }
};

} // namespace

} // namespace platform

MIVORA_EXPORT_MODULE(platform::SdlModule, platform::Sdl);
