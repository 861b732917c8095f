#pragma once

#include "Platform/UIKit/UIGeometry.h"
#include "Platform/UIKit/UITraitCollection.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A model of device that a host can pretend to be. Lengths are points.
struct HostDevice {
    std::string name;
    UIUserInterfaceIdiom idiom = UIUserInterfaceIdiom::phone;
    CGSize portraitSize;
    CGFloat scale = 1; // pixels a point
    UIEdgeInsets portraitSafeArea;
    UIEdgeInsets landscapeSafeArea;

    static HostDevice phone();
    static HostDevice smallPhone();
    static HostDevice tablet();
    static std::optional<HostDevice> named(std::string_view name); // "phone", "small", "tablet"
};

} // namespace platform
