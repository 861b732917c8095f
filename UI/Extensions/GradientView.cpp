#include "UI/Extensions/GradientView.h"

namespace mv {

GradientView::GradientView(const CGRect& frame)
    : UIView(frame, make<CAGradientLayer>())
    , gradientLayer(std::static_pointer_cast<CAGradientLayer>(layer()))
{
}

void GradientView::setColors(std::optional<std::vector<UIColor>> colors)
{
    colors_ = std::move(colors);
    updateLayer();
}

void GradientView::animateColors(const std::vector<UIColor>& newColors)
{
    const auto animation = CABasicAnimation::withKeyPath("colors");
    animation->duration = 0.25;
    animation->toValue = resolved(newColors);
    animation->fillMode = CAMediaTimingFillMode::forwards;
    animation->removedOnCompletion = false;
    gradientLayer->addAnimation(animation, "colorChange");
}

void GradientView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    if (colors_ && traitCollection().hasDifferentColorAppearance(previous))
        updateLayer();
}

void GradientView::updateLayer()
{
    gradientLayer->setColors(colors_ ? resolved(*colors_) : std::vector<CGColor> {});
    gradientLayer->setStartPoint({ 0.5, 0 });
    gradientLayer->setEndPoint({ 0.5, 1 });
    gradientLayer->setLocations({ 0, 1 });
}

std::vector<CGColor> GradientView::resolved(const std::vector<UIColor>& colors) const
{
    std::vector<CGColor> fixed;
    for (const auto& color : colors)
        fixed.push_back(color.cgColor(traitCollection()));
    return fixed;
}

} // namespace mv
