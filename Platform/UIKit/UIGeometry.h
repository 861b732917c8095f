#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

namespace platform {

// Distances from the four edges inwards, in points.
struct UIEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;

    bool operator==(const UIEdgeInsets&) const = default;
    CGFloat horizontal() const { return left + right; }
    CGFloat vertical() const { return top + bottom; }
    CGRect inset(const CGRect& r) const { return { r.x + left, r.y + top, r.width - horizontal(), r.height - vertical() }; }
};

enum class NSLayoutConstraintAxis : unsigned char { horizontal, vertical };

enum class UIUserInterfaceLayoutDirection : unsigned char { leftToRight, rightToLeft };

// Whether what a view shows turns round with the language. The two force... cases hold whatever the language is.
enum class UISemanticContentAttribute : unsigned char { unspecified, forceLeftToRight, forceRightToLeft };

// What gives way, as bits, when the superview's size changes.
enum UIViewAutoresizing : unsigned char {
    noAutoresizing = 0,
    flexibleLeftMargin = 1,
    flexibleWidth = 2,
    flexibleRightMargin = 4,
    flexibleTopMargin = 8,
    flexibleHeight = 16,
    flexibleBottomMargin = 32,
};
constexpr UIViewAutoresizing operator|(UIViewAutoresizing a, UIViewAutoresizing b)
{
    return static_cast<UIViewAutoresizing>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

// How a view's picture lies in its bounds. `redraw` draws again whenever the size changes.
enum class UIViewContentMode : unsigned char {
    scaleToFill,
    scaleAspectFit,
    scaleAspectFill,
    redraw,
    center,
    top,
    bottom,
    left,
    right,
    topLeft,
    topRight,
    bottomLeft,
    bottomRight,
};

} // namespace platform
