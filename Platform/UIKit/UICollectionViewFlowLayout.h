#pragma once

#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/RowHeights.h"

namespace platform {

// Puts the items of a collection into one line along the horizontal axis, beginning at the leading side. Items that were not seen
// count with the first one's width. Points.
class UICollectionViewFlowLayout final : public NSObject {
public:
    double minimumLineSpacing() const { return spacing; } // between neighbours; 10 at first
    void setMinimumLineSpacing(double points); // before the collection is first laid out; a negative one counts as 0

private:
    friend class UICollectionView;

    int count() const { return lengths.count(); }
    void setCount(int count) { lengths.setCount(count); }
    void setEstimatedWidth(double width) { lengths.setEstimate(width + spacing); }
    double width(int item) const { return lengths.height(item) - spacing; }
    void setWidth(int item, double width) { lengths.set(item, width + spacing); }
    void forgetWidths() { lengths.forgetAll(); }
    void shift(int by) { lengths.shift(by); } // items have come or gone before all that were seen
    double start(int item) const { return lengths.offset(item); } // from the leading end of the content
    int itemAt(double start) const { return lengths.rowAt(start); } // or the gap after it; -1 when there is none
    double contentWidth() const { return count() > 0 ? lengths.total() - spacing : 0; }

    RowHeights lengths; // each with the space after it
    double spacing = 10;
};

} // namespace platform
