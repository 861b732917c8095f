#pragma once

#include "Platform/UIKit/UICollectionView.h"
#include "Platform/UIKit/UITableView.h"
#include "UI/Common/Models/BroadcastProduct.h"
#include "UI/Common/Models/ChatMessageList.h"
#include "UI/Utils/MVSystemNotificationHandler.h"

#include <functional>
#include <string>
#include <vector>

namespace mv {

class ChatTableContainerView;

// The lower panel of a broadcast: the chat, newest line at the bottom, over a strip of product cards. Shows what its screen hands
// it, both halves hidden at first. In landscape both are shown, whatever the screen has asked for. Main thread.
class MVProductChatContainerView final : public UIView,
                                         public MVSystemNotificationHandlerDelegate,
                                         private UITableViewDataSource,
                                         private UITableViewDelegate,
                                         private UICollectionViewDataSource,
                                         private UICollectionViewDelegateFlowLayout {
public:
    explicit MVProductChatContainerView(const CGRect& frame = {});
    ~MVProductChatContainerView() override;

    // The oldest line that was handed over comes into sight and older ones are wanted: once until the next setChatMessages.
    std::function<void()> onRequestToLoadMoreMessage;
    bool isLoadingMoreMessageAllowed = true;

    // The whole chat, in any order. Who reads older lines goes on reading them, unless it is to scroll to the newest one.
    void setChatMessages(ChatMessageList messages, bool isAllMessageLoaded = false, bool scrollToTop = false);
    void assignProductsList(std::vector<std::shared_ptr<BroadcastProduct>> newProducts); // all of them, in any order
    void showHideProducts(bool show); // 0.33 s
    void showHideChatTable(bool show);

    // MVSystemNotificationHandlerDelegate
    void didDeviceOrientationChanged(UIDeviceOrientation newOrientation) override;

protected:
    // UIView
    void layoutSubviews() override;

private:
    // UITableViewDataSource, UITableViewDelegate
    int numberOfRows(UITableView& tableView) override;
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& tableView, int row) override;
    std::string identityForRow(UITableView& tableView, int row) override;
    std::string contentForRow(UITableView& tableView, int row) override;
    void willDisplayRow(UITableView& tableView, int row) override;
    // UICollectionViewDataSource, UICollectionViewDelegateFlowLayout
    int numberOfItems(UICollectionView& collectionView) override;
    std::shared_ptr<UICollectionViewCell> cellForItem(UICollectionView& collectionView, int item) override;
    std::string identityForItem(UICollectionView& collectionView, int item) override;
    std::string contentForItem(UICollectionView& collectionView, int item) override;
    CGSize sizeForItem(UICollectionView& collectionView, int item) override;
    void didSelectItem(UICollectionView& collectionView, int item) override;

    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void showBothHalves();
    void makeRoomForProducts(bool show);

    const std::shared_ptr<UIView> containerView;
    const std::shared_ptr<ChatTableContainerView> chatTableContainerView;
    const std::shared_ptr<UITableView> chatTableView;
    const std::shared_ptr<UICollectionView> productCollectionView;
    std::shared_ptr<NSLayoutConstraint> chatTableContainerBottomConstraint;

    const std::string uniqueIdentifier;
    ChatMessageList chatMessages; // newest first
    std::vector<std::shared_ptr<BroadcastProduct>> products; // featured first
    bool isAllMessageLoaded = false;
    bool isLoadingMoreMessages = false;
    bool isChatShowing = false;
    bool isProductsShowing = false;
    bool showsBoth = false; // as landscape has it
    int productsChanges = 0; // so that only the last change of the strip decides whether it ends hidden
    const std::shared_ptr<char> registration = std::make_shared<char>(); // ends with this view
};

} // namespace mv
