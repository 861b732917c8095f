// What the live screen does with the conversation: chat, products, reactions and viewers, as the service tells of them.
#include "Main/MivoraUI.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"

#include <algorithm>

namespace mv {

namespace {

constexpr int firstPage = 50; // messages

} // namespace

void MVMivoraScreenViewController::didRecievedNewMessageInBroadcast(const MVBroadcastNewMessageData& update)
{
    if (!broadcast_)
        return;
    const auto message = makeChatMessage(update.message, *broadcast_);
    if (!message)
        return;
    insertMessage(*message);
    productChatContainerView->setChatMessages(chatMessages);
    refreshButtons();
}

void MVMivoraScreenViewController::didMessageDeletedFromBroadcast(const MVBroadcastMessagesDeletedData& update)
{
    if (!broadcast_ || !update.deletedMessages || update.deletedMessages->empty())
        return;
    const auto& first = update.deletedMessages->front();
    if (!first || first->conversationId != broadcast_->conversationId)
        return;
    for (const auto& message : *update.deletedMessages)
        if (message && message->id && messageIds.erase(*message->id) > 0)
            chatMessages.erase(*message->id);
    productChatContainerView->setChatMessages(chatMessages);
    refreshButtons();
}

void MVMivoraScreenViewController::didWatchersCountUpdated(const MVWatchersUpdateData& update)
{
    if (isShown(update.broadcastId))
        watchersCountView->updateLabelText(std::to_string(update.newWatchersCount.value_or(0)));
}

void MVMivoraScreenViewController::didNewReactionAddedToBroadcast(const MVReactionData& update)
{
    if (!isShown(update.broadcastId))
        return;
    broadcast_->reactionsCountInfo = update.newReactionsCountInfo;
    if (const auto icon = MivoraUI::reactions().image(update.reactionType.value_or("")))
        reactionAnimationView->animate(icon);
}

void MVMivoraScreenViewController::didBroadcastProductFeaturedUnfeatured(const MVProductsFeaturedUnfeaturedData& update)
{
    if (!isShown(update.broadcastId))
        return;
    for (const auto& product : products)
        product->isFeatured = false;
    if (update.updateType == MVProductsFeaturedUpdateType::featured && update.productIds) {
        for (const auto& id : *update.productIds) {
            const auto found = std::ranges::find_if(products, [&](const auto& product) { return product->product->id == id; });
            if (found != products.end())
                (*found)->isFeatured = true;
        }
    }
    productChatContainerView->assignProductsList(products);
}

void MVMivoraScreenViewController::loadInitialMessages()
{
    MVGetMessagesQueryBuilder queryBuilder;
    queryBuilder.limit = firstPage;
    queryBuilder.skip = 0;
    const std::weak_ptr<MVBroadcast> asked = broadcast_;
    broadcast_->loadChatMessages(queryBuilder, [weakSelf = weak(this), asked](const auto& messages, const auto& /*error*/) {
        const auto self = weakSelf.lock();
        if (self && self->isStillWatching(asked))
            self->showFirstPage(messages.value_or(MVBroadcast::MessageList()));
    });
}

void MVMivoraScreenViewController::showFirstPage(const MVBroadcast::MessageList& messages)
{
    std::vector<ChatMessage> page;
    messageIds.clear();
    for (const auto& each : messages) {
        const auto message = broadcast_ ? makeChatMessage(each, *broadcast_) : std::nullopt;
        if (!message)
            continue;
        messageIds.insert(message->id.value_or(""));
        page.push_back(*message);
    }
    chatMessages = ChatMessageList(std::move(page));
    productChatContainerView->setChatMessages(chatMessages);
    bringChatOn();
}

// What came by an event before it came by an answer, or the other way round, is there once.
void MVMivoraScreenViewController::insertMessage(const ChatMessage& message)
{
    if (messageIds.insert(message.id.value_or("")).second)
        chatMessages.insertAtFront(message);
}

void MVMivoraScreenViewController::loadBroadcastProducts()
{
    products = makeBroadcastProducts(broadcast_->getProducts());
    productChatContainerView->assignProductsList(products);
    productChatContainerView->showHideProducts(true);
    rightButtonContainerView->setProductToggleOnOff(true);
    refreshButtons();
}

// Though the viewer may have hidden it.
void MVMivoraScreenViewController::bringChatOn()
{
    showHideChat(true);
    rightButtonContainerView->setChatToggleOnOff(true);
    refreshButtons();
}

void MVMivoraScreenViewController::showHideChat(bool show)
{
    productChatContainerView->showHideChatTable(show);
    streamContainerView->setGradientViewAlpha(show ? 1 : 0);
}

void MVMivoraScreenViewController::refreshButtons()
{
    rightButtonContainerView->setButtonsInitialState(!chatMessages.isEmpty(), !products.empty());
}

} // namespace mv
