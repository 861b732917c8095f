#include "UI/Screens/Broadcast Screen/SubViews/MVProductListCollectionCell.h"

#include "Platform/Images/UIImageViewLoading.h"
#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

namespace {

constexpr CGFloat cardRadius = 10;
constexpr CGFloat imageSide = 60;
constexpr double imageFade = 1; // seconds

} // namespace

MVProductListCollectionCell::MVProductListCollectionCell(std::string reuseIdentifier)
    : UICollectionViewCell(std::move(reuseIdentifier))
    , containerView(make<UIView>())
    , productImageView(make<UIImageView>())
    , namePriceInfoContainerView(make<UIView>())
    , productNameLabel(make<UILabel>())
    , backShadowView(make<UIView>())
    , shadowLayer(make<CAShapeLayer>())
{
    setBackgroundColor(UIColor::clear());
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
}

void MVProductListCollectionCell::assignProduct(const std::shared_ptr<MVProduct>& newProduct)
{
    product = newProduct;
    productNameLabel->setText(product ? product->title : std::nullopt);
    sd_setImageTransition(*productImageView, SDWebImageTransition::fadeTransitionWithDuration(imageFade));
    sd_setImageIndicator(*productImageView, SDWebImageActivityIndicator::grayIndicator());
    sd_setImage(*productImageView, product ? product->thumbnailUrl : std::nullopt);
}

void MVProductListCollectionCell::setFeatured(bool newIsFeatured)
{
    isFeatured = newIsFeatured;
    containerView->setBackgroundColor(
        isFeatured ? MVColor::accentColor().withAlphaComponent(0.9) : MVColor::cardBackgroundColor());
    applyLayerColors();
}

void MVProductListCollectionCell::configureSubViewsProperties()
{
    backShadowView | mv::setBackgroundColor(UIColor::clear());
    containerView | mv::setBackgroundColor(MVColor::cardBackgroundColor()) | mv::setLayerCornerRadius(cardRadius)
        | mv::setLayerMaskToBound(true) | mv::setBorderLayerWidth(0.5);
    productImageView | mv::setContentMode(UIViewContentMode::scaleAspectFill) | mv::setLayerMaskToBound(true)
        | mv::setBackgroundColor(UIColor::white()) | mv::setLayerCornerRadius(5);
    namePriceInfoContainerView | mv::setBackgroundColor(UIColor::clear());
    productNameLabel | mv::setBackgroundColor(UIColor::clear()) | mv::setNumberOfLine(2)
        | mv::setFont(MVFont::mediumSizeSemiBoldFont()) | mv::setTitleColor(MVColor::primaryTextColor())
        | mv::setTextAlignMent(NSTextAlignment::left);
    productNameLabel->setAdjustsFontSizeToFitWidth(true);
    productNameLabel->setMinimumScaleFactor(0.9);

    shadowLayer->setFillColor(UIColor::clear().cgColor());
    shadowLayer->setShadowOffset({ 0, 0 });
    shadowLayer->setShadowOpacity(1);
    shadowLayer->setShadowRadius(5);
    applyLayerColors();
}

void MVProductListCollectionCell::setUpViews()
{
    struct Named {
        const std::shared_ptr<UIView> view;
        const char* name;
    };
    for (const auto& [view, name] : { Named { containerView, "containerView" }, { productImageView, "productImageView" },
             { namePriceInfoContainerView, "namePriceInfoContainerView" }, { productNameLabel, "productNameLabel" },
             { backShadowView, "backShadowView" } }) {
        view->setAccessibilityIdentifier(name);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
    }
    contentView()->addSubview(backShadowView);
    contentView()->addSubview(containerView);
    containerView->addSubview(productImageView);
    containerView->addSubview(namePriceInfoContainerView);
    namePriceInfoContainerView->addSubview(productNameLabel);
    backShadowView->layer()->insertSublayer(shadowLayer, 0);
}

void MVProductListCollectionCell::setUpViewsConstraints()
{
    activate({
        containerView->leadingAnchor().equalTo(contentView()->leadingAnchor(), 5),
        containerView->trailingAnchor().equalTo(contentView()->trailingAnchor(), -5),
        containerView->topAnchor().equalTo(contentView()->topAnchor(), 10),
        containerView->bottomAnchor().equalTo(contentView()->bottomAnchor(), -10),
        productImageView->heightAnchor().equalToConstant(imageSide),
        productImageView->widthAnchor().equalToConstant(imageSide),
        productImageView->topAnchor().equalTo(containerView->topAnchor(), 10),
        productImageView->leadingAnchor().equalTo(containerView->leadingAnchor(), 10),
        namePriceInfoContainerView->leadingAnchor().equalTo(productImageView->trailingAnchor(), 10),
        namePriceInfoContainerView->trailingAnchor().equalTo(containerView->trailingAnchor(), -10),
        namePriceInfoContainerView->centerYAnchor().equalTo(productImageView->centerYAnchor()),
    });
    pinEdges(*productNameLabel, *namePriceInfoContainerView);
    pinEdges(*backShadowView, *containerView);
}

void MVProductListCollectionCell::layoutSubviews()
{
    UICollectionViewCell::layoutSubviews();
    contentView()->layoutIfNeeded();
    const CGRect card = containerView->bounds();
    if (card.size() == shadowSize)
        return;
    shadowSize = card.size();
    const CGRect box { 0, 0, card.width, card.height };
    shadowLayer->setFrame(box);
    shadowLayer->setShadowPath(CGPath::roundedRect(box, cardRadius));
}

void MVProductListCollectionCell::traitCollectionDidChange(const UITraitCollection& previous)
{
    UICollectionViewCell::traitCollectionDidChange(previous);
    applyLayerColors();
}

// Layers keep colours as they are in one appearance.
void MVProductListCollectionCell::applyLayerColors()
{
    shadowLayer->setShadowColor((isFeatured ? UIColor::white() : UIColor::clear()).cgColor());
    containerView | mv::setBorderLayerColor(isFeatured ? UIColor::white() : MVColor::seperatorColor());
}

} // namespace mv
