#include "UI/Common/Models/ChatMessage.h"

namespace mv {

namespace {

std::optional<std::string> presenterId(const MVBroadcast& broadcast)
{
    if (!broadcast.hosts || broadcast.hosts->empty() || !broadcast.hosts->front())
        return std::nullopt;
    return broadcast.hosts->front()->userId;
}

} // namespace

std::optional<ChatMessage> makeChatMessage(const std::shared_ptr<const MVMessage>& message, const MVBroadcast& broadcast)
{
    if (!message || message->isDeleted != false)
        return std::nullopt;
    if (!message->id || !message->body)
        return std::nullopt;
    if (message->conversationId != broadcast.conversationId) // absent equals absent, here and for the presenter
        return std::nullopt;

    ChatMessage line;
    line.id = message->id;
    line.commentText = message->body;
    line.owner = message->owner ? message->owner->displayName.value_or("") : "";
    line.isHostOwner = message->ownerId == presenterId(broadcast);
    if (message->createdAt)
        line.createdAt = *message->createdAt;
    return line;
}

} // namespace mv
