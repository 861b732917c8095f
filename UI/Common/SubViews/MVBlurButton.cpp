#include "UI/Common/SubViews/MVBlurButton.h"

#include "Platform/UIKit/UIDevice.h"
#include "UI/Common/SubViews/Pinning.h"

namespace mv {

namespace {

UIBlurEffect::Style blurStyle()
{
    return UIDevice::current().systemMajorVersion() >= 13 ? UIBlurEffect::Style::systemMaterialDark : UIBlurEffect::Style::light;
}

} // namespace

MVBlurButton::MVBlurButton(const CGRect& frame)
    : UIView(frame)
    , backBlurView(make<UIVisualEffectView>(UIBlurEffect { blurStyle() }))
    , button_(make<UIButton>())
{
    setBackgroundColor(UIColor::clear());
    button_->setBackgroundColor(UIColor::clear());
    backBlurView->setAccessibilityIdentifier("backBlurView");
    button_->setAccessibilityIdentifier("button");
    addSubview(backBlurView);
    backBlurView->contentView()->addSubview(button_);
    pinEdges(*backBlurView, *this);
    pinEdges(*button_, *backBlurView);
}

MVBlurButton& MVBlurButton::setBlurEffectStyle(UIBlurEffect::Style style)
{
    backBlurView->setEffect(UIBlurEffect { style });
    return *this;
}

} // namespace mv
