#include "Platform/UIKit/UITableViewCell.h"

namespace platform {

UITableViewCell::UITableViewCell(std::string reuseIdentifier)
    : reuseIdentifier_(std::move(reuseIdentifier))
    , contentView_(make<UIView>())
{
    contentView_->setAccessibilityIdentifier("contentView");
    contentView_->setLayoutRoot(true);
    addSubview(contentView_);
}

double UITableViewCell::fittingHeight(double contentWidth)
{
    measuredWidth = contentWidth;
    return contentView_->systemLayoutSizeFitting({ contentWidth, 0 }, LayoutPriority::required, LayoutPriority::fittingSizeLevel)
        .height;
}

void UITableViewCell::place(const CGRect& frame, double left, double right)
{
    setFrame(frame);
    contentView_->setFrame({ left, 0, std::max(0.0, frame.width - left - right), frame.height });
}

} // namespace platform
