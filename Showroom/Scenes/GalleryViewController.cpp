#include "Showroom/Scenes/GalleryViewController.h"

#include "Main/MivoraUI.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UIScreen.h"
#include "Showroom/Common/ShopViews.h"
#include "Showroom/Scenes/GalleryPieces.h"
#include "UI/Extensions/GradientView.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Screens/Broadcast Screen/SubViews/ReactionAnimationView.h"
#include "UI/Utils/MVUtilities.h"

namespace showroom {

using namespace mv;

namespace {

constexpr CGFloat margin = 20; // points between the content and the safe area
constexpr CGFloat sectionSpacing = 16;
constexpr CGFloat widestColumn = 560; // points; on a tablet the page stays as wide as it reads well
constexpr CGFloat heroAspect = 0.555; // height to width
constexpr CGFloat flatHeroHeight = 128; // points, sideways on a phone
constexpr CGFloat avatarSide = 44;
constexpr CGFloat letterSide = 40;
constexpr CGFloat roomForProducts = 700; // points of height in one column
constexpr CGFloat roomForLetters = 640;
constexpr CGFloat widthForLetters = 330; // points of a column
constexpr CGFloat roomForFlatHero = 350;
constexpr double reactionInterval = 0.35; // seconds

} // namespace

void GalleryViewController::startReactions()
{
    if (!std::exchange(reactionsStarted, true))
        sendReaction();
}

void GalleryViewController::viewDidLoad()
{
    view()->setAccessibilityIdentifier("gallery");
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    setUpViews();
    setUpViewsConstraints();
}

void GalleryViewController::viewWillLayoutSubviews()
{
    if (commonConstraints.front()->isActive())
        return;
    NSLayoutConstraint::activate(commonConstraints);
    arrange(view()->bounds().size());
}

void GalleryViewController::viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator)
{
    UIViewController::viewWillTransition(size, coordinator);
    arrange(size);
}

void GalleryViewController::viewDidLayoutSubviews()
{
    for (const auto& circle : circles)
        setViewCircular(*circle);
}

void GalleryViewController::traitCollectionDidChange(const UITraitCollection&)
{
    for (const auto& card : cards)
        renewCardColors(*card);
}

void GalleryViewController::setUpViews()
{
    heroView = makeHero();
    lettersRow = makeLetters();
    productsRow = makeProducts();
    firstColumn = makeStack(NSLayoutConstraintAxis::vertical, sectionSpacing, { makeHeader(), heroView, makeTypeCard() });
    secondColumn = makeStack(NSLayoutConstraintAxis::vertical, sectionSpacing, { makeButtons(), lettersRow, productsRow });
    addConstrained(*view(), firstColumn);
    addConstrained(*view(), secondColumn);
    reactionView = make<ReactionAnimationView>();
    reactionView->setAccessibilityIdentifier("reactionView");
    addConstrained(*view(), reactionView);
}

void GalleryViewController::setUpViewsConstraints()
{
    const auto safe = view()->safeAreaLayoutGuide();
    const auto wide = firstColumn->widthAnchor().equalTo(safe->widthAnchor(), -2 * margin);
    wide->setPriority(999); // above what any content asks for, below the widest column
    commonConstraints = {
        firstColumn->topAnchor().equalTo(safe->topAnchor(), sectionSpacing),
        reactionView->topAnchor().equalTo(safe->topAnchor()),
        reactionView->bottomAnchor().equalTo(safe->bottomAnchor()),
        reactionView->leadingAnchor().equalTo(safe->leadingAnchor()),
        reactionView->trailingAnchor().equalTo(safe->trailingAnchor()),
    };
    portraitModeConstraints = {
        firstColumn->centerXAnchor().equalTo(safe->centerXAnchor()),
        firstColumn->widthAnchor().lessThanOrEqualToConstant(widestColumn),
        wide,
        secondColumn->topAnchor().equalTo(firstColumn->bottomAnchor(), sectionSpacing),
        secondColumn->leadingAnchor().equalTo(firstColumn->leadingAnchor()),
        secondColumn->trailingAnchor().equalTo(firstColumn->trailingAnchor()),
        heroView->heightAnchor().equalToMultiple(heroView->widthAnchor(), heroAspect),
    };
    const bool isPad = traitCollection().userInterfaceIdiom == UIUserInterfaceIdiom::pad;
    landscapeModeConstraints = {
        isPad ? heroView->heightAnchor().equalToMultiple(heroView->widthAnchor(), heroAspect)
              : heroView->heightAnchor().equalToConstant(flatHeroHeight),
        firstColumn->leadingAnchor().equalTo(safe->leadingAnchor(), margin),
        firstColumn->trailingAnchor().equalTo(safe->centerXAnchor(), -margin / 2),
        secondColumn->topAnchor().equalTo(firstColumn->topAnchor()),
        secondColumn->leadingAnchor().equalTo(safe->centerXAnchor(), margin / 2),
        secondColumn->trailingAnchor().equalTo(safe->trailingAnchor(), -margin),
    };
}

// Before the view takes that size, so that no layout pass sees one orientation's constraints in the other's size.
void GalleryViewController::arrange(CGSize size)
{
    const bool landscape = size.width > size.height;
    NSLayoutConstraint::deactivate(landscape ? portraitModeConstraints : landscapeModeConstraints);
    NSLayoutConstraint::activate(landscape ? landscapeModeConstraints : portraitModeConstraints);

    const auto insets = UIScreen::main().safeAreaInsets();
    const auto room = size.height - insets.vertical();
    const auto columnWidth = (size.width - insets.horizontal()) / 2 - 1.5 * margin;
    heroView->setHidden(landscape && room < roomForFlatHero);
    lettersRow->setHidden(landscape ? columnWidth < widthForLetters : room < roomForLetters);
    productsRow->setHidden(!landscape && room < roomForProducts);
}

std::shared_ptr<UIView> GalleryViewController::makeHeader()
{
    const auto avatar = make<UIImageView>(shopPicture("noor-valen")) | mv::setContentMode(UIViewContentMode::scaleAspectFill);
    circles.push_back(avatar);
    activate({
        avatar->widthAnchor().equalToConstant(avatarSide),
        avatar->heightAnchor().equalToConstant(avatarSide),
    });
    const auto title = make<UILabel>() | mv::setText(MVLocalized("mvBroadcasts")) | mv::setFont(MVFont::largeSizeSemiboldFont())
        | mv::setTitleColor(MVColor::primaryTextColor());
    title->setAccessibilityIdentifier("titleLabel");
    const auto subtitle = make<UILabel>() | mv::setText(galleryText("subtitle")) | mv::setFont(MVFont::mediumSizeRegularFont())
        | mv::setTitleColor(MVColor::secondaryTextColor());
    const auto texts = makeStack(NSLayoutConstraintAxis::vertical, 0, { title, subtitle });
    const auto share = make<UIButton>() | mv::updateImage(getImage("shareIcon")) | mv::setTintColor(MVColor::accentColor())
        | mv::setBackgroundColor(MVColor::systemGray5()) | mv::setImageEdgeInsets({ 10, 10, 10, 10 });
    share->imageView() | mv::setContentMode(UIViewContentMode::scaleAspectFit);
    circles.push_back(share);
    activate({
        share->widthAnchor().equalToConstant(avatarSide),
        share->heightAnchor().equalToConstant(avatarSide),
    });
    return makeStack(NSLayoutConstraintAxis::horizontal, 12, { avatar, texts, share })
        | mv::setAlignmentMode(UIStackViewAlignment::center);
}

std::shared_ptr<UIView> GalleryViewController::makeHero()
{
    const auto hero = make<UIView>() | mv::setLayerCornerRadius(20) | mv::setLayerMaskToBound(true);
    hero->setAccessibilityIdentifier("heroView");
    const auto banner = make<UIImageView>(shopPicture("ceramic-hour")) | mv::setContentMode(UIViewContentMode::scaleAspectFill);
    const auto shade = make<GradientView>();
    shade->setColors(std::vector { UIColor::white(0, 0), UIColor::white(0, 0.75) });
    const auto title = make<UILabel>() | mv::setText(galleryText("heroTitle")) | mv::setFont(MVFont::normalSizeBoldFont())
        | mv::setTitleColor(UIColor::white()) | mv::setNumberOfLine(2);
    watchersLabel = make<UILabel>() | mv::setText(std::to_string(watchers));
    watchersLabel->setAccessibilityIdentifier("watchersLabel");
    const auto live = makePill("", make<UILabel>() | mv::setText(MVLocalized("mvLive")), colorWithHex("#ff0a8d"));
    const auto eye = makePill("eyeIcon", watchersLabel, UIColor::white(0, 0.55));
    for (const auto& part : std::vector<std::shared_ptr<UIView>> { banner, shade, title, live, eye })
        addConstrained(*hero, part);
    pinEdges(*banner, *hero);
    activate({
        shade->leadingAnchor().equalTo(hero->leadingAnchor()),
        shade->trailingAnchor().equalTo(hero->trailingAnchor()),
        shade->bottomAnchor().equalTo(hero->bottomAnchor()),
        shade->heightAnchor().equalToMultiple(hero->heightAnchor(), 0.6),
        title->leadingAnchor().equalTo(hero->leadingAnchor(), 16),
        title->trailingAnchor().equalTo(hero->trailingAnchor(), -16),
        title->bottomAnchor().equalTo(hero->bottomAnchor(), -14),
        live->leadingAnchor().equalTo(hero->leadingAnchor(), 16),
        live->topAnchor().equalTo(hero->topAnchor(), 16),
        eye->trailingAnchor().equalTo(hero->trailingAnchor(), -16),
        eye->centerYAnchor().equalTo(live->centerYAnchor()),
    });
    return hero;
}

std::shared_ptr<UIView> GalleryViewController::makeTypeCard()
{
    const auto line = [](const std::string& text, const UIFont& font, const UIColor& color, int lines) {
        return make<UILabel>() | mv::setText(text) | mv::setFont(font) | mv::setTitleColor(color) | mv::setNumberOfLine(lines);
    };
    const auto texts = makeStack(NSLayoutConstraintAxis::vertical, 4,
        {
            line(galleryText("typeTitle"), MVFont::normalSizeSemiBoldFont(), MVColor::primaryTextColor(), 1),
            line(galleryText("typeBody"), MVFont::mediumSizeRegularFont(), MVColor::secondaryTextColor(), 2),
            line("Grüße · مرحبا · नमस्ते · 你好 · 👋🏽👩🏽‍🍳",
                MVFont::mediumSizeSemiBoldFont(), MVColor::primaryTextColor(), 1),
        });
    const auto card = makeCard(15);
    cards.push_back(card);
    addConstrained(*card, texts);
    pinEdges(*texts, *card, 14);
    return card;
}

std::shared_ptr<UIView> GalleryViewController::makeButtons()
{
    joinButton = makeFilledButton(MVLocalized("mvJoinNow"));
    joinButton->setAccessibilityIdentifier("joinButton");
    joinButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressJoinButton();
    });
    return makeStack(NSLayoutConstraintAxis::horizontal, 12, { joinButton, makeOutlinedButton(MVLocalized("mvPreview")) })
        | mv::setDistributionMode(UIStackViewDistribution::fillEqually);
}

std::shared_ptr<UIView> GalleryViewController::makeLetters()
{
    const auto row = makeStack(NSLayoutConstraintAxis::horizontal, 0);
    row | mv::setDistributionMode(UIStackViewDistribution::equalSpacing) | mv::setAlignmentMode(UIStackViewAlignment::center);
    for (const char* letter : { "A", "D", "F", "J", "O", "T", "Y" }) {
        circles.push_back(makeLetter(letter, letterSide));
        row->addArrangedSubview(circles.back());
    }
    row->addArrangedSubview(makeBorderedBox(letterSide));
    return row;
}

std::shared_ptr<UIView> GalleryViewController::makeProducts()
{
    const auto row = makeStack(NSLayoutConstraintAxis::horizontal, 12);
    for (const auto& [picture, price] :
        { std::pair { "teapot-raspberry", 64.0 }, { "cup-lilac", 18.5 }, { "amphora-vase", 129.0 } }) {
        cards.push_back(makeProductCard(picture, galleryText(picture), price));
        row->addArrangedSubview(cards.back());
    }
    return row | mv::setDistributionMode(UIStackViewDistribution::fillEqually);
}

void GalleryViewController::sendReaction()
{
    const auto table = MivoraUI::reactions();
    if (table.size() > 0)
        reactionView->animate((table.begin() + std::ptrdiff_t(nextReaction++ % table.size()))->second);
    MainQueue::shared().asyncAfter(reactionInterval, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->sendReaction();
    });
}

void GalleryViewController::didPressJoinButton() { watchersLabel->setText(std::to_string(++watchers)); }

} // namespace showroom
