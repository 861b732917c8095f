#include "Platform/UIKit/UICollectionViewFlowLayout.h"

#include <algorithm>
#include <cmath>

namespace platform {

void UICollectionViewFlowLayout::setMinimumLineSpacing(double points)
{
    spacing = std::isfinite(points) ? std::max(points, 0.0) : 0;
}

} // namespace platform
