#include "Showroom/Scenes/GalleryPieces.h"

#include "Platform/Foundation/Bundle.h"
#include "Showroom/Common/ShopViews.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace showroom {

using namespace mv;

namespace {

void setHeight(const UIView& view, CGFloat height) { view.heightAnchor().equalToConstant(height)->setActive(true); }

void setSize(const UIView& view, CGFloat width, CGFloat height)
{
    view.widthAnchor().equalToConstant(width)->setActive(true);
    setHeight(view, height);
}

} // namespace

std::string galleryText(const std::string& key) { return Bundle::mainBundle().localizedString(key, "", "Gallery"); }

std::shared_ptr<UIButton> makeOutlinedButton(const std::string& title)
{
    const auto button = make<UIButton>() | mv::setLayerCornerRadius(15) | mv::setBorderLayerWidth(1)
        | mv::setBorderLayerColor(MVColor::accentColor()) | mv::setFont(MVFont::mediumSizeSemiBoldFont()) | mv::updateTitle(title)
        | mv::updateTitleColor(MVColor::accentColor())
        | mv::updateTitleColor(MVColor::accentColor().withAlphaComponent(0.4), UIControlState::highlighted);
    setHeight(*button, 44);
    return button;
}

std::shared_ptr<UIView> makePill(const std::string& icon, const std::shared_ptr<UILabel>& label, const UIColor& background)
{
    constexpr CGFloat height = 28, iconSide = 16;
    const auto row = makeStack(NSLayoutConstraintAxis::horizontal, 6);
    row | mv::setAlignmentMode(UIStackViewAlignment::center);
    if (const auto image = getImage(icon)) {
        const auto iconView = make<UIImageView>(image) | mv::setTintColor(UIColor::white())
            | mv::setContentMode(UIViewContentMode::scaleAspectFit);
        setSize(*iconView, iconSide, iconSide);
        row->addArrangedSubview(iconView);
    }
    label | mv::setTitleColor(UIColor::white()) | mv::setFont(MVFonts::semiBoldFont(14));
    row->addArrangedSubview(label);

    const auto pill = make<UIView>() | mv::setBackgroundColor(background) | mv::setLayerCornerRadius(height / 2);
    addConstrained(*pill, row);
    activate({
        row->leadingAnchor().equalTo(pill->leadingAnchor(), 12),
        row->trailingAnchor().equalTo(pill->trailingAnchor(), -12),
        row->centerYAnchor().equalTo(pill->centerYAnchor()),
    });
    setHeight(*pill, height);
    return pill;
}

std::shared_ptr<UIView> makeLetter(const std::string& letter, CGFloat side)
{
    const auto circle = make<UIView>() | mv::setBackgroundColor(colorFromCharacter(letter));
    const auto label = make<UILabel>() | mv::setText(letter) | mv::setFont(MVFonts::semiBoldFont(18))
        | mv::setTitleColor(UIColor::white()) | mv::setTextAlignMent(NSTextAlignment::center);
    addConstrained(*circle, label);
    activate({
        label->centerXAnchor().equalTo(circle->centerXAnchor()),
        label->centerYAnchor().equalTo(circle->centerYAnchor()),
    });
    setSize(*circle, side, side);
    return circle;
}

std::shared_ptr<UIView> makeBorderedBox(CGFloat side)
{
    const auto box = make<UIView>(CGRect { 0, 0, side, side }) | mv::setBackgroundColor(MVColor::systemGray5())
        | mv::addTopBorder(colorFromCharacter("F"), 3) | mv::addBottomBorder(colorFromCharacter("T"), 3)
        | mv::addLeftBorder(colorFromCharacter("P"), 3) | mv::addRightBorder(colorFromCharacter("J"), 3);
    setSize(*box, side, side);
    return box;
}

std::shared_ptr<UIView> makeProductCard(const std::string& picture, const std::string& title, double price)
{
    const auto pictureView = make<UIImageView>(shopPicture(picture)) | mv::setContentMode(UIViewContentMode::scaleAspectFill)
        | mv::setLayerCornerRadius(8) | mv::setLayerMaskToBound(true);
    const auto titleLabel = make<UILabel>() | mv::setText(title) | mv::setFont(MVFonts::semiBoldFont(14)) | mv::setNumberOfLine(2)
        | mv::setTitleColor(MVColor::primaryTextColor());
    const auto priceLabel = make<UILabel>() | mv::setText(getFormattedCurrencyString(price, "EUR"))
        | mv::setFont(MVFonts::regularFont(14)) | mv::setTitleColor(MVColor::secondaryTextColor());

    const auto card = makeCard(12);
    addConstrained(*card, pictureView);
    addConstrained(*card, titleLabel);
    addConstrained(*card, priceLabel);
    activate({
        pictureView->heightAnchor().equalTo(pictureView->widthAnchor()),
        pictureView->leadingAnchor().equalTo(card->leadingAnchor(), 8),
        pictureView->trailingAnchor().equalTo(card->trailingAnchor(), -8),
        pictureView->topAnchor().equalTo(card->topAnchor(), 8),
        titleLabel->leadingAnchor().equalTo(pictureView->leadingAnchor(), 2),
        titleLabel->trailingAnchor().equalTo(pictureView->trailingAnchor(), -2),
        titleLabel->topAnchor().equalTo(pictureView->bottomAnchor(), 8),
        priceLabel->leadingAnchor().equalTo(titleLabel->leadingAnchor()),
        priceLabel->trailingAnchor().equalTo(titleLabel->trailingAnchor()),
        priceLabel->topAnchor().greaterThanOrEqualTo(titleLabel->bottomAnchor(), 2),
        priceLabel->bottomAnchor().equalTo(card->bottomAnchor(), -10),
    });
    return card;
}

} // namespace showroom
