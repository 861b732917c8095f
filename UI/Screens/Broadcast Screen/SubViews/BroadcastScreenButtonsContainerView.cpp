#include "UI/Screens/Broadcast Screen/SubViews/BroadcastScreenButtonsContainerView.h"

#include "Platform/Foundation/UUID.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr CGFloat buttonSize = 37.5; // points
constexpr CGFloat buttonSpacing = 15;
constexpr double rotationDuration = 0.25; // seconds
constexpr double showHideDuration = 0.33;

void configure(const MVBlurButton& button, const char* imageName)
{
    button.button() | mv::updateImage(getImage(imageName)) | mv::setTintColor(UIColor::white())
        | mv::setImageEdgeInsets({ 9, 9, 9, 9 });
    button.button()->imageView() | mv::setContentMode(UIViewContentMode::scaleAspectFit);
}

void drawToggle(const MVBlurButton& toggle, bool isOn)
{
    toggle.button() | mv::setBackgroundColor(isOn ? UIColor::white() : UIColor::clear())
        | mv::setTintColor(isOn ? UIColor::black() : UIColor::white());
}

NSLayoutConstraints squareConstraints(const UIView& view, CGFloat side)
{
    return { view.widthAnchor().equalToConstant(side), view.heightAnchor().equalToConstant(side) };
}

NSLayoutConstraints operator+(NSLayoutConstraints first, const NSLayoutConstraints& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

BroadcastScreenButtonsContainerView::BroadcastScreenButtonsContainerView(const CGRect& frame)
    : UIView(frame)
    , stackView(make<UIStackView>())
    , closeButton(make<MVBlurButton>())
    , chatToggleButton(make<MVBlurButton>())
    , productsToggleButton(make<MVBlurButton>())
    , uniqueIdentifier(makeUUID())
{
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    setUpActions();
    activateConstraints(checkAndGetDeviceInitialOrientation());
    // The handler wants an owner to refer to weakly, and this view has none before its constructor has ended.
    MVSystemNotificationHandler::instance().addDelegate(
        uniqueIdentifier, std::shared_ptr<MVSystemNotificationHandlerDelegate>(registration, this));
}

void BroadcastScreenButtonsContainerView::setButtonsInitialState(bool showChatButton, bool showProductButton)
{
    UIView::animate(showHideDuration, [&] {
        chatToggleButton->setHidden(!showChatButton);
        productsToggleButton->setHidden(!showProductButton);
    });
}

void BroadcastScreenButtonsContainerView::setChatToggleOnOff(bool isOn)
{
    isChatOn_ = isOn;
    drawToggle(*chatToggleButton, isOn);
    chatToggleButton->button() | mv::updateImage(getImage(isOn ? "commentDisable" : "commentEnable"));
}

void BroadcastScreenButtonsContainerView::setProductToggleOnOff(bool isOn)
{
    isProductsOn_ = isOn;
    drawToggle(*productsToggleButton, isOn);
}

void BroadcastScreenButtonsContainerView::didDeviceOrientationChanged(UIDeviceOrientation newOrientation)
{
    UIView::animate(rotationDuration, [&] {
        activateConstraints(newOrientation);
        if (window())
            layoutIfNeeded();
    });
}

void BroadcastScreenButtonsContainerView::layoutSubviews()
{
    UIView::layoutSubviews();
    stackView->layoutIfNeeded();
    for (const auto& button : { closeButton, chatToggleButton, productsToggleButton })
        setViewCircular(*button);
}

void BroadcastScreenButtonsContainerView::configureSubViewsProperties()
{
    setBackgroundColor(UIColor::clear());
    stackView | mv::setAxis(NSLayoutConstraintAxis::vertical) | mv::setDistributionMode(UIStackViewDistribution::fill)
        | mv::setAlignmentMode(UIStackViewAlignment::center) | mv::setSpacing(buttonSpacing)
        | mv::setBackgroundColor(UIColor::clear());
    configure(*closeButton, "crossPlainIcon");
    configure(*chatToggleButton, "commentEnable");
    configure(*productsToggleButton, "productIcon");
    chatToggleButton->setHidden(true);
    productsToggleButton->setHidden(true);
}

void BroadcastScreenButtonsContainerView::setUpViews()
{
    stackView->setAccessibilityIdentifier("stackView");
    closeButton->setAccessibilityIdentifier("closeButton");
    chatToggleButton->setAccessibilityIdentifier("chatToggleButton");
    productsToggleButton->setAccessibilityIdentifier("productsToggleButton");
    addSubview(stackView);
    stackView->addArrangedSubview(closeButton);
    stackView->addArrangedSubview(chatToggleButton);
    stackView->addArrangedSubview(productsToggleButton);
}

void BroadcastScreenButtonsContainerView::setUpViewsConstraints()
{
    stackView->setTranslatesAutoresizingMaskIntoConstraints(false);
    commonConstraints = NSLayoutConstraints {
        stackView->leadingAnchor().equalTo(leadingAnchor()),
        stackView->trailingAnchor().equalTo(trailingAnchor()),
        stackView->topAnchor().equalTo(topAnchor()),
        stackView->bottomAnchor().equalTo(bottomAnchor()),
        stackView->widthAnchor().equalToConstant(buttonSize),
    } + squareConstraints(*closeButton, buttonSize);
    portraitModeConstraints
        = squareConstraints(*chatToggleButton, buttonSize) + squareConstraints(*productsToggleButton, buttonSize);
    landscapeModeConstraints = squareConstraints(*chatToggleButton, 0) + squareConstraints(*productsToggleButton, 0);
}

void BroadcastScreenButtonsContainerView::setUpActions()
{
    using Handler = void (BroadcastScreenButtonsContainerView::*)();
    const auto onPress = [this](const MVBlurButton& button, Handler handler) {
        button.button()->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this), handler] {
            if (const auto self = weakSelf.lock())
                (*self.*handler)();
        });
    };
    onPress(*closeButton, &BroadcastScreenButtonsContainerView::didPressCloseButton);
    onPress(*chatToggleButton, &BroadcastScreenButtonsContainerView::didPressChatToggleButton);
    onPress(*productsToggleButton, &BroadcastScreenButtonsContainerView::didPressProductsToggleButton);
}

void BroadcastScreenButtonsContainerView::activateConstraints(UIDeviceOrientation orientation)
{
    const bool isLandscape
        = orientation == UIDeviceOrientation::landscapeLeft || orientation == UIDeviceOrientation::landscapeRight;
    if (!commonConstraints.front()->isActive())
        NSLayoutConstraint::activate(commonConstraints);
    NSLayoutConstraint::deactivate(isLandscape ? portraitModeConstraints : landscapeModeConstraints);
    NSLayoutConstraint::activate(isLandscape ? landscapeModeConstraints : portraitModeConstraints);
    // A toggle of no size needs no room around it either: what lies there can be touched.
    for (const auto& button : { closeButton, chatToggleButton })
        stackView->setCustomSpacing(isLandscape ? std::optional<CGFloat>(0) : std::nullopt, *button);
}

void BroadcastScreenButtonsContainerView::didPressCloseButton()
{
    if (const auto callback = onPressCloseScreenButton)
        callback();
}

void BroadcastScreenButtonsContainerView::didPressChatToggleButton()
{
    const bool isOn = !isChatOn_;
    setChatToggleOnOff(isOn);
    if (const auto callback = onPressShowHideChatButton)
        callback(isOn);
}

void BroadcastScreenButtonsContainerView::didPressProductsToggleButton()
{
    const bool isOn = !isProductsOn_;
    setProductToggleOnOff(isOn);
    if (const auto callback = onPressShowHideProductsButton)
        callback(isOn);
}

} // namespace mv
