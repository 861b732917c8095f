#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/UIKit/UIGeometry.h"

#include <functional>

namespace platform {

enum class UIUserInterfaceStyle : unsigned char { unspecified = 0, light = 1, dark = 2 };
enum class UIUserInterfaceIdiom : unsigned char { phone = 0, pad = 1 };

// What a view knows of its surroundings: a plain value. Main thread.
struct UITraitCollection {
    UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::unspecified;
    UIUserInterfaceIdiom userInterfaceIdiom = UIUserInterfaceIdiom::phone;
    UIUserInterfaceLayoutDirection layoutDirection = UIUserInterfaceLayoutDirection::leftToRight;
    CGFloat displayScale = 2; // pixels a point, 1 to 4

    bool operator==(const UITraitCollection&) const = default;
    bool isDark() const { return userInterfaceStyle == UIUserInterfaceStyle::dark; }
    bool isRightToLeft() const { return layoutDirection == UIUserInterfaceLayoutDirection::rightToLeft; }
    TextDirection textDirection() const { return isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight; }
    // True when dynamic colours may differ between the two.
    bool hasDifferentColorAppearance(const UITraitCollection& other) const { return isDark() != other.isDark(); }

    // The traits in which dynamic colours resolve when nobody names any: the application's, or those of the view whose code is
    // being called for its appearance.
    static const UITraitCollection& current();
    static void setCurrent(const UITraitCollection& traits); // by the application, when it starts and when its traits change
    // Runs the function with this value as the current one, then puts the former back.
    void performAsCurrent(const std::function<void()>& function) const;
};

} // namespace platform
