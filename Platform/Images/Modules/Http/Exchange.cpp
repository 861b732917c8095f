#include "Platform/Images/Modules/Http/Exchange.h"

#include "Platform/Images/Modules/Http/Freshness.h"

#include <algorithm>
#include <utility>

namespace platform::http {

namespace {

constexpr gsize chunkBytes = 64 * 1024;

std::string secondsText(double seconds)
{
    char text[32];
    g_snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

} // namespace

Exchange::Exchange(const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done)
    : home(home)
    , id(id)
    , request(std::move(request))
    , done(std::move(done))
    , cancellable(g_cancellable_new())
    , wholeDeadline(g_get_monotonic_time() + gint64(this->request.limits.wholeSeconds * G_USEC_PER_SEC))
{
}

void Exchange::start()
{
    message.reset(soup_message_new(SOUP_METHOD_GET, request.address.c_str()));
    if (!message) {
        tell("is no address for HTTP");
        return end();
    }
    auto* headers = soup_message_get_request_headers(message.get());
    soup_message_headers_append(headers, "Accept", "image/jpeg,image/png,image/svg+xml,image/*;q=0.8");
    if (!request.etag.empty())
        soup_message_headers_append(headers, "If-None-Match", request.etag.c_str());
    if (!request.lastModified.empty())
        soup_message_headers_append(headers, "If-Modified-Since", request.lastModified.c_str());
    g_signal_connect(message.get(), "restarted", G_CALLBACK(didRestart), this);
    timer.reset(g_timeout_source_new(0));
    g_source_set_callback(timer.get(), didTimeOut, this, nullptr);
    rearm();
    g_source_attach(timer.get(), home.context);
    send();
}

void Exchange::cancel()
{
    done = nullptr;
    g_cancellable_cancel(cancellable.get());
}

void Exchange::send()
{
    soup_session_send_async(
        home.soup, message.get(), G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject*, GAsyncResult* result, void* self) { static_cast<Exchange*>(self)->didSend(result); }, this);
}

void Exchange::didSend(GAsyncResult* result)
{
    GError* failure = nullptr;
    stream.reset(soup_session_send_finish(home.soup, result, &failure));
    const Handle<GError> error(failure);
    if (!stream) {
        tell(!problem.empty() ? problem : error ? error->message : "no answer");
        return end();
    }
    if (problem.empty())
        problem = faultOfHead();
    if (!problem.empty()) {
        tell(problem);
        return end();
    }
    if (soup_message_get_status(message.get()) == SOUP_STATUS_NOT_MODIFIED) {
        tell(answer());
        return end();
    }
    rearm();
    readOn();
}

void Exchange::readOn()
{
    g_input_stream_read_bytes_async(
        stream.get(), chunkBytes, G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject*, GAsyncResult* result, void* self) { static_cast<Exchange*>(self)->didRead(result); }, this);
}

void Exchange::didRead(GAsyncResult* result)
{
    GError* failure = nullptr;
    const Handle<GBytes> bytes(g_input_stream_read_bytes_finish(stream.get(), result, &failure));
    const Handle<GError> error(failure);
    if (!bytes) {
        tell(!problem.empty() ? problem : error ? error->message : "the answer broke off");
        return end();
    }
    gsize count = 0;
    const auto* data = static_cast<const std::uint8_t*>(g_bytes_get_data(bytes.get(), &count));
    if (count == 0) {
        tell(answer());
        return end();
    }
    if (body.size() + count > request.limits.bytes) {
        tell("the answer has more than " + std::to_string(request.limits.bytes) + " bytes");
        return end();
    }
    body.insert(body.end(), data, data + count);
    rearm();
    readOn();
}

// Why an answer is none, as far as its status and headers tell.
std::string Exchange::faultOfHead() const
{
    const auto status = soup_message_get_status(message.get());
    const bool asksForChange = !request.etag.empty() || !request.lastModified.empty();
    if (status == SOUP_STATUS_NOT_MODIFIED && asksForChange)
        return {};
    if (status != SOUP_STATUS_OK)
        return "the server answered " + std::to_string(int(status)) + " " + soup_status_get_phrase(status);
    auto* headers = soup_message_get_response_headers(message.get());
    const char* type = soup_message_headers_get_content_type(headers, nullptr);
    if (type && g_ascii_strncasecmp(type, "text/", 5) == 0)
        return "the server sent " + std::string(type);
    if (soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CONTENT_LENGTH
        && std::size_t(soup_message_headers_get_content_length(headers)) > request.limits.bytes)
        return "the answer has more than " + std::to_string(request.limits.bytes) + " bytes";
    return {};
}

void Exchange::giveUp(std::string why)
{
    if (problem.empty())
        problem = std::move(why);
    g_cancellable_cancel(cancellable.get());
}

HttpAnswer Exchange::answer()
{
    auto* headers = soup_message_get_response_headers(message.get());
    const auto header = [headers](const char* name) {
        const char* value = soup_message_headers_get_one(headers, name);
        return std::string(value ? value : "");
    };
    HttpAnswer made;
    made.isUnchanged = soup_message_get_status(message.get()) == SOUP_STATUS_NOT_MODIFIED;
    made.body = std::move(body);
    made.etag = header("ETag");
    made.lastModified = header("Last-Modified");
    made.freshSeconds = freshness(headers);
    // Where it was sent on from may send it elsewhere tomorrow.
    if (made.freshSeconds && redirects > 0)
        made.freshSeconds = 0;
    return made;
}

void Exchange::tell(HttpAnswer made)
{
    if (const auto call = std::exchange(done, nullptr))
        call(std::move(made));
}

void Exchange::tell(std::string why)
{
    HttpAnswer made;
    made.problem = std::move(why);
    tell(std::move(made));
}

void Exchange::end()
{
    if (message)
        g_signal_handlers_disconnect_by_data(message.get(), this);
    home.forget(id); // deletes this
}

void Exchange::rearm()
{
    const auto idleDeadline = g_get_monotonic_time() + gint64(request.limits.idleSeconds * G_USEC_PER_SEC);
    g_source_set_ready_time(timer.get(), std::min(idleDeadline, wholeDeadline));
}

gboolean Exchange::didTimeOut(void* exchange)
{
    auto& self = *static_cast<Exchange*>(exchange);
    const bool isWhole = g_get_monotonic_time() >= self.wholeDeadline;
    self.giveUp(isWhole ? "took longer than " + secondsText(self.request.limits.wholeSeconds)
                        : "no sign of life for " + secondsText(self.request.limits.idleSeconds));
    return G_SOURCE_REMOVE;
}

void Exchange::didRestart(SoupMessage*, void* exchange)
{
    auto& self = *static_cast<Exchange*>(exchange);
    if (++self.redirects > self.request.limits.redirects)
        self.giveUp("more than " + std::to_string(self.request.limits.redirects) + " redirections");
}

} // namespace platform::http
