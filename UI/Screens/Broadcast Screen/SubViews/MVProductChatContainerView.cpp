#include "UI/Screens/Broadcast Screen/SubViews/MVProductChatContainerView.h"

#include "Main/MivoraUINotification.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/UUID.h"
#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Screens/Broadcast Screen/SubViews/ChatTableContainerView.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVBroadcastLayout2ChatCell.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVProductListCollectionCell.h"

#include <algorithm>
#include <sstream>

namespace mv {

namespace {

constexpr double showHideDuration = 0.33; // seconds
constexpr CGFloat productsHeight = 100; // points
constexpr double lineHeight = 36; // points of a message of one line
const CGAffineTransform upsideDown = CGAffineTransform::scale(1, -1);

std::string addressOf(const void* object)
{
    std::ostringstream address;
    address << object;
    return address.str();
}

} // namespace

MVProductChatContainerView::MVProductChatContainerView(const CGRect& frame)
    : UIView(frame)
    , containerView(make<UIView>())
    , chatTableContainerView(make<ChatTableContainerView>())
    , chatTableView(make<UITableView>())
    , productCollectionView(make<UICollectionView>())
    , uniqueIdentifier(makeUUID())
{
    configureSubViewsProperties();
    setUpViews();
    setUpViewsConstraints();
    // They want an owner to refer to weakly, and this view has none before its constructor has ended.
    const auto referredTo = [this]<typename Role>(Role* role) { return std::shared_ptr<Role>(registration, role); };
    chatTableView->setDataSource(referredTo(static_cast<UITableViewDataSource*>(this)));
    chatTableView->setDelegate(referredTo(static_cast<UITableViewDelegate*>(this)));
    productCollectionView->setDataSource(referredTo(static_cast<UICollectionViewDataSource*>(this)));
    productCollectionView->setDelegate(referredTo(static_cast<UICollectionViewDelegateFlowLayout*>(this)));
    MVSystemNotificationHandler::instance().addDelegate(
        uniqueIdentifier, referredTo(static_cast<MVSystemNotificationHandlerDelegate*>(this)));
}

MVProductChatContainerView::~MVProductChatContainerView()
{
    MVSystemNotificationHandler::instance().removeDelegate(uniqueIdentifier);
}

void MVProductChatContainerView::setChatMessages(ChatMessageList messages, bool allMessagesLoaded, bool scrollToTop)
{
    isLoadingMoreMessages = false;
    isAllMessageLoaded = allMessagesLoaded;
    chatMessages = std::move(messages);
    chatMessages.sortByDate();
    chatTableView->reloadData();
    if (scrollToTop && !chatMessages.isEmpty())
        chatTableView->scrollToRow(0, false);
}

void MVProductChatContainerView::assignProductsList(std::vector<std::shared_ptr<BroadcastProduct>> newProducts)
{
    products = std::move(newProducts);
    std::erase(products, nullptr);
    std::stable_partition(products.begin(), products.end(), [](const auto& product) { return product->isFeatured; });
    productCollectionView->reloadData();
    if (showsBoth)
        makeRoomForProducts(true);
}

void MVProductChatContainerView::showHideProducts(bool show)
{
    isProductsShowing = show;
    showsBoth = false;
    if (show && productCollectionView->alpha() != 1) {
        productCollectionView->setAlpha(0);
        productCollectionView->setHidden(false);
    }
    const int change = ++productsChanges;
    UIView::animate(
        showHideDuration,
        [&] {
            productCollectionView->setAlpha(show ? 1 : 0);
            makeRoomForProducts(show);
            layoutIfNeeded();
        },
        [weakSelf = weak(this), show, change](bool) {
            const auto self = weakSelf.lock();
            if (self && change == self->productsChanges)
                self->productCollectionView->setHidden(!show);
        });
}

void MVProductChatContainerView::showHideChatTable(bool show)
{
    isChatShowing = show;
    UIView::animate(showHideDuration, [&] { chatTableContainerView->setAlpha(show ? 1 : 0); });
}

void MVProductChatContainerView::didDeviceOrientationChanged(UIDeviceOrientation newOrientation)
{
    switch (newOrientation) {
    case UIDeviceOrientation::faceUp:
    case UIDeviceOrientation::faceDown:
        NSLog("UnSupported Orientation");
        break;
    case UIDeviceOrientation::landscapeLeft:
    case UIDeviceOrientation::landscapeRight:
        showBothHalves();
        break;
    default:
        showHideProducts(isProductsShowing);
        showHideChatTable(isChatShowing);
    }
}

void MVProductChatContainerView::layoutSubviews()
{
    UIView::layoutSubviews();
    containerView->layoutIfNeeded();
}

int MVProductChatContainerView::numberOfRows(UITableView& /*tableView*/) { return int(chatMessages.size()); }

std::shared_ptr<UITableViewCell> MVProductChatContainerView::cellForRow(UITableView& tableView, int row)
{
    const auto cell = std::static_pointer_cast<MVBroadcastLayout2ChatCell>(
        tableView.dequeueReusableCell(MVBroadcastLayout2ChatCell::identifier));
    cell->assignMessage(chatMessages[std::size_t(row)]);
    cell->setTransform(upsideDown); // upright in the table, which is upside down
    return cell;
}

std::string MVProductChatContainerView::identityForRow(UITableView& /*tableView*/, int row)
{
    const ChatMessage& message = chatMessages[std::size_t(row)];
    return message.id ? *message.id : addressOf(&message);
}

std::string MVProductChatContainerView::contentForRow(UITableView& /*tableView*/, int row)
{
    constexpr char separator = '\0';
    const ChatMessage& message = chatMessages[std::size_t(row)];
    return (message.isHostOwner ? "host" : "") + (separator + message.owner.value_or("")) + separator
        + message.commentText.value_or("");
}

void MVProductChatContainerView::willDisplayRow(UITableView& /*tableView*/, int row)
{
    if (std::size_t(row) + 1 != chatMessages.size() || isAllMessageLoaded || isLoadingMoreMessages
        || !isLoadingMoreMessageAllowed)
        return;
    isLoadingMoreMessages = true;
    const auto request = onRequestToLoadMoreMessage; // which may replace it, or drop the panel
    if (request)
        request();
    NSLog("Load More messages");
}

int MVProductChatContainerView::numberOfItems(UICollectionView& /*collectionView*/) { return int(products.size()); }

std::shared_ptr<UICollectionViewCell> MVProductChatContainerView::cellForItem(UICollectionView& collectionView, int item)
{
    const auto cell = std::static_pointer_cast<MVProductListCollectionCell>(
        collectionView.dequeueReusableCell(MVProductListCollectionCell::identifier));
    const BroadcastProduct& shown = *products[std::size_t(item)];
    cell->assignProduct(shown.product);
    cell->setFeatured(shown.isFeatured);
    return cell;
}

// A product stays the same card when the service sends it anew; one without an identifier is known by its object.
std::string MVProductChatContainerView::identityForItem(UICollectionView& /*collectionView*/, int item)
{
    const auto& product = products[std::size_t(item)]->product;
    return product->id ? *product->id : addressOf(product.get());
}

std::string MVProductChatContainerView::contentForItem(UICollectionView& /*collectionView*/, int item)
{
    constexpr char separator = '\0';
    const BroadcastProduct& shown = *products[std::size_t(item)];
    const auto& picture = shown.product->thumbnailUrl;
    return (shown.isFeatured ? "featured" : "") + (separator + shown.product->title.value_or("")) + separator
        + (picture ? picture->absoluteString() : "");
}

CGSize MVProductChatContainerView::sizeForItem(UICollectionView& collectionView, int /*item*/)
{
    return { collectionView.bounds().width * 0.8, collectionView.bounds().height };
}

void MVProductChatContainerView::didSelectItem(UICollectionView& /*collectionView*/, int item)
{
    const auto chosen = products[std::size_t(item)]->product;
    postProductTapped(*chosen);
}

void MVProductChatContainerView::configureSubViewsProperties()
{
    chatTableContainerView->setAlpha(0);
    chatTableView->setTransform(upsideDown); // so that row 0 is at the bottom
    chatTableView->setEstimatedRowHeight(lineHeight);
    chatTableView->registerCell<MVBroadcastLayout2ChatCell>(MVBroadcastLayout2ChatCell::identifier);
    productCollectionView->collectionViewLayout()->setMinimumLineSpacing(0);
    productCollectionView->setContentInset({ 0, 5, 0, 5 });
    productCollectionView->registerCell<MVProductListCollectionCell>(MVProductListCollectionCell::identifier);
    productCollectionView->setHidden(true);
}

void MVProductChatContainerView::setUpViews()
{
    struct Named {
        const std::shared_ptr<UIView> view;
        const char* name;
    };
    for (const auto& [view, name] :
        { Named { containerView, "containerView" }, { chatTableContainerView, "chatTableContainerView" },
            { chatTableView, "chatTableView" }, { productCollectionView, "productCollectionView" } }) {
        view->setAccessibilityIdentifier(name);
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        view->setBackgroundColor(UIColor::clear());
    }
    addSubview(containerView);
    containerView->addSubview(chatTableContainerView);
    chatTableContainerView->addSubview(chatTableView);
    containerView->addSubview(productCollectionView);
}

// The same in every orientation.
void MVProductChatContainerView::setUpViewsConstraints()
{
    pinEdges(*containerView, *this);
    chatTableContainerBottomConstraint = chatTableContainerView->bottomAnchor().equalTo(containerView->bottomAnchor());
    const auto safeArea = containerView->safeAreaLayoutGuide();
    activate({
        chatTableContainerView->leadingAnchor().equalTo(containerView->leadingAnchor()),
        chatTableContainerView->trailingAnchor().equalTo(containerView->trailingAnchor()),
        chatTableContainerView->topAnchor().equalTo(containerView->topAnchor()),
        chatTableView->leadingAnchor().equalTo(chatTableContainerView->leadingAnchor()),
        chatTableView->trailingAnchor().equalTo(chatTableContainerView->trailingAnchor()),
        chatTableView->topAnchor().equalTo(chatTableContainerView->topAnchor()),
        chatTableView->heightAnchor().equalTo(chatTableContainerView->heightAnchor()),
        productCollectionView->heightAnchor().equalToConstant(productsHeight),
        productCollectionView->leadingAnchor().equalTo(safeArea->leadingAnchor()),
        productCollectionView->trailingAnchor().equalTo(safeArea->trailingAnchor()),
        productCollectionView->topAnchor().equalTo(chatTableContainerView->bottomAnchor()),
        chatTableContainerBottomConstraint,
    });
}

void MVProductChatContainerView::showBothHalves()
{
    showsBoth = true;
    ++productsChanges;
    chatTableContainerView->setAlpha(1);
    productCollectionView->setHidden(false);
    productCollectionView->setAlpha(1);
    productCollectionView->reloadData();
    makeRoomForProducts(true); // or the strip would hang below the panel
}

void MVProductChatContainerView::makeRoomForProducts(bool show)
{
    chatTableContainerBottomConstraint->setConstant(show && !products.empty() ? -productsHeight : 0);
}

} // namespace mv
