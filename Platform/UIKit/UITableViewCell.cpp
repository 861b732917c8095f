#include "Platform/UIKit/UITableViewCell.h"

namespace platform {

double UITableViewCell::fittingHeight(double contentWidth)
{
    measuredWidth = contentWidth;
    return contentView()
        ->systemLayoutSizeFitting({ contentWidth, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel)
        .height;
}

void UITableViewCell::place(const CGRect& frame, double left, double right)
{
    setFrame(frame);
    contentView()->setFrame({ left, 0, std::max(0.0, frame.width - left - right), frame.height });
}

} // namespace platform
