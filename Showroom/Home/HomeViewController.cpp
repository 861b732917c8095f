#include "Showroom/Home/HomeViewController.h"

#include "Platform/Foundation/Bundle.h"
#include "Showroom/Common/ShopViews.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace showroom {

using namespace mv;

namespace {

constexpr CGFloat margin = 20; // points
constexpr CGFloat widestCard = 560;
constexpr CGFloat cardAspect = 1.2; // height to width, where there is room for it
constexpr CGFloat cornerRadius = 20;

std::string homeText(const std::string& key) { return Bundle::mainBundle().localizedString(key, "", "Home"); }

} // namespace

void HomeViewController::viewDidLoad()
{
    view()->setAccessibilityIdentifier("home");
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    setUpViews();
    setUpViewsConstraints();
    liveShowsButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressLiveShowsButton();
    });
}

void HomeViewController::traitCollectionDidChange(const UITraitCollection&)
{
    if (card)
        renewCardColors(*card);
}

void HomeViewController::setUpViews()
{
    const auto title = make<UILabel>() | mv::setText(homeText("title")) | mv::setFont(MVFonts::boldFont(28))
        | mv::setTitleColor(MVColor::primaryTextColor());
    const auto subtitle = make<UILabel>() | mv::setText(homeText("subtitle")) | mv::setFont(MVFont::mediumSizeRegularFont())
        | mv::setTitleColor(MVColor::secondaryTextColor()) | mv::setNumberOfLine(2);
    titleStack = makeStack(NSLayoutConstraintAxis::vertical, 2, { title, subtitle });
    addConstrained(*view(), titleStack);

    card = makeCard(cornerRadius);
    renewCardColors(*card);
    addConstrained(*view(), card);
    banner = make<UIImageView>(shopPicture("ceramic-hour")) | mv::setContentMode(UIViewContentMode::scaleAspectFill)
        | mv::setLayerCornerRadius(cornerRadius) | mv::setLayerMaskToBound(true);
    banner->setContentCompressionResistancePriority(1, NSLayoutConstraintAxis::vertical); // the words come first
    addConstrained(*card, banner);
    liveShowsButton = makeFilledButton(homeText("liveShows"));
    liveShowsButton->setAccessibilityIdentifier("liveShowsButton");
    addConstrained(*card, liveShowsButton);
}

void HomeViewController::setUpViewsConstraints()
{
    const auto safe = view()->safeAreaLayoutGuide();
    const auto wide = card->widthAnchor().equalTo(safe->widthAnchor(), -2 * margin);
    wide->setPriority(999);
    const auto high = card->heightAnchor().equalToMultiple(card->widthAnchor(), cardAspect);
    high->setPriority(250); // where the screen is low the card gives way
    pinEdges(*banner, *card);
    activate({
        titleStack->topAnchor().equalTo(safe->topAnchor(), margin),
        titleStack->leadingAnchor().equalTo(card->leadingAnchor()),
        titleStack->trailingAnchor().equalTo(card->trailingAnchor()),
        card->topAnchor().equalTo(titleStack->bottomAnchor(), margin),
        card->centerXAnchor().equalTo(safe->centerXAnchor()),
        card->widthAnchor().lessThanOrEqualToConstant(widestCard),
        wide,
        card->bottomAnchor().lessThanOrEqualTo(safe->bottomAnchor(), -margin),
        high,
        liveShowsButton->leadingAnchor().equalTo(card->leadingAnchor(), margin),
        liveShowsButton->trailingAnchor().equalTo(card->trailingAnchor(), -margin),
        liveShowsButton->bottomAnchor().equalTo(card->bottomAnchor(), -margin),
    });
}

void HomeViewController::didPressLiveShowsButton()
{
    const auto callback = onPressLiveShows;
    if (callback)
        callback();
}

} // namespace showroom
