#include "Platform/UIKit/UIVisualEffectView.h"

namespace platform {

namespace {

constexpr double blurSigma = 10; // points; wide enough that no letter behind it can be read
constexpr double blurSaturation = 1.6; // colours behind shine through the tint as through frosted glass

constexpr UIViewAutoresizing fillsSuperview = flexibleWidth | flexibleHeight;

UIColor following(const UIColor& light, const UIColor& dark)
{
    return UIColor::dynamic([light, dark](const UITraitCollection& traits) {
        return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? dark : light;
    });
}

// White texts on a dark style and black ones on a light style stay readable over any picture.
UIColor tintOf(UIBlurEffect::Style style)
{
    switch (style) {
    case UIBlurEffect::Style::light:
        return UIColor::white(1, 0.45);
    case UIBlurEffect::Style::dark:
        return UIColor::white(0.06, 0.65);
    case UIBlurEffect::Style::regular:
        return following(UIColor::white(0.97, 0.65), UIColor::white(0.11, 0.7));
    case UIBlurEffect::Style::systemThinMaterial:
        return following(UIColor::white(0.97, 0.6), UIColor::white(0.11, 0.6));
    case UIBlurEffect::Style::systemMaterial:
        return following(UIColor::white(0.97, 0.78), UIColor::white(0.13, 0.8));
    case UIBlurEffect::Style::systemMaterialDark:
        return UIColor::white(0.15, 0.85);
    }
    return UIColor::clear();
}

} // namespace

UIVisualEffectView::UIVisualEffectView(std::optional<UIBlurEffect> effect)
    : tintView(make<UIView>())
    , contentView_(make<UIView>())
{
    for (const auto& part : { tintView, contentView_ }) {
        part->setAutoresizingMask(fillsSuperview);
        addSubview(part);
    }
    tintView->setUserInteractionEnabled(false);
    contentView_->setAccessibilityIdentifier("contentView");
    setEffect(effect);
}

void UIVisualEffectView::setEffect(std::optional<UIBlurEffect> effect)
{
    effect_ = effect;
    layer()->setBackdropBlur(effect ? blurSigma : 0, effect ? blurSaturation : 1);
    tintView->setBackgroundColor(effect ? std::optional(tintOf(effect->style)) : std::nullopt);
}

} // namespace platform
