#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIVisualEffectView.h"
#include "Service/MVPlatform.h"

namespace mv {

// A button on a dark blurred backing, for use over video and pictures. Its owner gives the button image, tint and action.
class MVBlurButton : public UIView {
public:
    explicit MVBlurButton(const CGRect& frame = {});

    const std::shared_ptr<UIButton>& button() const { return button_; }
    MVBlurButton& setBlurEffectStyle(UIBlurEffect::Style style);

private:
    std::shared_ptr<UIVisualEffectView> backBlurView;
    std::shared_ptr<UIButton> button_;
};

} // namespace mv
