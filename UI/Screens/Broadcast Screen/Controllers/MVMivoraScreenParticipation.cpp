// What the viewer does on the live screen: writing comments, giving a name for the first one, and reacting.
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Service/Mivora.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/ReactionsPopOverController.h"

namespace mv {

namespace {

constexpr CGFloat leastKeyboardHeight = 100; // points; what is lower is a bar of a hardware keyboard's

std::string statusText(const MVApiError& error) { return error.statusCode ? std::to_string(*error.statusCode) : ""; }

} // namespace

void MVMivoraScreenViewController::didKeyboardFrameChanged(CGFloat newHeight, double animationDuration)
{
    UIView::animate(animationDuration, [&] {
        commentInputViewBottomAnchor->setConstant(-newHeight);
        commentInputView
            | mv::setBackgroundColor(
                newHeight > leastKeyboardHeight ? colorWithHex("#2c2c2c") : UIColor::black().withAlphaComponent(0.5));
        view()->layoutIfNeeded();
    });
}

// The reaction picker stays a popover on phones too.
UIModalPresentationStyle MVMivoraScreenViewController::adaptivePresentationStyle(
    const UIPopoverPresentationController& /*popover*/, const UITraitCollection& /*traits*/)
{
    return UIModalPresentationStyle::none;
}

void MVMivoraScreenViewController::prepareForPopoverPresentation(UIPopoverPresentationController& /*popover*/)
{
    if (auto* presenter = presentingViewController())
        presenter->view() | mv::setBackgroundColor(UIColor::clear());
}

void MVMivoraScreenViewController::setUpParticipation()
{
    streamContainerView->addGestureRecognizer(make<UITapGestureRecognizer>([weakSelf = weak(this)](UIGestureRecognizer&) {
        if (const auto self = weakSelf.lock())
            self->view()->endEditing(true);
    }));
    commentInputView->onPressSendCommentButton = [weakSelf = weak(this)](const std::string& comment) {
        if (const auto self = weakSelf.lock())
            self->didPressSendComment(comment);
    };
    commentInputView->onPressSendReactionButton = [weakSelf = weak(this)](bool /*isOn*/, const auto& reactionButton) {
        if (const auto self = weakSelf.lock())
            self->showReactionPicker(*reactionButton);
    };
}

void MVMivoraScreenViewController::didPressSendComment(const std::string& comment)
{
    if (!isWatching)
        return;
    if (Mivora::getCurrentUserRole() != MVCurrentUserType::anonymous)
        sendNewComment(comment);
    else if (auto* navigation = navigationController())
        askForName(*navigation, comment);
}

void MVMivoraScreenViewController::askForName(UINavigationController& navigation, const std::string& comment)
{
    const auto prompt = make<MVGuestUserNameInputViewController>();
    prompt->setModalPresentationStyle(UIModalPresentationStyle::overCurrentContext);
    prompt->onPressJoinButton = [weakSelf = weak(this), weakPrompt = weak(prompt), comment](const std::string& name) {
        const auto self = weakSelf.lock();
        const auto asking = weakPrompt.lock();
        if (!self || !asking)
            return;
        asking->onPressJoinButton = nullptr; // once, however often it is pressed
        asking->dismiss(true);
        if (self->isWatching)
            self->createGuestUser(name, comment);
    };
    viewersDialog = prompt;
    navigation.present(prompt, true);
}

void MVMivoraScreenViewController::createGuestUser(const std::string& guestUserName, const std::string& comment)
{
    const std::weak_ptr<MVBroadcast> commented = broadcast_;
    Mivora::createGuestUser(guestUserName, [weakSelf = weak(this), commented, comment](const auto& /*user*/, const auto& error) {
        const auto self = weakSelf.lock();
        if (!self || !self->isStillWatching(commented))
            return;
        if (!error)
            return self->sendNewComment(comment);
        NSLog(error->errorMessage.value_or(""));
        NSLog(error->errorCode.value_or(""));
        NSLog(statusText(*error));
    });
}

void MVMivoraScreenViewController::sendNewComment(const std::string& comment)
{
    const std::weak_ptr<MVBroadcast> commented = broadcast_;
    broadcast_->sendMessage(comment, [weakSelf = weak(this), commented](const auto& message, const auto& error) {
        const auto self = weakSelf.lock();
        if (!self || !self->isStillWatching(commented))
            return;
        if (!error)
            return self->showNewComment(message);
        NSLog(error->errorCode.value_or(""));
        NSLog(error->errorMessage.value_or(""));
        NSLog(statusText(*error));
    });
}

void MVMivoraScreenViewController::showNewComment(const std::shared_ptr<const MVMessage>& message)
{
    if (const auto line = makeChatMessage(message, *broadcast_))
        insertMessage(*line);
    productChatContainerView->setChatMessages(chatMessages, false, true);
    bringChatOn();
}

void MVMivoraScreenViewController::showReactionPicker(const UIButton& reactionButton)
{
    if (!isWatching)
        return;
    const auto picker = make<ReactionsPopOverController>();
    picker->setOverrideUserInterfaceStyle(UIUserInterfaceStyle::dark);
    picker->setPreferredContentSize(ReactionsPopOverController::contentSizeOfTable());
    picker->setModalPresentationStyle(UIModalPresentationStyle::popover);
    picker->setModalTransitionStyle(UIModalTransitionStyle::crossDissolve);
    picker->onPressReaction = [weakSelf = weak(this)](const std::string& reaction) {
        if (const auto self = weakSelf.lock(); self && self->isWatching)
            self->broadcast_->addReaction(reaction, {});
    };
    const auto popover = picker->popoverPresentationController();
    popover->setSourceView(view());
    popover->setSourceRect(reactionButton.convertTo(reactionButton.bounds(), view().get()));
    popover->setPermittedArrowDirections(UIPopoverArrowDirection::down);
    popover->setDelegate(std::static_pointer_cast<MVMivoraScreenViewController>(weak(this).lock()));
    viewersDialog = picker;
    present(picker, true);
}

// First of all when it closes, so that the bar still follows the keyboard down.
void MVMivoraScreenViewController::endParticipation()
{
    if (isViewLoaded())
        view()->endEditing(true);
    const auto dialog = viewersDialog.lock();
    if (auto* presenter = dialog ? dialog->presentingViewController() : nullptr)
        presenter->dismiss(true); // with an alert that lies over it
}

bool MVMivoraScreenViewController::isStillWatching(const std::weak_ptr<MVBroadcast>& broadcast) const
{
    return isWatching && broadcast_ == broadcast.lock();
}

} // namespace mv
