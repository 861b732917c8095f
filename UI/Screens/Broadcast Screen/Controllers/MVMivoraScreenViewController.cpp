#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UIScreen.h"
#include "Service/MVVideoStreamService.h"
#include "Service/Mivora.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

constexpr CGFloat pillHeight = 35; // points
constexpr CGFloat pillMargin = 10;
constexpr CGFloat topMargin = 15;
constexpr CGFloat buttonsMargin = 15;
constexpr CGFloat portraitBottomRoom = 55; // below the panel and the reactions, for the comment bar
constexpr CGFloat landscapeBottomRoom = 50;
constexpr CGFloat landscapeTopRoom = 70;
constexpr CGFloat portraitPanelShare = 0.45; // of the screen's height
constexpr CGFloat reactionsHeight = 300;
constexpr CGFloat reactionsLeadingRoom = 50; // beyond the screen's leading edge
constexpr CGFloat bannerMargin = 15;
constexpr double rotationDuration = 0.25; // seconds

bool isLandscape(UIDeviceOrientation orientation)
{
    return orientation == UIDeviceOrientation::landscapeLeft || orientation == UIDeviceOrientation::landscapeRight;
}

bool isStanding(const std::shared_ptr<UIViewController>& presented) { return presented && !presented->isBeingDismissed(); }

void configurePill(MVHorizontalImageTextView& pill)
{
    pill.setClipsToBounds(true);
    pill.layer()->setCornerRadius(5);
    pill.setLabelColor(UIColor::white()).setImageTintColor(UIColor::white()).setLabelFont(MVFonts::semiBoldFont(16));
}

} // namespace

MVMivoraScreenViewController::MVMivoraScreenViewController() = default;

void MVMivoraScreenViewController::setBroadcast(std::shared_ptr<MVBroadcast> broadcast)
{
    broadcast_ = std::move(broadcast);
    isWatching = broadcast_ != nullptr;
    if (!isWatching)
        return;
    loadViewIfNeeded();
    using Self = MVMivoraScreenViewController;
    for (const auto step : { &Self::watchBroadcast, &Self::watchConversation, &Self::showViewers, &Self::loadInitialMessages,
             &Self::loadBroadcastProducts, &Self::showLoginBannerIfNeeded, &Self::startVideo })
        if (isWatching) // the service may tell of the show's end in the middle of a call
            (this->*step)();
}

void MVMivoraScreenViewController::resetOnEventComplete() { processClose(); }

void MVMivoraScreenViewController::didVideoChannelJoinedSuccessfully(const std::string& /*channelName*/)
{
    NSLog("Video Channel Joined Successfully");
}

void MVMivoraScreenViewController::didVideoChannelLeftSuccessfully(const std::string& /*channelName*/)
{
    NSLog("Video Channel Left Successfully");
}

void MVMivoraScreenViewController::didHostStreamGotOffline(const std::string& channelName, std::uint32_t /*uid*/)
{
    if (!isShown(channelName))
        return;
    NSLog("Host Stream Got Offline");
    streamContainerView->showHideNoStreamLabel(true);
}

void MVMivoraScreenViewController::didRecieveHostVideoStream(const std::string& channelName, std::uint32_t /*uid*/)
{
    if (!isShown(channelName))
        return;
    NSLog("Recieved Host Video Stream");
    streamContainerView->showHideNoStreamLabel(false);
}

// One after the other would need as many answers from the viewer, so an alert stays alone. It lies over the name prompt, in which
// something may be written; the reaction picker makes way.
void MVMivoraScreenViewController::didErrorOccuredInVideoService(const MVError& error)
{
    UIViewController* presenter = this;
    if (const auto standing = presentedViewController(); isStanding(standing)) {
        if (standing != viewersDialog.lock() || isStanding(standing->presentedViewController()))
            return;
        if (standing->modalPresentationStyle() == UIModalPresentationStyle::popover)
            standing->dismiss(true);
        else
            presenter = standing.get();
    }
    const auto alert = make<UIAlertController>("Video Stream Error", error.errorMessage);
    alert->addAction({ "Ok", UIAlertActionStyle::normal, {} });
    presenter->present(alert, true);
}

void MVMivoraScreenViewController::didDeviceOrientationChanged(UIDeviceOrientation newOrientation)
{
    if (newOrientation != UIDeviceOrientation::faceUp && newOrientation != UIDeviceOrientation::faceDown)
        setConstraints(newOrientation, true);
}

void MVMivoraScreenViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    UITraitCollection dark;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    view()->setBackgroundColor(MVColor::backgroundColor().resolved(dark));
    configureSubViewsProperties();
    setUpViews();
    setUpActions();
    setUpParticipation();
    setUpViewsConstraints();
    setConstraints(checkAndGetDeviceInitialOrientation(), false);
    registerDelegates();
}

void MVMivoraScreenViewController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    productChatContainerView->layoutIfNeeded();
}

void MVMivoraScreenViewController::configureSubViewsProperties()
{
    streamContainerView | mv::setBackgroundColor(UIColor::clear());
    configurePill(*watchersCountView);
    watchersCountView | mv::setBackgroundColor(colorWithHex("#b3b3b3"));
    watchersCountView->showBlur(UIColor::clear())
        .setLabelPadding({ 0, 5, 0, 10 })
        .setImagePadding({ 5, 7.5, 5, 5 })
        .setLabelAndImage("0", "eyeIcon");
    configurePill(*statusView);
    statusView | mv::setBackgroundColor(colorWithHex("#ff0a8d"));
    statusView->showBlur(colorWithHex("#ff0a8d").withAlphaComponent(0.8))
        .setImagePosition(MVHorizontalImageTextView::ImagePosition::right)
        .setLabelPadding({ 0, 10, 0, 0 })
        .setImagePadding({ 5, 5, 5, 5 })
        .setLabelAndImage("LIVE", "videoCam");
    rightButtonContainerView | mv::setBackgroundColor(UIColor::clear());
    productChatContainerView | mv::setBackgroundColor(UIColor::clear());
    productChatContainerView->isLoadingMoreMessageAllowed = false;
    reactionAnimationView | mv::setBackgroundColor(UIColor::clear());
    commentInputView | mv::setBackgroundColor(UIColor::black().withAlphaComponent(0.5));
}

void MVMivoraScreenViewController::setUpViews()
{
    const std::pair<std::shared_ptr<UIView>, const char*> subviews[] = {
        { streamContainerView, "streamContainerView" },
        { watchersCountView, "watchersCountView" },
        { statusView, "statusView" },
        { productChatContainerView, "productChatContainerView" },
        { reactionAnimationView, "reactionAnimationView" },
        { commentInputView, "commentInputView" },
        { rightButtonContainerView, "rightButtonContainerView" },
    };
    for (const auto& [subview, name] : subviews) {
        subview->setAccessibilityIdentifier(name);
        subview->setTranslatesAutoresizingMaskIntoConstraints(false);
        view()->addSubview(subview);
    }
}

void MVMivoraScreenViewController::setUpActions()
{
    rightButtonContainerView->onPressCloseScreenButton = [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressCloseScreenButton();
    };
    rightButtonContainerView->onPressShowHideChatButton = [weakSelf = weak(this)](bool isOn) {
        if (const auto self = weakSelf.lock())
            self->showHideChat(isOn);
    };
    rightButtonContainerView->onPressShowHideProductsButton = [weakSelf = weak(this)](bool isOn) {
        if (const auto self = weakSelf.lock())
            self->productChatContainerView->showHideProducts(isOn);
    };
}

void MVMivoraScreenViewController::setUpViewsConstraints()
{
    const auto safe = view()->safeAreaLayoutGuide();
    commentInputViewBottomAnchor = commentInputView->bottomAnchor().equalTo(view()->bottomAnchor());
    commonConstraints = {
        commentInputViewBottomAnchor,
        commentInputView->leadingAnchor().equalTo(view()->leadingAnchor()),
        commentInputView->trailingAnchor().equalTo(view()->trailingAnchor()),
        streamContainerView->topAnchor().equalTo(view()->topAnchor()),
        streamContainerView->bottomAnchor().equalTo(view()->bottomAnchor()),
        streamContainerView->leadingAnchor().equalTo(view()->leadingAnchor()),
        watchersCountView->topAnchor().equalTo(safe->topAnchor(), topMargin),
        watchersCountView->leadingAnchor().equalTo(safe->leadingAnchor(), pillMargin),
        watchersCountView->heightAnchor().equalToConstant(pillHeight),
        statusView->topAnchor().equalTo(safe->topAnchor(), topMargin),
        statusView->leadingAnchor().equalTo(watchersCountView->trailingAnchor(), pillMargin),
        statusView->heightAnchor().equalToConstant(pillHeight),
        rightButtonContainerView->trailingAnchor().equalTo(safe->trailingAnchor(), -buttonsMargin),
        rightButtonContainerView->topAnchor().equalTo(safe->topAnchor(), topMargin),
        productChatContainerView->trailingAnchor().equalTo(view()->trailingAnchor()),
        reactionAnimationView->leadingAnchor().equalTo(view()->leadingAnchor(), -reactionsLeadingRoom),
        reactionAnimationView->trailingAnchor().equalTo(safe->trailingAnchor()),
        reactionAnimationView->bottomAnchor().equalTo(safe->bottomAnchor(), -portraitBottomRoom),
        reactionAnimationView->heightAnchor().equalToConstant(reactionsHeight),
    };
    portraitModeConstraints = {
        streamContainerView->trailingAnchor().equalTo(view()->trailingAnchor()),
        productChatContainerView->leadingAnchor().equalTo(view()->leadingAnchor()),
        productChatContainerView->bottomAnchor().equalTo(safe->bottomAnchor(), -portraitBottomRoom),
        productChatContainerView->heightAnchor().equalToConstant(portraitPanelShare * UIScreen::main().bounds().height),
    };
    landscapeModeConstraints = {
        streamContainerView->trailingAnchor().equalTo(view()->centerXAnchor()),
        productChatContainerView->leadingAnchor().equalTo(view()->centerXAnchor()),
        productChatContainerView->bottomAnchor().equalTo(safe->bottomAnchor(), -landscapeBottomRoom),
        productChatContainerView->heightAnchor().equalTo(view()->heightAnchor(), -landscapeTopRoom),
    };
}

void MVMivoraScreenViewController::setConstraints(UIDeviceOrientation orientation, bool animated)
{
    const bool landscape = isLandscape(orientation);
    const auto apply = [&] {
        if (!commonConstraints.front()->isActive())
            NSLayoutConstraint::activate(commonConstraints);
        NSLayoutConstraint::deactivate(landscape ? portraitModeConstraints : landscapeModeConstraints);
        NSLayoutConstraint::activate(landscape ? landscapeModeConstraints : portraitModeConstraints);
    };
    if (!animated)
        return apply();
    UIView::animate(rotationDuration, [&] {
        apply();
        view()->layoutIfNeeded();
    });
}

void MVMivoraScreenViewController::registerDelegates()
{
    const auto self = std::static_pointer_cast<MVMivoraScreenViewController>(weak(this).lock());
    MVSystemNotificationHandler::instance().addDelegate(uniqueIdentifer, self);
    Mivora::instance()->addDelegate(self, uniqueIdentifer);
    MVVideoStreamService::instance()->addDelegates(self, uniqueIdentifer);
}

void MVMivoraScreenViewController::watchBroadcast() { broadcast_->startWatching({}); }

void MVMivoraScreenViewController::watchConversation() { broadcast_->startWatchingBroadcastConversation({}); }

void MVMivoraScreenViewController::showViewers()
{
    watchersCountView->updateLabelText(std::to_string(broadcast_->watchersCount.value_or(0)));
}

// In the place of the comment bar, for the life of the screen.
void MVMivoraScreenViewController::showLoginBannerIfNeeded()
{
    if (loginBannerView || broadcast_->isGuestUserAllowedToChat || Mivora::getCurrentUserRole() == MVCurrentUserType::user)
        return;
    commentInputView->setHidden(true);
    loginBannerView = make<UIView>() | mv::setBackgroundColor(colorWithHex("#1c1c1c"));
    loginBannerView->setAccessibilityIdentifier("loginBannerView");
    loginBannerView->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto label = make<UILabel>() | mv::setText("Please login to send Chat Messages.") | mv::setTitleColor(UIColor::white())
        | mv::setBackgroundColor(UIColor::clear()) | mv::setNumberOfLine(0) | mv::setFont(MVFont::mediumSizeSemiBoldFont());
    label->setTextAlignment(NSTextAlignment::center);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    loginBannerView->addSubview(label);
    view()->addSubview(loginBannerView);
    addBorder(*loginBannerView, BordersViewTag::top, MVColor::seperatorColor(), 1);
    const auto safe = loginBannerView->safeAreaLayoutGuide();
    activate({
        loginBannerView->leadingAnchor().equalTo(view()->leadingAnchor()),
        loginBannerView->trailingAnchor().equalTo(view()->trailingAnchor()),
        loginBannerView->bottomAnchor().equalTo(view()->bottomAnchor()),
        label->leadingAnchor().equalTo(safe->leadingAnchor(), bannerMargin),
        label->trailingAnchor().equalTo(safe->trailingAnchor(), -bannerMargin),
        label->bottomAnchor().equalTo(safe->bottomAnchor(), -bannerMargin),
        label->topAnchor().equalTo(loginBannerView->topAnchor(), bannerMargin),
    });
}

void MVMivoraScreenViewController::startVideo()
{
    const auto streamConfig = std::make_shared<MVVideoStreamConfig>();
    streamConfig->streamContainerView = streamContainerView->getStreamView();
    streamConfig->streamRenderMode = MVVideoStreamRenderMode::scaleAspectFill;
    broadcast_->playVideoStream(streamConfig);
}

void MVMivoraScreenViewController::processClose()
{
    endParticipation();
    const auto watched = std::exchange(isWatching, false) ? broadcast_ : nullptr;
    if (watched) {
        watched->stopWatching({});
        watched->stopWatchingBroadcastConversation({});
        watched->stopVideoStream();
    }
    Mivora::instance()->removeDelegate(uniqueIdentifer);
    MVSystemNotificationHandler::instance().removeDelegate(uniqueIdentifer);
    MVVideoStreamService::instance()->removeDelegate(uniqueIdentifer);
}

void MVMivoraScreenViewController::didPressCloseScreenButton()
{
    const auto keep = weak(this).lock();
    processClose();
    const auto callback = onPressCloseButton;
    if (callback)
        callback();
}

bool MVMivoraScreenViewController::isShown(const std::optional<std::string>& broadcastId) const
{
    return broadcast_ && broadcastId == broadcast_->id;
}

} // namespace mv
