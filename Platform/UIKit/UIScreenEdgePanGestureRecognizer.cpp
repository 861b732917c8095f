#include "Platform/UIKit/UIScreenEdgePanGestureRecognizer.h"

#include "Platform/UIKit/UIScreen.h"

#include <cmath>

namespace platform {

namespace {

constexpr double edgeWidth = 20; // points from the screen's side that count as the edge

} // namespace

bool UIScreenEdgePanGestureRecognizer::mayBegin(CGPoint way) const
{
    const double down = location(nullptr).x - way.x;
    const bool fromLeft = edge_ == UIRectEdge::left;
    const double inFromEdge = fromLeft ? down : UIScreen::main().bounds().width - down;
    const double inwards = fromLeft ? way.x : -way.x;
    return inFromEdge <= edgeWidth && inwards > std::abs(way.y);
}

} // namespace platform
