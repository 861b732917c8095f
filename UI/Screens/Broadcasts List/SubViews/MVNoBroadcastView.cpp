#include "UI/Screens/Broadcasts List/SubViews/MVNoBroadcastView.h"

#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

MVNoBroadcastView::MVNoBroadcastView(const CGRect& frame)
    : UIView(frame)
    , containerView(make<UIView>())
    , noEventImageView(make<UIImageView>())
    , noBroadcastLabel(make<UILabel>())
{
    setBackgroundColor(UIColor::clear());
    configureSubviews();
    setUpViews();
    setUpViewsConstraints();
}

void MVNoBroadcastView::updateMessage(const std::string& message) { noBroadcastLabel->setText(message); }

void MVNoBroadcastView::configureSubviews()
{
    containerView | mv::setBackgroundColor(UIColor::clear());
    noEventImageView | mv::setImage(getImage("noBroadcast")) | mv::setContentMode(UIViewContentMode::scaleAspectFit)
        | mv::setLayerMaskToBound(true) | mv::setBackgroundColor(UIColor::clear());
    noBroadcastLabel | mv::setTitleColor(MVColor::primaryTextColor()) | mv::setFont(MVFont::mediumSizeSemiBoldFont())
        | mv::setTextAlignMent(NSTextAlignment::center) | mv::setNumberOfLine(0) | mv::setBackgroundColor(UIColor::clear())
        | mv::setText("There are currently no Live Shows. Please check back later.");
}

void MVNoBroadcastView::setUpViews()
{
    containerView->setAccessibilityIdentifier("containerView");
    noEventImageView->setAccessibilityIdentifier("noEventImageView");
    noBroadcastLabel->setAccessibilityIdentifier("noBroadcastLabel");
    addSubview(containerView);
    containerView->addSubview(noEventImageView);
    containerView->addSubview(noBroadcastLabel);
    containerView->setTranslatesAutoresizingMaskIntoConstraints(false);
    noEventImageView->setTranslatesAutoresizingMaskIntoConstraints(false);
    noBroadcastLabel->setTranslatesAutoresizingMaskIntoConstraints(false);
}

void MVNoBroadcastView::setUpViewsConstraints()
{
    activate({
        containerView->leadingAnchor().equalTo(leadingAnchor()),
        containerView->trailingAnchor().equalTo(trailingAnchor()),
        containerView->centerYAnchor().equalTo(centerYAnchor()),
        noEventImageView->topAnchor().equalTo(containerView->topAnchor()),
        noEventImageView->centerXAnchor().equalTo(containerView->centerXAnchor()),
        noEventImageView->heightAnchor().equalToConstant(200),
        noEventImageView->widthAnchor().equalToConstant(250),
        noBroadcastLabel->leadingAnchor().equalTo(containerView->leadingAnchor(), 15),
        noBroadcastLabel->trailingAnchor().equalTo(containerView->trailingAnchor(), -15),
        noBroadcastLabel->topAnchor().equalTo(noEventImageView->bottomAnchor(), 10),
        noBroadcastLabel->bottomAnchor().equalTo(containerView->bottomAnchor(), -10),
    });
}

} // namespace mv
