#include "Platform/UIKit/PopoverPlacement.h"

#include <algorithm>

namespace platform {

namespace {

using Arrow = UIPopoverArrowDirection;

constexpr CGFloat fullCornerRadius = 13; // points
constexpr CGFloat fullArrowLength = 13; // half of its width at the body's edge as well
constexpr CGFloat leastCornerRadius = 4; // what a narrow body keeps of its corners beside the arrow

// The arrow's parts in lengths of it: how far from its middle line, and how far out of the body's edge. A side leaves the edge at
// the joint, runs straight from the one bend to the other and turns into the other side around the tip.
constexpr CGPoint joint { 1, 0 }, jointControl { 0.75, 0 }, bendAtBody { 0.56, 0.29 }, bendAtTip { 0.2, 0.846 };
constexpr CGFloat tipControl = 1.15;

bool isVertical(Arrow arrow) { return arrow == Arrow::up || arrow == Arrow::down; }

// A value no lower than low, and no higher than high where that is not lower still.
CGFloat clampedTo(CGFloat value, CGFloat low, CGFloat high) { return std::max(low, std::min(value, high)); }

// For the body and the arrow beside the source.
CGFloat room(Arrow arrow, const CGRect& source, const CGRect& area)
{
    switch (arrow) {
    case Arrow::up:
        return area.maxY() - source.maxY();
    case Arrow::down:
        return source.minY() - area.minY();
    case Arrow::left:
        return area.maxX() - source.maxX();
    default:
        return source.minX() - area.minX();
    }
}

Arrow chooseArrow(CGSize content, const CGRect& source, const CGRect& area, Arrow permitted)
{
    Arrow best = Arrow::none;
    CGFloat bestShare = 0;
    for (const Arrow arrow : { Arrow::up, Arrow::down, Arrow::left, Arrow::right }) {
        if (!contains(permitted, arrow))
            continue;
        const CGFloat needed = (isVertical(arrow) ? content.height : content.width) + fullArrowLength;
        const CGFloat share = room(arrow, source, area) / needed;
        if (share >= 1)
            return arrow;
        if (best == Arrow::none || share > bestShare) {
            best = arrow;
            bestShare = share;
        }
    }
    return best;
}

// From a bubble whose arrow points down to the one whose arrow points there; the depth is that of body and arrow.
CGAffineTransform turned(Arrow arrow, CGFloat depth)
{
    switch (arrow) {
    case Arrow::up:
        return { 1, 0, 0, -1, 0, depth };
    case Arrow::left:
        return { 0, 1, -1, 0, depth, 0 };
    case Arrow::right:
        return { 0, 1, 1, 0, 0, 0 };
    default:
        return {};
    }
}

} // namespace

CGRect PopoverPlacement::bounds() const
{
    CGRect all = body;
    if (arrow == Arrow::none)
        return all;
    (isVertical(arrow) ? all.height : all.width) += arrowLength;
    if (arrow == Arrow::up)
        all.y -= arrowLength;
    if (arrow == Arrow::left)
        all.x -= arrowLength;
    return all;
}

std::shared_ptr<const CGPath> PopoverPlacement::outline() const
{
    if (arrow == Arrow::none)
        return CGPath::roundedRect({ 0, 0, body.width, body.height }, cornerRadius);
    const bool vertical = isVertical(arrow);
    const CGFloat along = vertical ? body.width : body.height, across = vertical ? body.height : body.width;
    const CGFloat middle = vertical ? tip.x - body.x : tip.y - body.y;
    const auto at = [&](CGPoint part, int side) {
        return CGPoint { middle + side * part.x * arrowLength, across + part.y * arrowLength };
    };
    CGPath upright;
    upright.addRoundedRect({ 0, 0, along, across }, cornerRadius);
    // The same way round as the body, so that both count as inside.
    upright.moveTo(at(joint, 1));
    upright.quadTo(at(jointControl, 1), at(bendAtBody, 1));
    upright.lineTo(at(bendAtTip, 1));
    upright.quadTo({ middle, across + tipControl * arrowLength }, at(bendAtTip, -1));
    upright.lineTo(at(bendAtBody, -1));
    upright.quadTo(at(jointControl, -1), at(joint, -1));
    upright.close();
    CGPath path;
    path.addPath(upright, turned(arrow, across + arrowLength));
    return std::make_shared<const CGPath>(std::move(path));
}

PopoverPlacement placePopover(CGSize content, const CGRect& source, const CGRect& area, Arrow permitted, CGFloat leastHeight)
{
    const Arrow arrow = chooseArrow(content, source, area, permitted);
    const bool vertical = isVertical(arrow);
    CGSize size { std::min(content.width, area.width), std::min(content.height, area.height) };
    const CGFloat edge = vertical ? size.width : size.height; // that the arrow stands on
    const CGFloat length = arrow == Arrow::none ? 0 : clampedTo(edge / 2 - leastCornerRadius, 0, fullArrowLength);
    if (arrow != Arrow::none) {
        CGFloat& depth = vertical ? size.height : size.width;
        const CGFloat free = room(arrow, source, area) - length, corners = 2 * fullCornerRadius;
        if (free >= (vertical ? std::max(corners, leastHeight) : corners)) // else it lies over some of the source
            depth = std::min(depth, free);
    }
    const CGFloat radius = std::min({ fullCornerRadius, std::max(0.0, edge / 2 - length), size.width / 2, size.height / 2 });

    CGPoint corner { source.midX() - size.width / 2, source.midY() - size.height / 2 };
    if (arrow == Arrow::up)
        corner.y = source.maxY() + length;
    else if (arrow == Arrow::down)
        corner.y = source.minY() - length - size.height;
    else if (arrow == Arrow::left)
        corner.x = source.maxX() + length;
    else if (arrow == Arrow::right)
        corner.x = source.minX() - length - size.width;
    const CGRect body { clampedTo(corner.x, area.minX(), area.maxX() - size.width),
        clampedTo(corner.y, area.minY(), area.maxY() - size.height), size.width, size.height };

    CGPoint tip = body.center();
    const CGFloat clear = radius + length; // from the body's corners to the arrow's middle
    if (arrow != Arrow::none && vertical) {
        tip.x = clampedTo(source.midX(), body.minX() + clear, body.maxX() - clear);
        tip.y = arrow == Arrow::up ? body.minY() - length : body.maxY() + length;
    } else if (arrow != Arrow::none) {
        tip.y = clampedTo(source.midY(), body.minY() + clear, body.maxY() - clear);
        tip.x = arrow == Arrow::left ? body.minX() - length : body.maxX() + length;
    }
    return { body, arrow, tip, radius, length };
}

} // namespace platform
