#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastBaseTableCell.h"

#include "Platform/Foundation/DateFormatter.h"
#include "Platform/UIKit/UIDevice.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr CGFloat cardRadius = 20;
constexpr double bannerFade = 1; // seconds

std::string dateText(Date date)
{
    DateFormatter formatter;
    formatter.setDateFormat("MMM d, h:mm a");
    formatter.setLocale(Locale { "en_US_POSIX" });
    return formatter.string(date);
}

void styleCardButton(const std::shared_ptr<UIButton>& button, const char* titleKey)
{
    button | mv::setFont(MVFonts::semiBoldFont(16)) | mv::setContentEdgeInsets({ 10, 0, 10, 0 }) | mv::setLayerCornerRadius(15)
        | mv::updateTitle(MVLocalized(titleKey));
    button->setClipsToBounds(true);
}

} // namespace

SDWebImageActivityIndicator mvIndicator()
{
    return UIDevice::current().systemMajorVersion() >= 13 ? SDWebImageActivityIndicator::mediumIndicator()
                                                          : SDWebImageActivityIndicator::grayIndicator();
}

MVBroadcastBaseTableCell::MVBroadcastBaseTableCell(std::string reuseIdentifier)
    : UITableViewCell(std::move(reuseIdentifier))
    , containerView(make<UIView>())
    , broadcastImageView(make<UIImageView>())
    , broadcastNameLabel(make<UILabel>())
    , descriptionLabel(make<UILabel>())
    , dateTimeStackView(make<UIStackView>())
    , dateTimeView(make<UIButton>())
    , buttonsStackView(make<UIStackView>())
    , shareButton(make<UIButton>())
    , actionButton(make<UIButton>())
    , backShadowView(make<UIView>())
    , shadowLayer(make<CAShapeLayer>())
{
    setBackgroundColor(UIColor::clear());
    applyStyling();
    setUpViews();
}

void MVBroadcastBaseTableCell::applyStyling()
{
    backShadowView | mv::setBackgroundColor(UIColor::clear());
    containerView | mv::setBackgroundColor(MVColor::cardBackgroundColor()) | mv::setLayerCornerRadius(cardRadius)
        | mv::setLayerMaskToBound(true) | mv::setBorderLayerWidth(0.5);
    broadcastImageView | mv::setContentMode(UIViewContentMode::scaleAspectFill) | mv::setLayerMaskToBound(true)
        | mv::setBackgroundColor(MVColor::systemGray5());
    broadcastNameLabel | mv::setBackgroundColor(UIColor::clear()) | mv::setTitleColor(MVColor::primaryTextColor())
        | mv::setFont(MVFont::normalSizeSemiBoldFont()) | mv::setTextAlignMent(NSTextAlignment::left) | mv::setNumberOfLine(2);
    descriptionLabel | mv::setBackgroundColor(UIColor::clear()) | mv::setTitleColor(MVColor::secondaryTextColor())
        | mv::setFont(MVFont::mediumSizeRegularFont()) | mv::setTextAlignMent(NSTextAlignment::left) | mv::setNumberOfLine(2);
    dateTimeStackView | mv::setAxis(NSLayoutConstraintAxis::horizontal) | mv::setDistributionMode(UIStackViewDistribution::fill)
        | mv::setAlignmentMode(UIStackViewAlignment::fill) | mv::setSpacing(0) | mv::setBackgroundColor(UIColor::clear());
    dateTimeView | mv::setBackgroundColor(UIColor::clear()) | mv::updateImage(getImage("calendarIcon"))
        | mv::setImageEdgeInsets({ 5, -7, 5, 0 }) | mv::setTitleEdgeInsets({}) | mv::setTintColor(MVColor::secondaryTextColor())
        | mv::updateTitleColor(MVColor::secondaryTextColor()) | mv::setFont(MVFont::mediumSizeRegularFont());
    dateTimeView->imageView() | mv::setContentMode(UIViewContentMode::scaleAspectFit);
    buttonsStackView | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fillEqually) | mv::setSpacing(15)
        | mv::setAlignmentMode(UIStackViewAlignment::fill);
    styleCardButton(shareButton, "mvShare");
    shareButton | mv::setBorderLayerWidth(1) | mv::updateTitleColor(MVColor::primaryTextColor())
        | mv::setBackgroundColor(MVColor::cardBackgroundColor());
    styleCardButton(actionButton, "mvJoinNow");
    actionButton | mv::setBackgroundColor(MVColor::accentColor()) | mv::updateTitleColor(UIColor::white());

    shadowLayer->setFillColor(UIColor::clear().cgColor());
    shadowLayer->setShadowOffset({ 0, 0 });
    shadowLayer->setShadowOpacity(1);
    shadowLayer->setShadowRadius(5);
    applyLayerColors();
}

void MVBroadcastBaseTableCell::setUpViews()
{
    struct Named {
        const std::shared_ptr<UIView> view;
        const char* name;
    };
    for (const auto& [view, name] : { Named { containerView, "containerView" }, { broadcastImageView, "broadcastImageView" },
             { broadcastNameLabel, "broadcastNameLabel" }, { descriptionLabel, "descriptionLabel" },
             { dateTimeStackView, "dateTimeStackView" }, { dateTimeView, "dateTimeView" },
             { buttonsStackView, "buttonsStackView" }, { shareButton, "shareButton" }, { actionButton, "actionButton" },
             { backShadowView, "backShadowView" } }) {
        view->setAccessibilityIdentifier(name);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
    }
    contentView()->addSubview(backShadowView);
    contentView()->addSubview(containerView);
    containerView->addSubview(broadcastImageView);
    containerView->addSubview(broadcastNameLabel);
    containerView->addSubview(descriptionLabel);
    containerView->addSubview(dateTimeStackView);
    containerView->addSubview(buttonsStackView);
    dateTimeStackView->addArrangedSubview(dateTimeView);
    dateTimeStackView->addArrangedSubview(make<UIView>()); // takes what the date leaves
    buttonsStackView->addArrangedSubview(actionButton);
    backShadowView->layer()->insertSublayer(shadowLayer, 0);

    actionButton->addAction(UIControlEvent::touchUpInside, [self = weak(this)] {
        if (const auto cell = self.lock())
            cell->didPressActionButton();
    });
    shareButton->addAction(UIControlEvent::touchUpInside, [self = weak(this)] {
        if (const auto cell = self.lock())
            cell->didPressShareButton();
    });
}

void MVBroadcastBaseTableCell::replaceConstraints(NSLayoutConstraints constraints)
{
    NSLayoutConstraint::deactivate(allConstraints);
    dateTimeViewTopAnchor = dateTimeStackView->topAnchor().equalTo(descriptionLabel->bottomAnchor());
    dateTimeViewHeightAnchor = dateTimeStackView->heightAnchor().equalToConstant(0);
    allConstraints = std::move(constraints);
    allConstraints.push_back(dateTimeViewTopAnchor);
    allConstraints.push_back(dateTimeViewHeightAnchor);
    NSLayoutConstraint::activate(allConstraints);
}

NSLayoutConstraints MVBroadcastBaseTableCell::dateTimeConstraints()
{
    return {
        backShadowView->leadingAnchor().equalTo(containerView->leadingAnchor()),
        backShadowView->topAnchor().equalTo(containerView->topAnchor()),
        backShadowView->bottomAnchor().equalTo(containerView->bottomAnchor()),
        backShadowView->trailingAnchor().equalTo(containerView->trailingAnchor()),
        descriptionLabel->topAnchor().equalTo(broadcastNameLabel->bottomAnchor(), 10),
        descriptionLabel->leadingAnchor().equalTo(broadcastNameLabel->leadingAnchor()),
        descriptionLabel->trailingAnchor().equalTo(broadcastNameLabel->trailingAnchor()),
        dateTimeStackView->leadingAnchor().equalTo(broadcastNameLabel->leadingAnchor()),
        dateTimeStackView->trailingAnchor().equalTo(broadcastNameLabel->trailingAnchor()),
        buttonsStackView->topAnchor().equalTo(dateTimeStackView->bottomAnchor(), 12.5),
        buttonsStackView->leadingAnchor().equalTo(broadcastNameLabel->leadingAnchor()),
        buttonsStackView->trailingAnchor().equalTo(broadcastNameLabel->trailingAnchor()),
    };
}

void MVBroadcastBaseTableCell::setBroadcast(const std::shared_ptr<MVBroadcast>& newBroadcast)
{
    followScreen();
    broadcast = newBroadcast;
    broadcastNameLabel->setText(broadcast ? broadcast->title : std::nullopt);
    descriptionLabel->setText(broadcast ? broadcast->description : std::nullopt);
    sd_setImageIndicator(*broadcastImageView, mvIndicator());
    sd_setImageTransition(*broadcastImageView, SDWebImageTransition::fadeTransitionWithDuration(bannerFade));
    sd_setImage(*broadcastImageView, broadcast ? broadcast->bannerImageUrl : std::nullopt);
    if (broadcast && broadcast->status == MVBroadcastStatus::live)
        setCellLayoutForLiveMode();
    else
        setCellLayoutsForOtherModes();
}

void MVBroadcastBaseTableCell::setCellLayoutForLiveMode()
{
    dateTimeViewTopAnchor->setConstant(2.5);
    dateTimeViewHeightAnchor->setConstant(0);
    dateTimeView->removeFromSuperview();
    actionButton->setTitle(MVLocalized("mvJoinNow"));
}

void MVBroadcastBaseTableCell::setCellLayoutsForOtherModes()
{
    dateTimeViewTopAnchor->setConstant(12.5);
    dateTimeViewHeightAnchor->setConstant(30);
    if (dateTimeView->superview() != dateTimeStackView.get())
        dateTimeStackView->insertArrangedSubview(dateTimeView, 0); // the cell has shown a live show before
    const auto status = broadcast ? broadcast->status : std::nullopt;
    if (status == MVBroadcastStatus::upcoming)
        actionButton->setTitle(MVLocalized("mvPreview"));
    else if (status == MVBroadcastStatus::completed)
        actionButton->setTitle(MVLocalized("mvPlayNow"));
    dateTimeView->setTitle(dateText(broadcast && broadcast->startTime ? *broadcast->startTime : Date::now()));
}

void MVBroadcastBaseTableCell::didPressActionButton()
{
    const auto self = weak(this).lock();
    const auto call = onPressActionButton;
    const auto pressed = broadcast;
    if (call && pressed)
        call(pressed);
}

void MVBroadcastBaseTableCell::didPressShareButton()
{
    const auto self = weak(this).lock();
    const auto call = onPressShareButton;
    const auto pressed = broadcast;
    if (call && pressed)
        call(pressed);
}

void MVBroadcastBaseTableCell::layoutSubviews()
{
    UITableViewCell::layoutSubviews();
    contentView()->layoutIfNeeded();
    containerView->layoutIfNeeded();
    applyShadow();
}

void MVBroadcastBaseTableCell::traitCollectionDidChange(const UITraitCollection& previous)
{
    UITableViewCell::traitCollectionDidChange(previous);
    applyLayerColors();
}

void MVBroadcastBaseTableCell::applyShadow()
{
    const CGRect card = containerView->bounds();
    if (card.size() == shadowSize)
        return;
    shadowSize = card.size();
    const auto outline = CGPath::roundedRect({ 0, 0, card.width, card.height }, cardRadius);
    shadowLayer->setFrame({ 0, 0, card.width, card.height });
    shadowLayer->setPath(outline);
    shadowLayer->setShadowPath(outline);
}

// Layers keep colours as they are in one appearance.
void MVBroadcastBaseTableCell::applyLayerColors()
{
    containerView | mv::setBorderLayerColor(MVColor::seperatorColor());
    shareButton | mv::setBorderLayerColor(MVColor::seperatorColor());
    shadowLayer->setShadowColor(MVColor::shadowColor().cgColor());
}

} // namespace mv
