#pragma once

#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/UIKit/UICollectionViewCell.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Service/MVRecords.h"

namespace mv {

// A product of the strip as a card: picture and title. A featured one glows.
class MVProductListCollectionCell final : public UICollectionViewCell {
public:
    static constexpr const char* identifier = "mv_productsListCollectionCell";

    explicit MVProductListCollectionCell(std::string reuseIdentifier = identifier);

    void assignProduct(const std::shared_ptr<MVProduct>& newProduct); // without a title or a picture that is missing
    void setFeatured(bool isFeatured); // neither, without glow, before the first call

protected:
    // UIView
    void layoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void applyLayerColors();

    std::shared_ptr<MVProduct> product;
    const std::shared_ptr<UIView> containerView; // the card
    const std::shared_ptr<UIImageView> productImageView;
    const std::shared_ptr<UIView> namePriceInfoContainerView;
    const std::shared_ptr<UILabel> productNameLabel;
    const std::shared_ptr<UIView> backShadowView;
    const std::shared_ptr<CAShapeLayer> shadowLayer;
    CGSize shadowSize; // that the shadow's path was made for
    bool isFeatured = false;
};

} // namespace mv
