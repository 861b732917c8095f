#pragma once

#include "Platform/Foundation/Date.h"
#include "Platform/Foundation/URL.h"
#include "Service/MVEnumerations.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace mv {

struct MVUser {
    std::optional<std::string> id;
    std::optional<std::string> displayName;
    bool operator==(const MVUser&) const = default;
};

// Who presents a broadcast. Shared: a change by one holder is seen by all.
struct MVHost {
    std::optional<std::string> userId;
    std::optional<std::uint32_t> rtcUserId; // the host's number in the video channel
    std::optional<MVUser> user;
};

// One chat message as the service knows it. Immutable once handed out, held as `std::shared_ptr<const MVMessage>`.
struct MVMessage {
    std::optional<std::string> id;
    std::optional<std::string> body; // the comment
    std::optional<MVUser> owner;
    std::optional<std::string> ownerId;
    std::optional<Date> createdAt;
    std::optional<std::string> conversationId;
    std::optional<bool> isDeleted;
};

struct MVProduct {
    std::optional<std::string> id;
    std::optional<std::string> title;
    std::optional<URL> thumbnailUrl;
    std::optional<URL> productUrl;
    std::optional<bool> isFeatured;
};

// Why an operation failed.
struct MVApiError {
    std::optional<std::string> errorCode;
    std::optional<std::string> errorMessage;
    std::optional<int> statusCode;
    bool operator==(const MVApiError&) const = default;
};

// What a stream error or general error event carries.
struct MVError {
    std::string errorMessage;
};

// Asks for a page of broadcasts.
struct MVBroadCastsListQueryBuilder {
    int limit = 30; // broadcasts
    int skip = 0; // broadcasts
    std::optional<MVBroadcastStatus> status; // absent: of any status
    std::optional<MVBroadCastListSortOrder> sort; // by start time; absent: the service's own order
};

// Asks for a page of chat messages, newest first.
struct MVGetMessagesQueryBuilder {
    std::optional<int> limit; // messages; absent: the service's own page size
    std::optional<int> skip; // messages; absent: 0
};

} // namespace mv
