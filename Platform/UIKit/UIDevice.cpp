#include "Platform/UIKit/UIDevice.h"

#include "Platform/Foundation/NotificationCenter.h"

#include <cstdlib>

namespace platform {

UIDevice& UIDevice::current()
{
    static const auto& device = *new std::shared_ptr<UIDevice>(make<UIDevice>()); // never destroyed
    return *device;
}

int UIDevice::systemMajorVersion() const { return std::atoi(systemVersion_.c_str()); }

void UIDevice::setOrientation(UIDeviceOrientation orientation)
{
    if (orientation_ == orientation)
        return;
    orientation_ = orientation;
    NotificationCenter::defaultCenter().post(orientationDidChangeNotification, weak(this).lock());
}

} // namespace platform
