#include "Showroom/Product/ProductPageViewController.h"

#include "Platform/Foundation/Bundle.h"
#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Showroom/Common/ShopViews.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Extensions/MVViewControllers.h"
#include "UI/Utils/MVUtilities.h"

namespace showroom {

using namespace mv;

namespace {

constexpr CGFloat margin = 20; // points
constexpr CGFloat backSize = 44;
constexpr CGFloat cornerRadius = 20;
constexpr CGFloat widestPicture = 420;

std::string productText(const std::string& key) { return Bundle::mainBundle().localizedString(key, "", "Product"); }

} // namespace

ProductPageViewController::ProductPageViewController(mv::MVProduct shownProduct)
    : product(std::move(shownProduct))
{
}

void ProductPageViewController::viewDidLoad()
{
    view()->setAccessibilityIdentifier("productPage");
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    setUpViews();
    setUpViewsConstraints();
    showBag();
    backButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressBackButton();
    });
    bagButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressBagButton();
    });
}

// The picture above the words where the page is upright, beside them where it is wide.
void ProductPageViewController::viewDidLayoutSubviews()
{
    const bool isWide = view()->bounds().width > view()->bounds().height;
    if ((isWide ? wideConstraints : uprightConstraints).front()->isActive())
        return;
    NSLayoutConstraint::deactivate(isWide ? uprightConstraints : wideConstraints);
    NSLayoutConstraint::activate(isWide ? wideConstraints : uprightConstraints);
}

void ProductPageViewController::traitCollectionDidChange(const UITraitCollection&)
{
    if (pictureCard)
        renewCardColors(*pictureCard);
}

void ProductPageViewController::setUpViews()
{
    scrollView = make<UIScrollView>();
    scrollView->setAlwaysBounceVertical(true);
    addConstrained(*view(), scrollView);
    contentView = make<UIView>();
    addConstrained(*scrollView, contentView);
    backButton = make<UIButton>() | mv::updateImage(getImage("leftArrowBackIcon")) | mv::setTintColor(MVColor::accentColor())
        | mv::setImageEdgeInsets({ 10, 10, 10, 10 });
    backButton->setAccessibilityIdentifier("productBackButton");
    addConstrained(*contentView, backButton);

    pictureCard = makeCard(cornerRadius);
    renewCardColors(*pictureCard);
    addConstrained(*contentView, pictureCard);
    pictureView = make<UIImageView>() | mv::setContentMode(UIViewContentMode::scaleAspectFill)
        | mv::setLayerCornerRadius(cornerRadius) | mv::setLayerMaskToBound(true) | mv::setBackgroundColor(MVColor::systemGray5());
    sd_setImageIndicator(*pictureView, SDWebImageActivityIndicator::mediumIndicator());
    sd_setImageTransition(*pictureView, SDWebImageTransition::fadeTransitionWithDuration(0.3));
    sd_setImage(*pictureView, product.thumbnailUrl);
    addConstrained(*pictureCard, pictureView);

    const auto title = make<UILabel>() | mv::setText(product.title) | mv::setFont(MVFonts::boldFont(26))
        | mv::setTitleColor(MVColor::primaryTextColor()) | mv::setNumberOfLine(0);
    title->setAccessibilityIdentifier("productTitle");
    const auto address = make<UILabel>()
        | mv::setText(product.productUrl ? product.productUrl->host() + product.productUrl->path() : std::string())
        | mv::setFont(MVFont::mediumSizeRegularFont()) | mv::setTitleColor(MVColor::secondaryTextColor());
    const auto promise = make<UILabel>() | mv::setText(productText("promise")) | mv::setFont(MVFont::mediumSizeRegularFont())
        | mv::setTitleColor(MVColor::primaryTextColor()) | mv::setNumberOfLine(0);
    bagButton = makeFilledButton("");
    bagButton->setAccessibilityIdentifier("bagButton");
    textStack = makeStack(NSLayoutConstraintAxis::vertical, 12, { title, address, promise, bagButton });
    addConstrained(*contentView, textStack);
}

void ProductPageViewController::setUpViewsConstraints()
{
    const auto safe = view()->safeAreaLayoutGuide();
    pinEdges(*scrollView, *view());
    pinEdges(*pictureView, *pictureCard);
    const auto large = pictureCard->widthAnchor().equalTo(safe->widthAnchor(), -2 * margin);
    const auto high = pictureCard->widthAnchor().equalTo(safe->heightAnchor(), -backSize - margin - 8);
    for (const auto& wish : { large, high })
        wish->setPriority(750); // up to the widest
    const auto shortest = contentView->bottomAnchor().equalTo(textStack->bottomAnchor(), margin);
    shortest->setPriority(250); // unless the picture reaches further down
    pinEdges(*contentView, *scrollView);
    activate({
        contentView->widthAnchor().equalTo(scrollView->widthAnchor()),
        contentView->bottomAnchor().greaterThanOrEqualTo(textStack->bottomAnchor(), margin),
        contentView->bottomAnchor().greaterThanOrEqualTo(pictureCard->bottomAnchor(), margin),
        shortest,
        backButton->topAnchor().equalTo(contentView->topAnchor()),
        backButton->leadingAnchor().equalTo(safe->leadingAnchor(), margin - 10),
        backButton->widthAnchor().equalToConstant(backSize),
        backButton->heightAnchor().equalToConstant(backSize),
        pictureCard->topAnchor().equalTo(backButton->bottomAnchor(), 8),
        pictureCard->heightAnchor().equalTo(pictureCard->widthAnchor()),
        pictureCard->widthAnchor().lessThanOrEqualToConstant(widestPicture),
        textStack->trailingAnchor().equalTo(safe->trailingAnchor(), -margin),
    });
    uprightConstraints = {
        large,
        pictureCard->centerXAnchor().equalTo(safe->centerXAnchor()),
        textStack->topAnchor().equalTo(pictureCard->bottomAnchor(), margin),
        textStack->leadingAnchor().equalTo(safe->leadingAnchor(), margin),
    };
    wideConstraints = {
        pictureCard->leadingAnchor().equalTo(safe->leadingAnchor(), margin),
        high,
        textStack->topAnchor().equalTo(pictureCard->topAnchor()),
        textStack->leadingAnchor().equalTo(pictureCard->trailingAnchor(), margin),
    };
}

void ProductPageViewController::showBag() { bagButton->setTitle(productText(isInBag ? "inBag" : "addToBag")); }

void ProductPageViewController::didPressBackButton()
{
    if (mv::isModal(*this))
        dismiss(true);
    else if (auto* navigation = navigationController())
        navigation->popViewController(true);
}

void ProductPageViewController::didPressBagButton()
{
    isInBag = !isInBag;
    showBag();
}

} // namespace showroom
