#pragma once

#include "Platform/UIKit/NSLayoutConstraint.h"
#include "Platform/UIKit/UIViewController.h"
#include "Service/MVRecords.h"

#include <memory>
#include <vector>

namespace platform {
class UIButton;
class UIImageView;
class UILabel;
class UIScrollView;
class UIStackView;
}

namespace showroom {

using namespace platform;

// The shop's own page of a product, which the kit knows nothing of: its picture, its name, where to find it, and a bag to put it
// into. Beside a show it is how the shop answers the tap on a product.
class ProductPageViewController final : public UIViewController {
public:
    explicit ProductPageViewController(mv::MVProduct product);

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void setUpViews();
    void setUpViewsConstraints();
    void showBag();
    void didPressBackButton();
    void didPressBagButton();

    const mv::MVProduct product;
    std::shared_ptr<UIButton> backButton, bagButton;
    std::shared_ptr<UIScrollView> scrollView;
    std::shared_ptr<UIView> contentView, pictureCard;
    std::shared_ptr<UIImageView> pictureView;
    std::shared_ptr<UIStackView> textStack;
    NSLayoutConstraints uprightConstraints, wideConstraints;
    bool isInBag = false;
};

} // namespace showroom
