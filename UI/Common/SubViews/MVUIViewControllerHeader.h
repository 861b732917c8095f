#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Service/MVPlatform.h"

namespace mv {

// A title bar over a hairline: a centred title between two rows of buttons, clear of the safe area at the sides.
class MVUIViewControllerHeader : public UIView {
public:
    explicit MVUIViewControllerHeader(const CGRect& frame = {});

    void setTitle(const std::string& title);
    // In place of the former ones, from the leading side on.
    void setLeftNavButtons(const std::vector<std::shared_ptr<UIButton>>& buttons);
    void setRightNavButtons(const std::vector<std::shared_ptr<UIButton>>& buttons);

private:
    std::shared_ptr<UIStackView> leftButtonsStackView;
    std::shared_ptr<UIStackView> rightButtonStackView;
    std::shared_ptr<UILabel> titleLabel;
};

} // namespace mv
