#include "Showroom/Common/ShopViews.h"

#include "Platform/Foundation/Bundle.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace showroom {

using namespace mv;

namespace {

constexpr CGFloat buttonHeight = 44; // points

} // namespace

std::shared_ptr<UIView> addConstrained(UIView& parent, const std::shared_ptr<UIView>& child)
{
    child->setTranslatesAutoresizingMaskIntoConstraints(false);
    parent.addSubview(child);
    return child;
}

void pinEdges(const UIView& child, const UIView& parent, CGFloat inset)
{
    activate({
        child.leadingAnchor().equalTo(parent.leadingAnchor(), inset),
        child.trailingAnchor().equalTo(parent.trailingAnchor(), -inset),
        child.topAnchor().equalTo(parent.topAnchor(), inset),
        child.bottomAnchor().equalTo(parent.bottomAnchor(), -inset),
    });
}

std::shared_ptr<UIStackView> makeStack(NSLayoutConstraintAxis axis, CGFloat spacing, std::vector<std::shared_ptr<UIView>> views)
{
    const auto stack = make<UIStackView>() | mv::setAxis(axis) | mv::setSpacing(spacing);
    for (const auto& view : views)
        stack->addArrangedSubview(view);
    return stack;
}

std::shared_ptr<const UIImage> shopPicture(const std::string& name)
{
    return UIImage::named("Pictures/" + name, Bundle::mainBundle());
}

std::shared_ptr<UIButton> makeFilledButton(const std::string& title)
{
    const auto button = make<UIButton>() | mv::setBackgroundColor(MVColor::accentColor()) | mv::setLayerCornerRadius(15)
        | mv::setFont(MVFont::mediumSizeSemiBoldFont()) | mv::updateTitle(title) | mv::updateTitleColor(UIColor::white())
        | mv::updateTitleColor(UIColor::white(1, 0.5), UIControlState::highlighted);
    button->heightAnchor().equalToConstant(buttonHeight)->setActive(true);
    return button;
}

std::shared_ptr<UIView> makeCard(CGFloat cornerRadius)
{
    const auto card = make<UIView>() | mv::setBackgroundColor(MVColor::cardBackgroundColor())
        | mv::setLayerCornerRadius(cornerRadius) | mv::setBorderLayerWidth(0.5);
    card->layer()->setShadowOpacity(1);
    card->layer()->setShadowRadius(4);
    card->layer()->setShadowOffset({ 0, 2 });
    renewCardColors(*card);
    return card;
}

void renewCardColors(UIView& card)
{
    card.layer()->setShadowColor(MVColor::shadowColor().cgColor());
    card.layer()->setBorderColor(MVColor::seperatorColor().cgColor());
}

} // namespace showroom
