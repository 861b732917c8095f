#include "Platform/UIKit/UITouch.h"

#include "Platform/UIKit/UIWindow.h"

namespace platform {

CGPoint UITouch::location(const UIView* view) const { return view ? view->convertFrom(point, nullptr) : point; }

CGPoint UITouch::previousLocation(const UIView* view) const
{
    return view ? view->convertFrom(previousPoint, nullptr) : previousPoint;
}

} // namespace platform
