#pragma once

namespace platform {

// How the device is held.
enum class UIDeviceOrientation : int {
    unknown = 0,
    portrait = 1,
    portraitUpsideDown = 2,
    landscapeLeft = 3, // the upper edge is at the left
    landscapeRight = 4,
    faceUp = 5,
    faceDown = 6,
};

// How the interface stands on the screen: a device turned to the left shows the interface turned to the right.
enum class UIInterfaceOrientation : int {
    unknown = 0,
    portrait = 1,
    portraitUpsideDown = 2,
    landscapeRight = 3,
    landscapeLeft = 4,
};

// One bit (1 << UIInterfaceOrientation) for each orientation.
enum class UIInterfaceOrientationMask : unsigned {
    portrait = 2,
    portraitUpsideDown = 4,
    landscapeRight = 8,
    landscapeLeft = 16,
    landscape = 24,
    allButUpsideDown = 26,
    all = 30,
};

constexpr bool contains(UIInterfaceOrientationMask mask, UIInterfaceOrientation orientation)
{
    return (static_cast<unsigned>(mask) >> static_cast<unsigned>(orientation)) & 1U;
}

} // namespace platform
