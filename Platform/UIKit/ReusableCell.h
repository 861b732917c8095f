#pragma once

#include "Platform/UIKit/UIView.h"

#include <string>

namespace platform {

// What the cells of tables and collections have in common: what they show lies in their content view, and a cell that has gone
// out of sight is used again for another row or item.
class ReusableCell : public UIView {
public:
    explicit ReusableCell(std::string reuseIdentifier = {});

    const std::string& reuseIdentifier() const { return reuseIdentifier_; }
    const std::shared_ptr<UIView>& contentView() const { return contentView_; }

protected:
    virtual void prepareForReuse() { } // before it is handed out for what it did not show before

private:
    friend class CellPool;

    std::string reuseIdentifier_;
    std::shared_ptr<UIView> contentView_;
};

} // namespace platform
