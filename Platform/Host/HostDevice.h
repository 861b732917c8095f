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
    // What a desktop window of that size stands for: a phone, or a tablet when its shorter side has 600 points or more. Nothing
    // of it lies under a camera or a home indicator, so all of it is safe.
    static HostDevice window(CGSize size, CGFloat scale);
    static std::optional<HostDevice> named(std::string_view name); // "phone", "small", "tablet"
};

} // namespace platform
