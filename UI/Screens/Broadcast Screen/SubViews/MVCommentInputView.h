#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UITextField.h"
#include "Service/MVPlatform.h"

#include <functional>
#include <memory>
#include <string>

namespace mv {

// The bar in which a viewer writes a comment: a field, and beside it the reaction button or, while one writes, the send button. A
// text that was left unsent shows both. Its height is 50 points and what of the safe area's bottom it covers.
class MVCommentInputView final : public UIView, private UITextFieldDelegate {
public:
    explicit MVCommentInputView(const CGRect& frame = {}); // points

    std::function<void(const std::string& comment)> onPressSendCommentButton; // as typed, never empty
    // On or off in turn, beginning with on, and the button that was pressed, to point at with what comes up.
    std::function<void(bool isOn, const std::shared_ptr<UIButton>& sender)> onPressSendReactionButton;

    const std::shared_ptr<UITextField>& getTextField() const { return commentTextField; }

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void setUpActions();
    void didPressSendCommentButton();
    void didPressReactionsButton();
    void textFieldDidChange();
    // UITextFieldDelegate
    void textFieldDidBeginEditing(UITextField& textField) override;
    void textFieldDidEndEditing(UITextField& textField) override;
    void showButtonsAtRest();

    bool isReactionsOn = false;
    const std::shared_ptr<UIView> containerView = make<UIView>();
    const std::shared_ptr<UITextField> commentTextField = make<UITextField>();
    const std::shared_ptr<UIStackView> buttonsStackView = make<UIStackView>();
    const std::shared_ptr<UIButton> sendCommentButton = make<UIButton>();
    const std::shared_ptr<UIButton> sendReactionButton = make<UIButton>();
    const std::shared_ptr<char> registration = std::make_shared<char>(); // ends with this view
};

} // namespace mv
