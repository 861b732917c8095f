#pragma once

#include "Platform/UIKit/UIView.h"

#include <string>

namespace platform {

// A row of a table. What it shows lies in its content view, whose constraints give the row's height; the content view keeps to
// the safe area at the sides. A row that leaves the table's bounds is used again for another one.
class UITableViewCell : public UIView {
public:
    explicit UITableViewCell(std::string reuseIdentifier = {});

    const std::string& reuseIdentifier() const { return reuseIdentifier_; }
    const std::shared_ptr<UIView>& contentView() const { return contentView_; }

protected:
    virtual void prepareForReuse() { } // before it is handed out for a row that it did not show before

private:
    friend class UITableView;

    double fittingHeight(double contentWidth); // points; 0 when nothing gives one
    void place(const CGRect& frame, double left, double right); // within the table, with that room at the sides

    std::string reuseIdentifier_;
    std::shared_ptr<UIView> contentView_;
    double measuredWidth = -1; // of the content, for which the height was taken
};

} // namespace platform
