// What the viewer does on the live screen: writing comments and giving a name for the first one.
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Service/Mivora.h"
#include "UI/Extensions/MVColorExtensions.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"

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
    prompt->setModalPresentationStyle(UIModalPresentationStyle::overFullScreen);
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

// First of all when it closes, so that the bar still follows the keyboard down.
void MVMivoraScreenViewController::endParticipation()
{
    if (isViewLoaded())
        view()->endEditing(true);
    if (const auto dialog = viewersDialog.lock(); dialog && dialog->presentingViewController())
        dialog->dismiss(true);
}

bool MVMivoraScreenViewController::isStillWatching(const std::weak_ptr<MVBroadcast>& broadcast) const
{
    return isWatching && broadcast_ == broadcast.lock();
}

} // namespace mv
