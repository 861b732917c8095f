#include "Platform/Host/HostDevice.h"

#include <algorithm>

namespace platform {

HostDevice HostDevice::phone()
{
    return { .name = "phone",
        .idiom = UIUserInterfaceIdiom::phone,
        .portraitSize = { 393, 852 },
        .scale = 3,
        .portraitSafeArea = { 59, 0, 34, 0 },
        .landscapeSafeArea = { 0, 59, 21, 59 } };
}

HostDevice HostDevice::smallPhone()
{
    return { .name = "small",
        .idiom = UIUserInterfaceIdiom::phone,
        .portraitSize = { 320, 568 },
        .scale = 2,
        .portraitSafeArea = { 20, 0, 0, 0 },
        .landscapeSafeArea = {} };
}

HostDevice HostDevice::tablet()
{
    return { .name = "tablet",
        .idiom = UIUserInterfaceIdiom::pad,
        .portraitSize = { 820, 1180 },
        .scale = 2,
        .portraitSafeArea = { 24, 0, 20, 0 },
        .landscapeSafeArea = { 24, 0, 20, 0 } };
}

HostDevice HostDevice::window(CGSize size, CGFloat scale)
{
    constexpr CGFloat smallestTablet = 600; // points
    const auto [shorter, longer] = std::minmax(size.width, size.height);
    return { .name = "window",
        .idiom = shorter < smallestTablet ? UIUserInterfaceIdiom::phone : UIUserInterfaceIdiom::pad,
        .portraitSize = { shorter, longer },
        .scale = scale,
        .portraitSafeArea = {},
        .landscapeSafeArea = {} };
}

std::optional<HostDevice> HostDevice::named(std::string_view name)
{
    for (auto& device : { phone(), smallPhone(), tablet() }) {
        if (device.name == name)
            return device;
    }
    return std::nullopt;
}

} // namespace platform
