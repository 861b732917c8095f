#pragma once

#include "Service/MVBroadcast.h"

namespace mv {

// One line of the chat as the panel shows it. Lists of them are newest first everywhere.
struct ChatMessage {
    std::optional<std::string> id; // the service's message; finds duplicates and deletions
    std::optional<std::string> commentText;
    std::optional<std::string> owner; // the author's display name
    bool isHostOwner = false; // the author presents the broadcast
    Date createdAt = Date::now();
    bool operator==(const ChatMessage&) const = default;
};

// The line for a message of the shown broadcast. Absent for no message, one that is deleted or does not say that it is not, one
// without identifier or body, and one of another conversation.
std::optional<ChatMessage> makeChatMessage(const std::shared_ptr<const MVMessage>& message, const MVBroadcast& broadcast);

} // namespace mv
