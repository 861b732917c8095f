#include "Platform/Images/Modules/Http/Exchange.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::http {

namespace {

constexpr gsize chunkBytes = 64 * 1024;
constexpr double longestFreshness = 365 * 86400.0; // seconds
constexpr double longestGuess = 86400; // seconds, where the server says no more than when the picture was made

// Lets go of what the library handed out.
struct Unref {
    void operator()(GSource* source) const
    {
        g_source_destroy(source);
        g_source_unref(source);
    }
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

std::string secondsText(double seconds)
{
    char text[32];
    g_snprintf(text, sizeof text, "%g s", seconds);
    return text;
}

// Seconds since 1970 of a header that holds a date; nothing when it is not there or none.
std::optional<double> dateHeader(SoupMessageHeaders* headers, const char* name)
{
    const char* text = soup_message_headers_get_one(headers, name);
    auto* date = text ? soup_date_time_new_from_http_string(text) : nullptr;
    if (!date)
        return std::nullopt;
    const auto seconds = double(g_date_time_to_unix(date));
    g_date_time_unref(date);
    return seconds;
}

// For how many seconds an answer holds from now on, as its headers say; nothing when it must not be kept.
std::optional<double> freshness(SoupMessageHeaders* headers)
{
    const char* control = soup_message_headers_get_list(headers, "Cache-Control");
    const std::unique_ptr<GHashTable, void (*)(GHashTable*)> rules(
        soup_header_parse_param_list(control ? control : ""), soup_header_free_param_list);
    const auto says = [&](const char* rule) { return g_hash_table_contains(rules.get(), rule) == TRUE; };
    const char* vary = soup_message_headers_get_list(headers, "Vary");
    if (says("no-store") || (vary && std::string_view(vary).find('*') != std::string_view::npos))
        return std::nullopt;
    if (says("no-cache"))
        return 0;
    const double now = double(g_get_real_time()) / G_USEC_PER_SEC;
    const double date = dateHeader(headers, "Date").value_or(now);
    double lifetime = 0;
    if (const auto* age = static_cast<const char*>(g_hash_table_lookup(rules.get(), "max-age")))
        lifetime = double(g_ascii_strtoull(age, nullptr, 10));
    else if (soup_message_headers_get_one(headers, "Expires"))
        lifetime = dateHeader(headers, "Expires").value_or(0) - date;
    else if (const auto made = dateHeader(headers, "Last-Modified"))
        lifetime = std::min((date - *made) / 10, longestGuess);
    const char* age = soup_message_headers_get_one(headers, "Age");
    const double passed = age ? double(g_ascii_strtoull(age, nullptr, 10)) : 0;
    return std::clamp(lifetime - passed, 0.0, longestFreshness);
}

class SoupExchange final : public Exchange {
public:
    SoupExchange(const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done);

    void start() override;
    void cancel() override;

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

SoupExchange::SoupExchange(const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done)
    : home(home)
    , id(id)
    , request(std::move(request))
    , done(std::move(done))
    , cancellable(g_cancellable_new())
    , wholeDeadline(g_get_monotonic_time() + gint64(this->request.limits.wholeSeconds * G_USEC_PER_SEC))
{
}

void SoupExchange::start()
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

void SoupExchange::cancel()
{
    done = nullptr;
    g_cancellable_cancel(cancellable.get());
}

void SoupExchange::send()
{
    soup_session_send_async(
        home.soup, message.get(), G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject*, GAsyncResult* result, void* self) { static_cast<SoupExchange*>(self)->didSend(result); }, this);
}

void SoupExchange::didSend(GAsyncResult* result)
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

void SoupExchange::readOn()
{
    g_input_stream_read_bytes_async(
        stream.get(), chunkBytes, G_PRIORITY_DEFAULT, cancellable.get(),
        [](GObject*, GAsyncResult* result, void* self) { static_cast<SoupExchange*>(self)->didRead(result); }, this);
}

void SoupExchange::didRead(GAsyncResult* result)
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
std::string SoupExchange::faultOfHead() const
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

void SoupExchange::giveUp(std::string why)
{
    if (problem.empty())
        problem = std::move(why);
    g_cancellable_cancel(cancellable.get());
}

HttpAnswer SoupExchange::answer()
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

void SoupExchange::tell(HttpAnswer made)
{
    if (const auto call = std::exchange(done, nullptr))
        call(std::move(made));
}

void SoupExchange::tell(std::string why)
{
    HttpAnswer made;
    made.problem = std::move(why);
    tell(std::move(made));
}

void SoupExchange::end()
{
    if (message)
        g_signal_handlers_disconnect_by_data(message.get(), this);
    home.forget(id); // deletes this
}

void SoupExchange::rearm()
{
    const auto idleDeadline = g_get_monotonic_time() + gint64(request.limits.idleSeconds * G_USEC_PER_SEC);
    g_source_set_ready_time(timer.get(), std::min(idleDeadline, wholeDeadline));
}

gboolean SoupExchange::didTimeOut(void* exchange)
{
    auto& self = *static_cast<SoupExchange*>(exchange);
    const bool isWhole = g_get_monotonic_time() >= self.wholeDeadline;
    self.giveUp(isWhole ? "took longer than " + secondsText(self.request.limits.wholeSeconds)
                        : "no sign of life for " + secondsText(self.request.limits.idleSeconds));
    return G_SOURCE_REMOVE;
}

void SoupExchange::didRestart(SoupMessage*, void* exchange)
{
    auto& self = *static_cast<SoupExchange*>(exchange);
    if (++self.redirects > self.request.limits.redirects)
        self.giveUp("more than " + std::to_string(self.request.limits.redirects) + " redirections");
}

} // namespace

std::unique_ptr<Exchange> Exchange::make(const ExchangeHome& home, std::uint64_t id, HttpRequest request, HttpSession::Done done)
{
    return std::make_unique<SoupExchange>(home, id, std::move(request), std::move(done));
}

} // namespace platform::http
