#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGPath.h"

#include <memory>

namespace platform {

// Where a popover's arrow may point. A set of them is their sum.
enum class UIPopoverArrowDirection : unsigned char { none = 0, up = 1, down = 2, left = 4, right = 8, any = 15 };

constexpr UIPopoverArrowDirection operator|(UIPopoverArrowDirection one, UIPopoverArrowDirection other)
{
    return UIPopoverArrowDirection(unsigned(one) | unsigned(other));
}
constexpr bool contains(UIPopoverArrowDirection set, UIPopoverArrowDirection direction)
{
    return unsigned(set) & unsigned(direction);
}

// A bubble beside what it points at, in points. Its body is where the content lies; the arrow stands out of one of its edges.
struct PopoverPlacement {
    CGRect body;
    UIPopoverArrowDirection arrow = UIPopoverArrowDirection::none; // one direction, or none
    CGPoint tip; // of the arrow; the body's middle without one
    CGFloat cornerRadius = 0;
    CGFloat arrowLength = 0;

    bool operator==(const PopoverPlacement&) const = default;
    CGRect bounds() const; // body and arrow
    std::shared_ptr<const CGPath> outline() const; // in the bounds' coordinates, whose zero is their upper left corner
};

// Inside the area, at the first permitted side of the source (below, above, right, left of it) where the content fits, else at
// the one with most room, cut to it; over some of the source where that leaves it less than the least height. Without a permitted
// side its middle is the source's as far as the area allows.
PopoverPlacement placePopover(
    CGSize content, const CGRect& source, const CGRect& area, UIPopoverArrowDirection permitted, CGFloat leastHeight = 0);

} // namespace platform
