#include "Service/MVBroadcast.h"

#include "Service/MVServiceDelivery.h"

namespace mv {

void MVBroadcast::startWatching(SuccessCompletion completion)
{
    performStartWatching(deliveredOnce("startWatching", std::move(completion)));
}

void MVBroadcast::stopWatching(SuccessCompletion completion)
{
    performStopWatching(deliveredOnce("stopWatching", std::move(completion)));
}

void MVBroadcast::startWatchingBroadcastConversation(SuccessCompletion completion)
{
    performStartWatchingConversation(deliveredOnce("startWatchingBroadcastConversation", std::move(completion)));
}

void MVBroadcast::stopWatchingBroadcastConversation(SuccessCompletion completion)
{
    performStopWatchingConversation(deliveredOnce("stopWatchingBroadcastConversation", std::move(completion)));
}

void MVBroadcast::loadChatMessages(const MVGetMessagesQueryBuilder& queryBuilder, MessagesCompletion completion)
{
    performLoadChatMessages(queryBuilder, deliveredOnce("loadChatMessages", std::move(completion)));
}

void MVBroadcast::sendMessage(const std::string& message, MessageCompletion completion)
{
    performSendMessage(message, deliveredOnce("sendMessage", std::move(completion)));
}

void MVBroadcast::addReaction(const std::string& reaction, SuccessCompletion completion)
{
    performAddReaction(reaction, deliveredOnce("addReaction", std::move(completion)));
}

void MVBroadcast::performStartWatching(SuccessCompletion completion) { completion(false, noServiceError()); }

void MVBroadcast::performStopWatching(SuccessCompletion completion) { completion(false, noServiceError()); }

void MVBroadcast::performStartWatchingConversation(SuccessCompletion completion) { completion(false, noServiceError()); }

void MVBroadcast::performStopWatchingConversation(SuccessCompletion completion) { completion(false, noServiceError()); }

void MVBroadcast::performLoadChatMessages(const MVGetMessagesQueryBuilder&, MessagesCompletion completion)
{
    completion(std::nullopt, noServiceError());
}

void MVBroadcast::performSendMessage(const std::string&, MessageCompletion completion) { completion(nullptr, noServiceError()); }

void MVBroadcast::performAddReaction(const std::string&, SuccessCompletion completion) { completion(false, noServiceError()); }

} // namespace mv
