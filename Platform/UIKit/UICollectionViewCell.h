#pragma once

#include "Platform/UIKit/ReusableCell.h"

namespace platform {

// An item of a collection. What it shows lies in its content view, which fills it.
class UICollectionViewCell : public ReusableCell {
public:
    using ReusableCell::ReusableCell;

private:
    friend class UICollectionView;

    void place(const CGRect& frame); // within the collection
};

} // namespace platform
