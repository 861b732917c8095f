#include "UI/Screens/Broadcast Screen/Controllers/MVUnbuiltScreenViewController.h"

#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr double closeButtonSize = 38; // points
constexpr double margin = 15; // points from the safe area's edges

} // namespace

MVUnbuiltScreenViewController::MVUnbuiltScreenViewController(const std::string& notice) { noticeLabel->setText(notice); }

void MVUnbuiltScreenViewController::setBroadcast(std::shared_ptr<MVBroadcast> broadcast)
{
    broadcast_ = std::move(broadcast);
    showTitle();
}

void MVUnbuiltScreenViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    showTitle();
    closeScreenButton->button()->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressCloseScreenButton();
    });
}

void MVUnbuiltScreenViewController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    setViewCircular(*closeScreenButton);
}

void MVUnbuiltScreenViewController::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIViewController::traitCollectionDidChange(previous);
    closeScreenButton | mv::setBorderLayerColor(MVColor::seperatorColor());
}

void MVUnbuiltScreenViewController::configureSubViewsProperties()
{
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    titleLabel | mv::setFont(MVFont::largeSizeSemiboldFont()) | mv::setTitleColor(MVColor::primaryTextColor())
        | mv::setTextAlignMent(NSTextAlignment::center) | mv::setNumberOfLine(0);
    noticeLabel | mv::setFont(MVFont::mediumSizeRegularFont()) | mv::setTitleColor(MVColor::secondaryTextColor())
        | mv::setTextAlignMent(NSTextAlignment::center) | mv::setNumberOfLine(0);
    textStackView | mv::setAxis(NSLayoutConstraintAxis::vertical) | mv::setSpacing(8);
    closeScreenButton | mv::setBorderLayerColor(MVColor::seperatorColor()) | mv::setBorderLayerWidth(0.5)
        | mv::setLayerMaskToBound(true);
    closeScreenButton->button() | mv::setBackgroundColor(MVColor::backgroundColor())
        | mv::setTintColor(MVColor::primaryTextColor()) | mv::updateImage(getImage("crossPlainIcon"))
        | mv::setImageEdgeInsets({ 10, 10, 10, 10 });
    textStackView->setAccessibilityIdentifier("textStackView");
    titleLabel->setAccessibilityIdentifier("titleLabel");
    noticeLabel->setAccessibilityIdentifier("noticeLabel");
    closeScreenButton->setAccessibilityIdentifier("closeScreenButton");
}

void MVUnbuiltScreenViewController::setUpViews()
{
    textStackView->addArrangedSubview(titleLabel);
    textStackView->addArrangedSubview(noticeLabel);
    view()->addSubview(textStackView);
    view()->addSubview(closeScreenButton);
}

void MVUnbuiltScreenViewController::setUpViewsConstraints()
{
    textStackView->setTranslatesAutoresizingMaskIntoConstraints(false);
    closeScreenButton->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto safeArea = view()->safeAreaLayoutGuide();
    activate({
        closeScreenButton->widthAnchor().equalToConstant(closeButtonSize),
        closeScreenButton->heightAnchor().equalToConstant(closeButtonSize),
        closeScreenButton->topAnchor().equalTo(safeArea->topAnchor(), margin),
        closeScreenButton->trailingAnchor().equalTo(safeArea->trailingAnchor(), -margin),
        textStackView->leadingAnchor().equalTo(safeArea->leadingAnchor(), margin + closeButtonSize),
        textStackView->trailingAnchor().equalTo(safeArea->trailingAnchor(), -margin - closeButtonSize),
        textStackView->centerYAnchor().equalTo(safeArea->centerYAnchor()),
    });
}

void MVUnbuiltScreenViewController::showTitle()
{
    const auto title = broadcast_ ? broadcast_->title.value_or("") : "";
    titleLabel->setText(title);
    titleLabel->setHidden(title.empty());
}

void MVUnbuiltScreenViewController::didPressCloseScreenButton()
{
    if (const auto callback = onPressCloseButton)
        callback();
}

} // namespace mv
