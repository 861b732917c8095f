#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"

#include "Platform/UIKit/UIDevice.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr CGFloat cardShare = 0.85; // of the screen's width
constexpr CGFloat cardOffset = 20; // of its bottom above the screen's middle, clear of the keyboard
constexpr CGFloat sideMargin = 15;
constexpr CGFloat rowSpacing = 20;
constexpr CGFloat fieldHeight = 40;
constexpr CGFloat buttonsHeight = 45;
constexpr CGFloat lineWidth = 0.8;

// The card is dark in both appearances, and the dark one's gray could not be read on it.
UIColor disabledColor() { return MVColor::systemGray5().resolved({ .userInterfaceStyle = UIUserInterfaceStyle::light }); }

UIColor lineColor() { return UIColor::white().withAlphaComponent(0.5); }

void configureButton(const std::shared_ptr<UIButton>& button, const std::string& title)
{
    button | mv::setBackgroundColor(UIColor::clear()) | mv::updateTitle(title) | mv::setFont(MVFonts::semiBoldFont(18))
        | mv::setContentEdgeInsets({ 10, 0, 10, 0 });
}

} // namespace

void MVGuestUserNameInputViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    setUpActions();
}

void MVGuestUserNameInputViewController::viewDidAppear(bool animated)
{
    UIViewController::viewDidAppear(animated);
    inputTextField->becomeFirstResponder();
}

// So that the keyboard leaves along with the card.
void MVGuestUserNameInputViewController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    inputTextField->resignFirstResponder();
}

void MVGuestUserNameInputViewController::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIViewController::traitCollectionDidChange(previous);
    if (isViewLoaded())
        separateButtons();
}

void MVGuestUserNameInputViewController::configureSubViewsProperties()
{
    view()->setBackgroundColor(UIColor::black().withAlphaComponent(0.2));
    const bool hasMaterials = UIDevice::current().systemMajorVersion() >= 13;
    containerView->setEffect(UIBlurEffect { hasMaterials ? UIBlurEffect::Style::systemMaterialDark : UIBlurEffect::Style::dark });
    containerView | mv::setBackgroundColor(UIColor::clear()) | mv::setLayerMaskToBound(true) | mv::setLayerCornerRadius(10);
    headerLabel | mv::setBackgroundColor(UIColor::clear()) | mv::setTitleColor(UIColor::white())
        | mv::setText(MVLocalized("mvEnterNameToJoinChat")) | mv::setFont(MVFonts::semiBoldFont(18))
        | mv::setTextAlignMent(NSTextAlignment::center);
    headerLabel->setAdjustsFontSizeToFitWidth(true); // on the smallest phones it would be cut
    headerLabel->setMinimumScaleFactor(0.75);
    NSAttributes placeholderLooks;
    placeholderLooks.font = UIFont::systemFont(14, UIFontWeight::medium);
    placeholderLooks.foregroundColor = UIColor::white().withAlphaComponent(0.8);
    inputTextField | mv::setBackgroundColor(colorWithHex("#767680").withAlphaComponent(0.6)) | mv::setTextColor(UIColor::white())
        | mv::setFont(MVFonts::regularFont(16)) | mv::setTintColor(UIColor::white()) | mv::setLayerMaskToBound(true)
        | mv::setLayerCornerRadius(10)
        | mv::setAttributedPlaceHolder(NSAttributedString(MVLocalized("mvEnterYourNameHere"), placeholderLooks));
    buttonsStackView | mv::setBackgroundColor(UIColor::clear()) | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fillEqually) | mv::setAlignmentMode(UIStackViewAlignment::fill)
        | mv::setSpacing(0);
    configureButton(joinButton, MVLocalized("mvJoin"));
    joinButton | mv::updateTitleColor(MVColor::accentColor()) | mv::updateTitleColor(disabledColor(), UIControlState::disabled);
    joinButton->setEnabled(false);
    configureButton(cancelButton, MVLocalized("mvCancel"));
    cancelButton | mv::updateTitleColor(UIColor::systemRed());
}

void MVGuestUserNameInputViewController::setUpViews()
{
    view()->addSubview(containerView);
    const std::pair<std::shared_ptr<UIView>, const char*> subviews[] = {
        { headerLabel, "headerLabel" },
        { inputTextField, "inputTextField" },
        { buttonsStackView, "buttonsStackView" },
    };
    for (const auto& [subview, name] : subviews) {
        subview->setAccessibilityIdentifier(name);
        subview->setTranslatesAutoresizingMaskIntoConstraints(false);
        containerView->contentView()->addSubview(subview);
    }
    containerView->setAccessibilityIdentifier("containerView");
    containerView->setTranslatesAutoresizingMaskIntoConstraints(false);
    joinButton->setAccessibilityIdentifier("joinButton");
    cancelButton->setAccessibilityIdentifier("cancelButton");
    buttonsStackView->addArrangedSubview(joinButton);
    buttonsStackView->addArrangedSubview(cancelButton);
    addBorder(*buttonsStackView, BordersViewTag::top, lineColor(), lineWidth);
    separateButtons();
}

void MVGuestUserNameInputViewController::setUpViewsConstraints()
{
    activate({
        containerView->centerXAnchor().equalTo(view()->centerXAnchor()),
        containerView->bottomAnchor().equalTo(view()->centerYAnchor(), -cardOffset),
        containerView->widthAnchor().equalToMultiple(view()->widthAnchor(), cardShare),
        headerLabel->leadingAnchor().equalTo(containerView->leadingAnchor(), sideMargin),
        headerLabel->trailingAnchor().equalTo(containerView->trailingAnchor(), -sideMargin),
        headerLabel->topAnchor().equalTo(containerView->topAnchor(), rowSpacing),
        inputTextField->leadingAnchor().equalTo(headerLabel->leadingAnchor()),
        inputTextField->trailingAnchor().equalTo(headerLabel->trailingAnchor()),
        inputTextField->topAnchor().equalTo(headerLabel->bottomAnchor(), rowSpacing),
        inputTextField->heightAnchor().equalToConstant(fieldHeight),
        buttonsStackView->leadingAnchor().equalTo(containerView->leadingAnchor()),
        buttonsStackView->trailingAnchor().equalTo(containerView->trailingAnchor()),
        buttonsStackView->topAnchor().equalTo(inputTextField->bottomAnchor(), rowSpacing),
        buttonsStackView->bottomAnchor().equalTo(containerView->bottomAnchor()),
        buttonsStackView->heightAnchor().equalToConstant(buttonsHeight),
    });
}

void MVGuestUserNameInputViewController::setUpActions()
{
    using Handler = void (MVGuestUserNameInputViewController::*)();
    const auto on = [this](UIControl& control, UIControlEvent event, Handler handler) {
        control.addAction(event, [weakSelf = weak(this), handler] {
            if (const auto self = weakSelf.lock())
                (*self.*handler)();
        });
    };
    on(*joinButton, UIControlEvent::touchUpInside, &MVGuestUserNameInputViewController::didPressJoinButton);
    on(*cancelButton, UIControlEvent::touchUpInside, &MVGuestUserNameInputViewController::didPressCancelButton);
    on(*inputTextField, UIControlEvent::editingChanged, &MVGuestUserNameInputViewController::textFieldDidChange);
}

// The line between the two buttons, on whichever side of the first the second one lies.
void MVGuestUserNameInputViewController::separateButtons()
{
    const bool mirrored = view()->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    for (const auto side : { BordersViewTag::left, BordersViewTag::right })
        removeBorder(*joinButton, side);
    addBorder(*joinButton, mirrored ? BordersViewTag::left : BordersViewTag::right, lineColor(), lineWidth);
}

void MVGuestUserNameInputViewController::didPressJoinButton()
{
    const auto callback = onPressJoinButton;
    const std::string name = inputTextField->text();
    if (callback)
        callback(name);
}

void MVGuestUserNameInputViewController::didPressCancelButton() { dismiss(true); }

void MVGuestUserNameInputViewController::textFieldDidChange() { joinButton->setEnabled(!inputTextField->text().empty()); }

} // namespace mv
