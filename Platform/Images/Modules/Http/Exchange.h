#pragma once

#include "Platform/Images/HttpModule.h"

#include <cstdint>
#include <functional>
#include <memory>

struct _GMainContext;
struct _SoupSession;

namespace platform::http {

// What an exchange needs of the session that it belongs to, on the session's thread.
struct ExchangeHome {
    _SoupSession* soup = nullptr;
    _GMainContext* context = nullptr;
    std::function<void(std::uint64_t id)> forget; // destroys the exchange
};

// A request on its way. Lives on the session's thread, from its start until the library has called back for the last time.
class Exchange {
public:
    virtual ~Exchange() = default;
    virtual void start() = 0;
    virtual void cancel() = 0; // nobody is told any more

    // `home` outlives it.
    static std::unique_ptr<Exchange> make(
        const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done);
};

} // namespace platform::http
