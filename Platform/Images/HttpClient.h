#pragma once

#include "Platform/Images/HttpModule.h"

#include <atomic>
#include <memory>

namespace platform {

// The way to the HTTP module, which it loads at the first request, on a thread of its own since that takes tens of milliseconds.
class HttpClient {
public:
    // Somebody's wish, shared with whoever may take it back.
    struct Ticket {
        std::atomic<bool> isOver = false; // done or cancelled
        std::atomic<std::uint64_t> id = 0;
    };

    HttpClient();
    ~HttpClient(); // cancels what is under way
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    // Done is called on any thread, once, unless the ticket was cancelled before. Any thread.
    void get(const std::shared_ptr<Ticket>& ticket, HttpRequest request, HttpSession::Done done);
    void cancel(Ticket& ticket);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
