#pragma once

#include "Platform/UIKit/UITextField.h"
#include "Service/MVPlatform.h"

namespace mv {

// A text field whose text and caret keep 15 points clear of its left and right edges.
class MVTextField final : public UITextField {
public:
    using UITextField::UITextField;

    // UITextField
    CGRect textRect(const CGRect& bounds) const override;
    CGRect editingRect(const CGRect& bounds) const override;
};

} // namespace mv
