#include "Platform/UIKit/ReusableCell.h"

namespace platform {

ReusableCell::ReusableCell(std::string reuseIdentifier)
    : reuseIdentifier_(std::move(reuseIdentifier))
    , contentView_(make<UIView>())
{
    contentView_->setAccessibilityIdentifier("contentView");
    contentView_->setLayoutRoot(true);
    addSubview(contentView_);
}

} // namespace platform
