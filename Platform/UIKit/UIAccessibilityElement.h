#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <string>

namespace platform {

// A part of a view that is drawn rather than a view of its own, for those who look for it by name: assistive tools, view trees,
// tests.
struct UIAccessibilityElement {
    std::string identifier;
    std::string label; // what it shows, or says that it is
    CGRect frame; // points of its view
    bool enabled = true;
    bool selected = false;
};

} // namespace platform
