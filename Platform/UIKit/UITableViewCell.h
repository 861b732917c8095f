#pragma once

#include "Platform/UIKit/ReusableCell.h"

namespace platform {

// A row of a table. What it shows lies in its content view, whose constraints give the row's height; the content view keeps to
// the safe area at the sides. A row that leaves the table's bounds is used again for another one.
class UITableViewCell : public ReusableCell {
public:
    using ReusableCell::ReusableCell;

private:
    friend class UITableView;

    double fittingHeight(double contentWidth); // points; 0 when nothing gives one
    void place(const CGRect& frame, double left, double right); // within the table, with that room at the sides

    double measuredWidth = -1; // of the content, for which the height was taken
};

} // namespace platform
