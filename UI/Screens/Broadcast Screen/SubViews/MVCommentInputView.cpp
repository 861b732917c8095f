#include "UI/Screens/Broadcast Screen/SubViews/MVCommentInputView.h"

#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr CGFloat fieldHeight = 50; // points
constexpr CGFloat buttonSize = 28;
constexpr CGFloat margin = 10;
constexpr double showHideDuration = 0.33; // seconds

} // namespace

MVCommentInputView::MVCommentInputView(const CGRect& frame)
    : UIView(frame)
{
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    setUpActions();
}

void MVCommentInputView::configureSubViewsProperties()
{
    setBackgroundColor(UIColor::clear());
    containerView | mv::setBackgroundColor(UIColor::clear());
    buttonsStackView | mv::setBackgroundColor(UIColor::clear()) | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fill) | mv::setAlignmentMode(UIStackViewAlignment::center)
        | mv::setSpacing(margin);
    sendCommentButton | mv::setBackgroundColor(UIColor::clear()) | mv::setTintColor(UIColor::white())
        | mv::updateImage(getImage("sendIcon"));
    sendCommentButton->setHidden(true);
    sendCommentButton->setEnabled(false);
    sendReactionButton | mv::setBackgroundColor(UIColor::clear()) | mv::setTintColor(UIColor::white())
        | mv::updateImage(getImage("addReactionIcon"));
    NSAttributes placeholderLooks;
    placeholderLooks.font = MVFonts::semiBoldFont(16);
    placeholderLooks.foregroundColor = UIColor::white().withAlphaComponent(0.8);
    commentTextField | mv::setBackgroundColor(UIColor::clear()) | mv::setTextColor(UIColor::white())
        | mv::setFont(MVFonts::regularFont(18)) | mv::setTintColor(UIColor::white()) | mv::setBorderStyle(UITextBorderStyle::none)
        | mv::setLayerMaskToBound(true) | mv::setLayerCornerRadius(10)
        | mv::setAttributedPlaceHolder(NSAttributedString(MVLocalized("mvTypeMessage"), placeholderLooks));
}

void MVCommentInputView::setUpViews()
{
    containerView->setAccessibilityIdentifier("containerView");
    commentTextField->setAccessibilityIdentifier("commentTextField");
    buttonsStackView->setAccessibilityIdentifier("buttonsStackView");
    sendCommentButton->setAccessibilityIdentifier("sendCommentButton");
    sendReactionButton->setAccessibilityIdentifier("sendReactionButton");
    addSubview(containerView);
    containerView->addSubview(buttonsStackView);
    containerView->addSubview(commentTextField);
    buttonsStackView->addArrangedSubview(sendCommentButton);
    buttonsStackView->addArrangedSubview(sendReactionButton);
    addBorder(*this, BordersViewTag::top, MVColor::seperatorColor(), 0.5);
}

void MVCommentInputView::setUpViewsConstraints()
{
    for (const std::shared_ptr<UIView>& view :
        std::initializer_list<std::shared_ptr<UIView>> { containerView, buttonsStackView, commentTextField })
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto safe = containerView->safeAreaLayoutGuide();
    activate({
        containerView->leadingAnchor().equalTo(leadingAnchor()),
        containerView->trailingAnchor().equalTo(trailingAnchor()),
        containerView->bottomAnchor().equalTo(safeAreaLayoutGuide()->bottomAnchor()),
        containerView->topAnchor().equalTo(topAnchor()),
        buttonsStackView->topAnchor().equalTo(containerView->topAnchor()),
        buttonsStackView->bottomAnchor().equalTo(containerView->bottomAnchor()),
        buttonsStackView->trailingAnchor().equalTo(safe->trailingAnchor(), -margin),
        commentTextField->leadingAnchor().equalTo(safe->leadingAnchor(), margin),
        commentTextField->trailingAnchor().equalTo(buttonsStackView->leadingAnchor(), -margin),
        commentTextField->topAnchor().equalTo(containerView->topAnchor()),
        commentTextField->bottomAnchor().equalTo(containerView->bottomAnchor()),
        commentTextField->heightAnchor().equalToConstant(fieldHeight),
        sendReactionButton->heightAnchor().equalToConstant(buttonSize),
        sendReactionButton->widthAnchor().equalToConstant(buttonSize),
        sendCommentButton->heightAnchor().equalToConstant(buttonSize),
        sendCommentButton->widthAnchor().equalToConstant(buttonSize),
    });
}

void MVCommentInputView::setUpActions()
{
    // The field wants an owner to refer to weakly, and this view has none before its constructor has ended.
    commentTextField->setDelegate(std::shared_ptr<UITextFieldDelegate>(registration, this));
    using Handler = void (MVCommentInputView::*)();
    const auto on = [this](UIControl& control, UIControlEvent event, Handler handler) {
        control.addAction(event, [weakSelf = weak(this), handler] {
            if (const auto self = weakSelf.lock())
                (*self.*handler)();
        });
    };
    on(*sendCommentButton, UIControlEvent::touchUpInside, &MVCommentInputView::didPressSendCommentButton);
    on(*sendReactionButton, UIControlEvent::touchUpInside, &MVCommentInputView::didPressReactionsButton);
    on(*commentTextField, UIControlEvent::editingChanged, &MVCommentInputView::textFieldDidChange);
}

void MVCommentInputView::didPressSendCommentButton()
{
    const std::string comment = commentTextField->text();
    if (comment.empty())
        return;
    commentTextField->setText(std::nullopt);
    if (commentTextField->isEditing())
        commentTextField->endEditing(true);
    else
        showButtonsAtRest();
    const auto callback = onPressSendCommentButton;
    if (callback)
        callback(comment);
}

void MVCommentInputView::didPressReactionsButton()
{
    isReactionsOn = !isReactionsOn;
    const auto callback = onPressSendReactionButton;
    if (callback)
        callback(isReactionsOn, sendReactionButton);
}

void MVCommentInputView::textFieldDidChange() { sendCommentButton->setEnabled(!commentTextField->text().empty()); }

void MVCommentInputView::textFieldDidBeginEditing(UITextField& /*textField*/)
{
    UIView::animate(showHideDuration, [this] {
        sendReactionButton->setHidden(true);
        sendCommentButton->setHidden(false);
    });
}

void MVCommentInputView::textFieldDidEndEditing(UITextField& /*textField*/) { showButtonsAtRest(); }

// A text that was left unsent can still be sent.
void MVCommentInputView::showButtonsAtRest()
{
    const bool hasText = !commentTextField->text().empty();
    UIView::animate(showHideDuration, [this, hasText] {
        sendReactionButton->setHidden(false);
        sendCommentButton->setHidden(!hasText);
        sendCommentButton->setEnabled(hasText);
    });
}

} // namespace mv
