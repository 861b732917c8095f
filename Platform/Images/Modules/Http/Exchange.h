#pragma once

#include "Platform/Images/HttpModule.h"
#include "Platform/Images/Modules/Http/SoupHandle.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace platform::http {

// What an exchange needs of the session that it belongs to, on the session's thread.
struct ExchangeHome {
    SoupSession* soup = nullptr;
    GMainContext* context = nullptr;
    std::function<void(std::uint64_t id)> forget; // destroys the exchange
};

// A request on its way. Lives on the session's thread, from its start until the library has called back for the last time.
class Exchange {
public:
    Exchange(const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done);

    void start();
    // Nobody is told any more.
    void cancel();

private:
    void send();
    void didSend(GAsyncResult* result);
    void readOn();
    void didRead(GAsyncResult* result);
    std::string faultOfHead() const;
    void giveUp(std::string problem); // ends when the library has let go
    HttpAnswer answer();
    void tell(HttpAnswer answer);
    void tell(std::string problem);
    void end();
    void rearm();
    static gboolean didTimeOut(void* exchange);
    static void didRestart(SoupMessage*, void* exchange);

    const ExchangeHome& home;
    const std::uint64_t id;
    const HttpRequest request;
    HttpSession::Done done; // empty once told or cancelled
    Handle<SoupMessage> message;
    Handle<GInputStream> stream;
    const Handle<GCancellable> cancellable;
    Handle<GSource> timer;
    std::vector<std::uint8_t> body;
    std::string problem; // why it is being given up
    gint64 wholeDeadline = 0; // microseconds of the monotonic clock
    int redirects = 0;
};

} // namespace platform::http
