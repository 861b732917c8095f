#include "UI/Screens/Broadcast Screen/SubViews/MVStreamVideoContainerView.h"

#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

namespace {

constexpr double gradientFade = 0.33; // seconds
constexpr UILayoutPriority centringPriority = 999; // gives way where the safe area is wider at one side

} // namespace

MVStreamVideoContainerView::MVStreamVideoContainerView(const CGRect& frame)
    : UIView(frame)
    , videoContainerView(make<UIView>())
    , gradientView(make<GradientView>())
    , noStreamLabel(make<UILabel>())
{
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
}

void MVStreamVideoContainerView::showHideNoStreamLabel(bool show)
{
    videoContainerView->setHidden(show);
    noStreamLabel->setHidden(!show);
}

void MVStreamVideoContainerView::setGradientViewAlpha(CGFloat alpha)
{
    UIView::animate(gradientFade, [&] { gradientView->setAlpha(alpha); });
}

void MVStreamVideoContainerView::configureSubViewsProperties()
{
    videoContainerView | mv::setBackgroundColor(UIColor::clear());
    gradientView | mv::setBackgroundColor(UIColor::clear());
    gradientView->setUserInteractionEnabled(false);
    gradientView->setColors({ { UIColor::black().withAlphaComponent(0), UIColor::black().withAlphaComponent(0.9) } });
    gradientView->setAlpha(0);
    noStreamLabel | mv::setText("Waiting for Host video") | mv::setTitleColor(UIColor::white())
        | mv::setFont(MVFont::mediumSizeSemiBoldFont()) | mv::setBackgroundColor(UIColor::clear()) | mv::setNumberOfLine(0)
        | mv::setTextAlignMent(NSTextAlignment::center);
    showHideNoStreamLabel(true);
}

void MVStreamVideoContainerView::setUpViews()
{
    videoContainerView->setAccessibilityIdentifier("videoContainerView");
    gradientView->setAccessibilityIdentifier("gradientView");
    noStreamLabel->setAccessibilityIdentifier("noStreamLabel");
    addSubview(videoContainerView);
    addSubview(gradientView);
    addSubview(noStreamLabel);
}

void MVStreamVideoContainerView::setUpViewsConstraints()
{
    pinEdges(*videoContainerView, *this);
    gradientView->setTranslatesAutoresizingMaskIntoConstraints(false);
    noStreamLabel->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto labelCentring = noStreamLabel->centerXAnchor().equalTo(centerXAnchor());
    labelCentring->setPriority(centringPriority);
    activate({
        gradientView->leadingAnchor().equalTo(leadingAnchor()),
        gradientView->trailingAnchor().equalTo(trailingAnchor()),
        gradientView->bottomAnchor().equalTo(bottomAnchor()),
        gradientView->heightAnchor().equalToMultiple(heightAnchor(), 0.7),
        noStreamLabel->bottomAnchor().equalTo(centerYAnchor(), -40),
        labelCentring,
        noStreamLabel->leadingAnchor().equalTo(safeAreaLayoutGuide()->leadingAnchor(), 25),
        noStreamLabel->trailingAnchor().equalTo(safeAreaLayoutGuide()->trailingAnchor(), -25),
    });
}

} // namespace mv
