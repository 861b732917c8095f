#include "Tests/Support/VirtualDisplay.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace test {

namespace {

// Starts Xvfb on a number that it chooses itself; empty when it cannot be started.
std::string startServer(pid_t& process)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM); // it goes when the test crashes
        close(ends[0]);
        const auto descriptor = std::to_string(ends[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1920x1920x24", "-nolisten", "tcp", "-noreset",
            nullptr);
        _exit(127);
    }
    close(ends[1]);
    std::string number;
    for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';)
        number += digit;
    close(ends[0]);
    return number.empty() ? "" : ":" + number;
}

int ignoreError(Display*, XErrorEvent*) { return 0; } // windows come and go while the tree is searched

} // namespace

struct VirtualDisplay::Impl {
    pid_t server = 0;
    Display* display = nullptr;
    std::string title;

    bool hasTitle(Window candidate) const
    {
        char* name = nullptr;
        const bool found = XFetchName(display, candidate, &name) && name && title == name;
        if (name)
            XFree(name);
        return found;
    }

    // Looked for at every use, as the window may be made anew for its first frame.
    Window window(bool hidden = false) const
    {
        Window root = 0, parent = 0, *children = nullptr, found = 0;
        unsigned count = 0;
        if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count))
            return 0;
        for (unsigned i = 0; i < count; ++i) {
            XWindowAttributes attributes;
            if (XGetWindowAttributes(display, children[i], &attributes) && (hidden || attributes.map_state == IsViewable)
                && hasTitle(children[i]))
                found = children[i];
        }
        if (children)
            XFree(children);
        return found;
    }

    void key(KeySym symbol, bool down) const { XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), down, CurrentTime); }
};

VirtualDisplay::VirtualDisplay(int dotsPerInch)
    : impl(std::make_unique<Impl>())
{
    const auto name = startServer(impl->server);
    impl->display = name.empty() ? nullptr : XOpenDisplay(name.c_str());
    if (!impl->display)
        return;
    setenv("DISPLAY", name.c_str(), 1);
    XSetErrorHandler(ignoreError);
    if (dotsPerInch > 0) {
        const auto setting = "Xft.dpi:\t" + std::to_string(dotsPerInch) + "\n";
        XChangeProperty(impl->display, DefaultRootWindow(impl->display), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
            reinterpret_cast<const unsigned char*>(setting.c_str()), int(setting.size()));
        XSync(impl->display, False);
    }
}

VirtualDisplay::~VirtualDisplay()
{
    if (impl->display)
        XCloseDisplay(impl->display);
    unsetenv("DISPLAY");
    if (impl->server > 0) {
        kill(impl->server, SIGTERM);
        waitpid(impl->server, nullptr, 0);
    }
}

bool VirtualDisplay::isOpen() const { return impl->display != nullptr; }

bool VirtualDisplay::waitForWindow(const std::string& title, double seconds)
{
    impl->title = title;
    for (int tries = int(seconds * 50); tries > 0; --tries) {
        if (impl->window())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

Screenshot VirtualDisplay::screenshot() const
{
    Screenshot shot;
    const Window window = impl->window();
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(impl->display, window, &attributes))
        return shot;
    XImage* image
        = XGetImage(impl->display, window, 0, 0, unsigned(attributes.width), unsigned(attributes.height), AllPlanes, ZPixmap);
    if (!image)
        return shot;
    shot.width = image->width;
    shot.height = image->height;
    shot.pixels.reserve(std::size_t(shot.width) * shot.height);
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x)
            shot.pixels.push_back(std::uint32_t(XGetPixel(image, x, y)) & 0xffffff);
    }
    XDestroyImage(image);
    return shot;
}

void VirtualDisplay::moveTo(int x, int y)
{
    int left = 0, top = 0;
    Window child = 0;
    XTranslateCoordinates(impl->display, impl->window(), DefaultRootWindow(impl->display), x, y, &left, &top, &child);
    XTestFakeMotionEvent(impl->display, -1, left, top, CurrentTime);
    XSync(impl->display, False);
}

void VirtualDisplay::pressButton(int button)
{
    XTestFakeButtonEvent(impl->display, unsigned(button), True, CurrentTime);
    XSync(impl->display, False);
}

void VirtualDisplay::releaseButton(int button)
{
    XTestFakeButtonEvent(impl->display, unsigned(button), False, CurrentTime);
    XSync(impl->display, False);
}

void VirtualDisplay::click(int x, int y)
{
    moveTo(x, y);
    pressButton(1);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    releaseButton(1);
}

void VirtualDisplay::turnWheel(int x, int y, int notches)
{
    moveTo(x, y);
    const int button = notches > 0 ? 5 : 4;
    for (int i = std::abs(notches); i > 0; --i) {
        pressButton(button);
        releaseButton(button);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void VirtualDisplay::pressKey(const char* keyName, bool withControl, bool withShift)
{
    const auto hold = [&](bool isDown) {
        if (withControl)
            impl->key(XStringToKeysym("Control_L"), isDown);
        if (withShift)
            impl->key(XStringToKeysym("Shift_L"), isDown);
    };
    const KeySym symbol = XStringToKeysym(keyName);
    hold(true);
    impl->key(symbol, true);
    impl->key(symbol, false);
    hold(false);
    XSync(impl->display, False);
}

void VirtualDisplay::holdClipboard()
{
    const Window holder = XCreateSimpleWindow(impl->display, DefaultRootWindow(impl->display), 0, 0, 1, 1, 0, 0, 0);
    XSetSelectionOwner(impl->display, XInternAtom(impl->display, "CLIPBOARD", False), holder, CurrentTime);
    XSync(impl->display, False);
}

int VirtualDisplay::takeClipboardRequests()
{
    XSync(impl->display, False);
    int count = 0;
    for (XEvent event; XCheckTypedEvent(impl->display, SelectionRequest, &event);)
        ++count;
    return count;
}

void VirtualDisplay::resizeWindow(int width, int height)
{
    XResizeWindow(impl->display, impl->window(), unsigned(width), unsigned(height));
    XSync(impl->display, False);
}

void VirtualDisplay::hideWindow()
{
    XUnmapWindow(impl->display, impl->window());
    XSync(impl->display, False);
}

void VirtualDisplay::showWindow()
{
    XMapWindow(impl->display, impl->window(true));
    XSync(impl->display, False);
}

} // namespace test
