#include "UI/Screens/Broadcast Screen/Controllers/ReactionsPopOverController.h"

#include "Main/MivoraUI.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UIImageView.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

namespace {

constexpr CGSize buttonSize { 55, 30 }; // points
constexpr CGFloat leadingMargin = 10;
constexpr CGFloat trailingMargin = 5;
constexpr CGFloat bothEnds = 20; // that the popover is wider than its buttons
constexpr CGFloat height = 50;

} // namespace

CGSize ReactionsPopOverController::contentSizeOfTable()
{
    return { buttonSize.width * double(MivoraUI::reactions().size()) + bothEnds, height };
}

void ReactionsPopOverController::didPressReactionButton(const UIButton& sender)
{
    const std::string reactionType = sender.accessibilityHint();
    if (reactionType.empty())
        return;
    const auto keep = weak(this).lock();
    const auto callback = onPressReaction;
    if (callback)
        callback(reactionType);
    dismiss(true);
}

void ReactionsPopOverController::rotated() { dismiss(false); }

void ReactionsPopOverController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    for (const auto& [reactionType, image] : MivoraUI::reactions())
        addReactionButton(reactionType, image);
    orientationToken = NotificationCenter::defaultCenter().addObserver(
        UIDevice::orientationDidChangeNotification, [weakSelf = weak(this)](const Notification&) {
            if (const auto self = weakSelf.lock())
                self->rotated();
        });
}

// In a right-to-left interface the row begins at the right end of what scrolls.
void ReactionsPopOverController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    const bool mirrored = view()->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    reactionsScrollView->layoutIfNeeded();
    if (reactionsScrollView->contentSize().isEmpty() || !std::exchange(startsAtLeadingEnd, false) || !mirrored)
        return;
    reactionsScrollView->setContentOffset({ reactionsScrollView->maximumContentOffset().x, 0 });
}

void ReactionsPopOverController::configureSubViewsProperties()
{
    reactionsScrollView->setAccessibilityIdentifier("reactionsScrollView");
    reactionsScrollView->setShowsHorizontalScrollIndicator(false);
    reactionsStackView->setAccessibilityIdentifier("reactionsStackView");
    view() | mv::setBackgroundColor(UIColor::clear());
    reactionsScrollView | mv::setBackgroundColor(UIColor::clear());
    reactionsStackView | mv::setBackgroundColor(UIColor::clear()) | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fill) | mv::setAlignmentMode(UIStackViewAlignment::center)
        | mv::setSpacing(0);
}

void ReactionsPopOverController::setUpViews()
{
    view()->addSubview(reactionsScrollView);
    reactionsScrollView->addSubview(reactionsStackView);
}

void ReactionsPopOverController::setUpViewsConstraints()
{
    reactionsScrollView->setTranslatesAutoresizingMaskIntoConstraints(false);
    reactionsStackView->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto safe = view()->safeAreaLayoutGuide();
    const auto rowFillsHeight = reactionsStackView->heightAnchor().equalTo(reactionsScrollView->heightAnchor());
    rowFillsHeight->setPriority(LayoutPriority::required - 1); // one that is too high for what is there scrolls
    activate({
        reactionsScrollView->topAnchor().equalTo(safe->topAnchor()),
        reactionsScrollView->bottomAnchor().equalTo(safe->bottomAnchor()),
        reactionsScrollView->leadingAnchor().equalTo(safe->leadingAnchor(), leadingMargin),
        reactionsScrollView->trailingAnchor().equalTo(safe->trailingAnchor(), -trailingMargin),
        reactionsStackView->topAnchor().equalTo(reactionsScrollView->topAnchor()),
        reactionsStackView->bottomAnchor().equalTo(reactionsScrollView->bottomAnchor()),
        reactionsStackView->leadingAnchor().equalTo(reactionsScrollView->leadingAnchor(), leadingMargin),
        reactionsStackView->trailingAnchor().equalTo(reactionsScrollView->trailingAnchor(), -trailingMargin),
        rowFillsHeight,
    });
}

void ReactionsPopOverController::addReactionButton(const std::string& reactionType, std::shared_ptr<const UIImage> image)
{
    const auto button = make<UIButton>() | mv::setBackgroundColor(UIColor::clear()) | mv::updateImage(std::move(image));
    button->imageView() | mv::setContentMode(UIViewContentMode::scaleAspectFit);
    button->setAccessibilityIdentifier("reactionButton");
    button->setAccessibilityHint(reactionType);
    activate({
        button->widthAnchor().equalToConstant(buttonSize.width),
        button->heightAnchor().equalToConstant(buttonSize.height),
    });
    button->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this), weakButton = weak(button)] {
        const auto self = weakSelf.lock();
        const auto pressed = weakButton.lock();
        if (self && pressed)
            self->didPressReactionButton(*pressed);
    });
    reactionsStackView->addArrangedSubview(button);
}

} // namespace mv
