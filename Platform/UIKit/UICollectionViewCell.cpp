#include "Platform/UIKit/UICollectionViewCell.h"

namespace platform {

void UICollectionViewCell::place(const CGRect& frame)
{
    setFrame(frame);
    contentView()->setFrame({ 0, 0, frame.width, frame.height });
}

} // namespace platform
