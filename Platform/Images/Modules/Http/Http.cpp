#include "Platform/Images/Modules/Http/Exchange.h"

#include "Platform/Foundation/ModuleExport.h"

#include <libsoup/soup.h>

#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace platform::http {

namespace {

constexpr int mostConnections = 12;
constexpr int mostConnectionsToOneHost = 6; // as browsers have it

struct Unref {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
    void operator()(SoupSession* session) const { g_object_unref(session); }
};
template <typename T> using Handle = std::unique_ptr<T, Unref>;

class Session final : public HttpSession {
public:
    Session()
        : context(g_main_context_new())
        , loop(g_main_loop_new(context.get(), FALSE))
        , thread([this] { run(); })
    {
    }

    ~Session() override
    {
        post([this] { g_main_loop_quit(loop.get()); });
        thread.join();
    }

    void get(std::uint64_t id, HttpRequest request, Done done) override
    {
        post([this, id, request = std::move(request), done = std::move(done)] {
            auto& exchange = exchanges[id];
            exchange = Exchange::make(home, id, request, done);
            exchange->start();
        });
    }

    void cancel(std::uint64_t id) override
    {
        post([this, id] {
            if (const auto found = exchanges.find(id); found != exchanges.end())
                found->second->cancel();
        });
    }

private:
    using Task = std::function<void()>;

    // In the order of posting, on the thread.
    void post(Task task)
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
        if (tasks.size() > 1)
            return; // the thread has been told
        auto* source = g_idle_source_new();
        g_source_set_priority(source, G_PRIORITY_DEFAULT);
        g_source_set_callback(
            source,
            [](void* session) -> gboolean {
                static_cast<Session*>(session)->runTasks();
                return G_SOURCE_REMOVE;
            },
            this, nullptr);
        g_source_attach(source, context.get());
        g_source_unref(source); // which the context holds
    }

    void runTasks()
    {
        std::vector<Task> taken;
        {
            const std::lock_guard lock(mutex);
            taken.swap(tasks);
        }
        for (const auto& task : taken)
            task();
    }

    void run()
    {
        g_main_context_push_thread_default(context.get());
        // Exchanges keep their own time.
        session.reset(soup_session_new_with_options("max-conns", mostConnections, "max-conns-per-host", mostConnectionsToOneHost,
            "timeout", 0u, "idle-timeout", 30u, "accept-language-auto", TRUE, nullptr));
        home = { session.get(), context.get(), [this](std::uint64_t id) { exchanges.erase(id); } };
        g_main_loop_run(loop.get());
        for (const auto& [id, exchange] : exchanges)
            exchange->cancel();
        while (!exchanges.empty())
            g_main_context_iteration(context.get(), TRUE);
        session = nullptr;
        while (g_main_context_iteration(context.get(), FALSE)) { } // what the library still has to close
        g_main_context_pop_thread_default(context.get());
    }

    const Handle<GMainContext> context;
    const Handle<GMainLoop> loop;
    Handle<SoupSession> session;
    ExchangeHome home;
    std::map<std::uint64_t, std::unique_ptr<Exchange>> exchanges;
    std::mutex mutex; // of the tasks
    std::vector<Task> tasks;
    std::thread thread; // the last member, since it uses the others
};

class Http final : public HttpModule {
public:
    std::unique_ptr<HttpSession> open() override { return std::make_unique<Session>(); }
};

} // namespace

} // namespace platform::http

MIVORA_EXPORT_MODULE(platform::HttpModule, platform::http::Http);
