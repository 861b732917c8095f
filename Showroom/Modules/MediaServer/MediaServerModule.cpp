#include "Showroom/Server/MediaServerModule.h"

#include "Platform/Foundation/ModuleExport.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace showroom {

namespace {

namespace fs = std::filesystem;

struct Unref {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(GMappedFile* file) const { g_mapped_file_unref(file); }
    void operator()(GBytes* bytes) const { g_bytes_unref(bytes); }
    void operator()(GDateTime* date) const { g_date_time_unref(date); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(char* text) const { g_free(text); }
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

// What is served at all. Null for other kinds of files.
const char* contentType(const fs::path& file)
{
    struct Kind {
        const char* extension;
        const char* type;
    };
    constexpr Kind kinds[] = { { ".jpg", "image/jpeg" }, { ".png", "image/png" }, { ".svg", "image/svg+xml" },
        { ".mp4", "video/mp4" }, { ".webm", "video/webm" } };
    for (const auto& kind : kinds)
        if (file.extension() == kind.extension)
            return kind.type;
    return nullptr;
}

// The file that an address's path means; nothing for one that leaves the folder, also by a link, or for anything but a file.
std::optional<fs::path> fileFor(const fs::path& folder, const char* encodedPath)
{
    const Handle<char> path(g_uri_unescape_string(encodedPath, "/"));
    if (!path || path.get()[0] != '/')
        return std::nullopt;
    std::error_code problem;
    const auto file = fs::canonical(folder / (path.get() + 1), problem);
    if (problem || !fs::is_regular_file(file, problem))
        return std::nullopt;
    const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return end == folder.end() ? std::optional(file) : std::nullopt;
}

class Server final : public ServedFolder {
public:
    Server(int listener, const std::string& folder, std::string& reason)
        : context(g_main_context_new())
        , loop(g_main_loop_new(context.get(), FALSE))
    {
        std::error_code problem;
        root = fs::canonical(folder, problem);
        if (problem) {
            reason = problem.message();
            return;
        }
        g_main_context_push_thread_default(context.get());
        listen(listener, reason);
        g_main_context_pop_thread_default(context.get());
        if (isListening)
            thread = std::thread([this] { run(); });
    }

    ~Server() override
    {
        if (!thread.joinable())
            return;
        auto* source = g_idle_source_new();
        g_source_set_callback(
            source,
            [](void* running) -> gboolean {
                g_main_loop_quit(static_cast<GMainLoop*>(running));
                return G_SOURCE_REMOVE;
            },
            loop.get(), nullptr);
        g_source_attach(source, context.get());
        g_source_unref(source);
        thread.join();
    }

    bool works() const { return isListening; }

private:
    void listen(int listener, std::string& reason)
    {
        GError* failure = nullptr;
        const Handle<GSocket> socket(g_socket_new_from_fd(::dup(listener), &failure));
        if (socket) {
            server.reset(soup_server_new(nullptr, nullptr));
            soup_server_add_handler(
                server.get(), "/",
                [](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, void* self) {
                    static_cast<Server*>(self)->answer(message);
                },
                this, nullptr);
            isListening = soup_server_listen_socket(server.get(), socket.get(), SoupServerListenOptions(0), &failure);
        }
        if (const Handle<GError> error(failure); error)
            reason = error->message;
    }

    void run()
    {
        g_main_context_push_thread_default(context.get());
        g_main_loop_run(loop.get());
        soup_server_disconnect(server.get());
        server = nullptr;
        while (g_main_context_iteration(context.get(), FALSE)) { } // what the library still has to close
        g_main_context_pop_thread_default(context.get());
    }

    // The library cuts out ranges and leaves the body of an answer to HEAD away by itself.
    void answer(SoupServerMessage* message)
    {
        const char* method = soup_server_message_get_method(message);
        if (method != SOUP_METHOD_GET && method != SOUP_METHOD_HEAD)
            return soup_server_message_set_status(message, SOUP_STATUS_METHOD_NOT_ALLOWED, nullptr);
        const auto file = fileFor(root, g_uri_get_path(soup_server_message_get_uri(message)));
        const char* type = file ? contentType(*file) : nullptr;
        struct stat status { };
        if (!type || ::stat(file->c_str(), &status) != 0)
            return soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);

        auto* headers = soup_server_message_get_response_headers(message);
        char etag[64];
        g_snprintf(etag, sizeof etag, "\"%llx-%llx\"", static_cast<unsigned long long>(status.st_size),
            static_cast<unsigned long long>(status.st_mtim.tv_sec) * 1'000'000'000ULL
                + static_cast<unsigned long long>(status.st_mtim.tv_nsec));
        const Handle<GDateTime> changed(g_date_time_new_from_unix_utc(status.st_mtim.tv_sec));
        const Handle<char> changedText(soup_date_time_to_string(changed.get(), SOUP_DATE_HTTP));
        soup_message_headers_append(headers, "ETag", etag);
        soup_message_headers_append(headers, "Last-Modified", changedText.get());
        soup_message_headers_append(headers, "Cache-Control", "no-cache"); // kept, but asked about: a build may paint anew
        const char* known = soup_message_headers_get_list(soup_server_message_get_request_headers(message), "If-None-Match");
        if (known && g_strcmp0(known, etag) == 0)
            return soup_server_message_set_status(message, SOUP_STATUS_NOT_MODIFIED, nullptr);

        const Handle<GMappedFile> content(g_mapped_file_new(file->c_str(), FALSE, nullptr));
        if (!content)
            return soup_server_message_set_status(message, SOUP_STATUS_NOT_FOUND, nullptr);
        const Handle<GBytes> bytes(g_mapped_file_get_bytes(content.get()));
        soup_message_headers_set_content_type(headers, type, nullptr);
        soup_message_body_append_bytes(soup_server_message_get_response_body(message), bytes.get());
        soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
    }

    const Handle<GMainContext> context;
    const Handle<GMainLoop> loop;
    Handle<SoupServer> server;
    fs::path root;
    bool isListening = false;
    std::thread thread;
};

class Module final : public MediaServerModule {
public:
    std::unique_ptr<ServedFolder> serve(int listener, const std::string& folder, std::string& reason) override
    {
        auto server = std::make_unique<Server>(listener, folder, reason);
        return server->works() ? std::move(server) : nullptr;
    }
};

} // namespace

} // namespace showroom

MIVORA_EXPORT_MODULE(showroom::MediaServerModule, showroom::Module);
