#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace test {

// What a display shows: rows of 0xRRGGBB words.
struct Screenshot {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;
    std::uint32_t at(int x, int y) const { return pixels[std::size_t(y) * width + x]; }
};

// A display of its own without a screen (Xvfb), the DISPLAY of this process while it lives, and a viewer in front of it who moves
// a mouse and presses keys. Coordinates are pixels of the one window there is. May be used from another thread than the window's.
class VirtualDisplay {
public:
    // Dots per inch of the user's setting for texts; 0: none.
    explicit VirtualDisplay(int dotsPerInch = 0);
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    bool isOpen() const; // false when Xvfb cannot be started
    // False when no window of that title is on the display after so many seconds.
    bool waitForWindow(const std::string& title, double seconds = 10);
    Screenshot screenshot() const; // of the window

    void moveTo(int x, int y);
    void pressButton(int button); // 1: left; 4 to 7: the wheel up, down, left, right
    void releaseButton(int button);
    void click(int x, int y);
    void turnWheel(int x, int y, int notches); // positive: towards the viewer
    void pressKey(const char* keyName, bool withControl = false, bool withShift = false); // "d", "Return"
    // Copies something in another application, which then answers nobody who asks for it.
    void holdClipboard();
    int takeClipboardRequests(); // how often it was asked since the last call
    void resizeWindow(int width, int height);
    void hideWindow();
    void showWindow();

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace test
