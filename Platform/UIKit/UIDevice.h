#pragma once

#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIOrientation.h"

#include <string>

namespace platform {

// What the host says about the machine.
class UIDevice final : public NSObject {
public:
    // Posted after every change of orientation; its object is the device.
    static constexpr const char* orientationDidChangeNotification = "UIDeviceOrientationDidChangeNotification";

    static UIDevice& current();

    UIDeviceOrientation orientation() const { return orientation_; } // unknown until the host says
    const std::string& systemVersion() const { return systemVersion_; }
    int systemMajorVersion() const; // 17 for "17.0"; 0 for a text that does not begin with a number

    // Host side.
    void setSystemVersion(std::string version) { systemVersion_ = std::move(version); }
    void setOrientation(UIDeviceOrientation orientation);

private:
    UIDeviceOrientation orientation_ = UIDeviceOrientation::unknown;
    std::string systemVersion_ = "17.0";
};

} // namespace platform
