#pragma once

#include "Platform/Foundation/UUID.h"
#include "Platform/UIKit/UIPopoverPresentationController.h"
#include "Platform/UIKit/UIViewController.h"
#include "Service/MVBroadcast.h"
#include "Service/MivoraDelegate.h"
#include "UI/Common/Models/BroadcastProduct.h"
#include "UI/Common/Models/ChatMessageList.h"
#include "UI/Common/SubViews/MVHorizontalImageTextView.h"
#include "UI/Screens/Broadcast Screen/SubViews/BroadcastScreenButtonsContainerView.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVCommentInputView.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVProductChatContainerView.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVStreamVideoContainerView.h"
#include "UI/Screens/Broadcast Screen/SubViews/ReactionAnimationView.h"
#include "UI/Utils/MVSystemNotificationHandler.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace mv {

// The screen of a show that is live: its video, the number of viewers, chat and products over it, reactions flying up, a bar to
// write comments in and to react, and a column of buttons. Watches from setBroadcast on until it is closed or the show is over,
// and takes what the viewer has open then along. Main thread.
class MVMivoraScreenViewController final : public UIViewController,
                                           public MivoraDelegate,
                                           public MVVideoStreamServiceDelegate,
                                           public MVSystemNotificationHandlerDelegate,
                                           public UIPopoverPresentationControllerDelegate {
public:
    MVMivoraScreenViewController();

    std::function<void()> onPressCloseButton; // after the session has ended
    const std::shared_ptr<MVBroadcast>& broadcast() const { return broadcast_; } // being watched; null for none

    // Begins to watch; null watches nothing.
    void setBroadcast(std::shared_ptr<MVBroadcast> broadcast);
    // The router's word that the show is over, or that the viewer has left: ends the session once, and does nothing more after.
    void resetOnEventComplete();

    // MivoraDelegate
    void didRecievedNewMessageInBroadcast(const MVBroadcastNewMessageData& update) override;
    void didMessageDeletedFromBroadcast(const MVBroadcastMessagesDeletedData& update) override;
    void didWatchersCountUpdated(const MVWatchersUpdateData& update) override;
    void didNewReactionAddedToBroadcast(const MVReactionData& update) override;
    void didBroadcastProductFeaturedUnfeatured(const MVProductsFeaturedUnfeaturedData& update) override;
    // MVVideoStreamServiceDelegate
    void didVideoChannelJoinedSuccessfully(const std::string& channelName) override;
    void didVideoChannelLeftSuccessfully(const std::string& channelName) override;
    void didHostStreamGotOffline(const std::string& channelName, std::uint32_t uid) override;
    void didRecieveHostVideoStream(const std::string& channelName, std::uint32_t uid) override;
    void didErrorOccuredInVideoService(const MVError& error) override;
    // MVSystemNotificationHandlerDelegate
    void didDeviceOrientationChanged(UIDeviceOrientation newOrientation) override;
    void didKeyboardFrameChanged(CGFloat newHeight, double animationDuration) override;
    // UIPopoverPresentationControllerDelegate
    UIModalPresentationStyle adaptivePresentationStyle(
        const UIPopoverPresentationController& popover, const UITraitCollection& traits) override;
    void prepareForPopoverPresentation(UIPopoverPresentationController& popover) override;

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpActions();
    void setUpViewsConstraints();
    void setConstraints(UIDeviceOrientation orientation, bool animated);
    void registerDelegates();
    void watchBroadcast();
    void watchConversation();
    void showViewers();
    void showLoginBannerIfNeeded();
    void startVideo();
    void processClose();
    void didPressCloseScreenButton();

    // Chat, products and reactions: MVMivoraScreenConversation.cpp
    void loadInitialMessages();
    void loadBroadcastProducts();
    void showFirstPage(const MVBroadcast::MessageList& messages);
    void insertMessage(const ChatMessage& message);
    void bringChatOn();
    void showHideChat(bool show);
    void refreshButtons();
    bool isShown(const std::optional<std::string>& broadcastId) const;

    // What the viewer does: MVMivoraScreenParticipation.cpp
    void setUpParticipation();
    void didPressSendComment(const std::string& comment);
    void askForName(UINavigationController& navigation, const std::string& comment);
    void createGuestUser(const std::string& guestUserName, const std::string& comment);
    void sendNewComment(const std::string& comment);
    void showNewComment(const std::shared_ptr<const MVMessage>& message);
    void showReactionPicker(const UIButton& reactionButton);
    void endParticipation();
    bool isStillWatching(const std::weak_ptr<MVBroadcast>& broadcast) const;

    std::shared_ptr<MVStreamVideoContainerView> streamContainerView = make<MVStreamVideoContainerView>();
    std::shared_ptr<MVHorizontalImageTextView> watchersCountView = make<MVHorizontalImageTextView>();
    std::shared_ptr<MVHorizontalImageTextView> statusView = make<MVHorizontalImageTextView>();
    std::shared_ptr<MVProductChatContainerView> productChatContainerView = make<MVProductChatContainerView>();
    std::shared_ptr<ReactionAnimationView> reactionAnimationView = make<ReactionAnimationView>();
    std::shared_ptr<MVCommentInputView> commentInputView = make<MVCommentInputView>();
    std::shared_ptr<BroadcastScreenButtonsContainerView> rightButtonContainerView = make<BroadcastScreenButtonsContainerView>();
    std::shared_ptr<UIView> loginBannerView; // null while the viewer may write
    NSLayoutConstraints commonConstraints;
    NSLayoutConstraints landscapeModeConstraints;
    NSLayoutConstraints portraitModeConstraints;
    std::shared_ptr<NSLayoutConstraint> commentInputViewBottomAnchor; // its constant follows the keyboard
    std::string uniqueIdentifer = makeUUID(); // of the three registrations
    std::shared_ptr<MVBroadcast> broadcast_;
    ChatMessageList chatMessages; // newest first
    std::unordered_set<std::string> messageIds; // of those
    std::vector<std::shared_ptr<BroadcastProduct>> products;
    bool isWatching = false;
    std::weak_ptr<UIViewController> viewersDialog; // the name prompt or the reaction picker, as last presented
};

} // namespace mv
