#include "Platform/Host/SdlModule.h"

#include "Platform/Foundation/ModuleExport.h"

#include <SDL.h>
#include <SDL_syswm.h>

#include <cstring>
#include <optional>

namespace platform {

namespace {

struct WindowDeleter {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
};

std::optional<WindowEvent> touchEvent(WindowEvent::Kind kind, int finger, CGPoint point)
{
    return WindowEvent { .kind = kind, .finger = finger, .point = point, .key = 0, .command = false, .text = {} };
}

std::optional<WindowEvent> plainEvent(WindowEvent::Kind kind) { return touchEvent(kind, 0, {}); }

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
    case SDL_WINDOWEVENT_CLOSE:
        return plainEvent(WindowEvent::Kind::closed);
    default:
        return std::nullopt;
    }
}

class SdlWindow final : public NativeWindow {
public:
    explicit SdlWindow(SDL_Window* window)
        : window(window)
    {
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
        return { double(width), double(height) };
    }

    double density() const override
    {
        int pixels = 0;
        SDL_GetWindowSizeInPixels(window.get(), &pixels, nullptr);
        const auto width = size().width;
        return width > 0 && pixels > 0 ? pixels / width : 1;
    }

    void resize(CGSize size) override { SDL_SetWindowSize(window.get(), int(size.width), int(size.height)); }

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

    int descriptor() const override
    {
        SDL_SysWMinfo info;
        SDL_VERSION(&info.version);
        if (!SDL_GetWindowWMInfo(window.get(), &info))
            return -1;
#if defined(SDL_VIDEO_DRIVER_X11)
        if (info.subsystem == SDL_SYSWM_X11)
            return XConnectionNumber(info.info.x11.display);
#endif
        return -1;
    }

    void present(const std::uint32_t* pixels, int stride, int width, int height, const std::vector<PixelRect>& damage) override
    {
        SDL_Surface* surface = SDL_GetWindowSurface(window.get());
        if (!surface || surface->format->BytesPerPixel != 4)
            return;
        const PixelRect whole { 0, 0, std::min(width, surface->w), std::min(height, surface->h) };
        std::vector<SDL_Rect> shown;
        for (const auto& rect : damage) {
            const auto part = rect.intersection(whole);
            if (part.isEmpty())
                continue;
            SDL_Rect area { part.x, part.y, part.width, part.height };
            const auto* from = reinterpret_cast<const std::uint8_t*>(pixels) + std::ptrdiff_t(part.y) * stride + part.x * 4;
            auto* to = static_cast<std::uint8_t*>(surface->pixels) + std::ptrdiff_t(part.y) * surface->pitch + part.x * 4;
            SDL_ConvertPixels(
                part.width, part.height, SDL_PIXELFORMAT_RGB888, from, stride, surface->format->format, to, surface->pitch);
            shown.push_back(area);
        }
        if (!shown.empty())
            SDL_UpdateWindowSurfaceRects(window.get(), shown.data(), int(shown.size()));
    }

private:
    std::optional<WindowEvent> translate(const SDL_Event& event) const
    {
        switch (event.type) {
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            if (event.button.which == SDL_TOUCH_MOUSEID || event.button.button != SDL_BUTTON_LEFT)
                return std::nullopt; // the finger's own events tell it
            return touchEvent(event.type == SDL_MOUSEBUTTONDOWN ? WindowEvent::Kind::touchDown : WindowEvent::Kind::touchUp, 0,
                { double(event.button.x), double(event.button.y) });
        case SDL_MOUSEMOTION:
            if (event.motion.which == SDL_TOUCH_MOUSEID || !(event.motion.state & SDL_BUTTON_LMASK))
                return std::nullopt;
            return touchEvent(WindowEvent::Kind::touchMove, 0, { double(event.motion.x), double(event.motion.y) });
        case SDL_FINGERDOWN:
            return fingerEvent(WindowEvent::Kind::touchDown, event.tfinger);
        case SDL_FINGERMOTION:
            return fingerEvent(WindowEvent::Kind::touchMove, event.tfinger);
        case SDL_FINGERUP:
            return fingerEvent(WindowEvent::Kind::touchUp, event.tfinger);
        case SDL_KEYDOWN: {
            auto pressed = plainEvent(WindowEvent::Kind::key);
            pressed->key = char32_t(event.key.keysym.sym);
            pressed->command = event.key.keysym.mod & (KMOD_CTRL | KMOD_GUI);
            return pressed;
        }
        case SDL_TEXTINPUT: {
            auto typed = plainEvent(WindowEvent::Kind::text);
            typed->text = event.text.text;
            return typed;
        }
        case SDL_QUIT:
            return plainEvent(WindowEvent::Kind::closed);
        case SDL_WINDOWEVENT:
            return windowEvent(event.window);
        default:
            return std::nullopt;
        }
    }

    std::optional<WindowEvent> fingerEvent(WindowEvent::Kind kind, const SDL_TouchFingerEvent& event) const
    {
        const auto all = size();
        return touchEvent(kind, int(event.fingerId & 0xffff) + 1, { event.x * all.width, event.y * all.height });
    }

    std::unique_ptr<SDL_Window, WindowDeleter> window;
};

class Sdl final : public SdlModule {
public:
    std::unique_ptr<NativeWindow> open(const std::string& title, CGSize size, std::string& problem) override
    {
        SDL_SetMainReady();
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11,wayland");
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
        return std::make_unique<SdlWindow>(window);
    }
};

} // namespace

} // namespace platform

MIVORA_EXPORT_MODULE(platform::SdlModule, platform::Sdl);
