#include "Platform/Images/HttpClient.h"

#include "Platform/Foundation/ModuleLoader.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {

namespace {

HttpAnswer withoutModule()
{
    HttpAnswer answer;
    answer.problem = "the HTTP module is not there";
    return answer;
}

} // namespace

struct HttpClient::Impl {
    struct Waiting {
        std::uint64_t id;
        HttpRequest request;
        HttpSession::Done done;
    };

    std::thread opener;
    std::mutex mutex; // of what follows
    std::uint64_t lastId = 0;
    std::vector<Waiting> waiting; // for the session
    std::unique_ptr<HttpSession> session;
    bool opened = false; // with a session or without

    void open()
    {
        auto* module = loadModule<HttpModule>("http");
        auto made = module ? module->open() : nullptr;
        std::vector<Waiting> first;
        {
            const std::lock_guard lock(mutex);
            session = std::move(made);
            opened = true;
            first.swap(waiting);
            if (session) {
                for (auto& entry : first)
                    session->get(entry.id, std::move(entry.request), std::move(entry.done));
                return;
            }
        }
        for (auto& entry : first)
            entry.done(withoutModule());
    }
};

HttpClient::HttpClient()
    : impl(std::make_unique<Impl>())
{
}

HttpClient::~HttpClient()
{
    if (impl->opener.joinable())
        impl->opener.join();
}

void HttpClient::get(const std::shared_ptr<Ticket>& ticket, HttpRequest request, HttpSession::Done done)
{
    auto finish = [ticket, done = std::move(done)](HttpAnswer answer) {
        if (!ticket->isOver.exchange(true))
            done(std::move(answer));
    };
    {
        const std::lock_guard lock(impl->mutex);
        if (ticket->isOver)
            return;
        ticket->id = ++impl->lastId;
        if (impl->session)
            return impl->session->get(ticket->id, std::move(request), std::move(finish));
        if (!impl->opened) {
            impl->waiting.push_back({ ticket->id, std::move(request), std::move(finish) });
            if (!impl->opener.joinable())
                impl->opener = std::thread([this] { impl->open(); });
            return;
        }
    }
    finish(withoutModule());
}

void HttpClient::cancel(Ticket& ticket)
{
    if (ticket.isOver.exchange(true))
        return;
    std::vector<Impl::Waiting> dropped; // ends outside the lock
    const std::lock_guard lock(impl->mutex);
    const auto found
        = std::find_if(impl->waiting.begin(), impl->waiting.end(), [&](const auto& entry) { return entry.id == ticket.id; });
    if (found != impl->waiting.end()) {
        dropped.push_back(std::move(*found));
        impl->waiting.erase(found);
    } else if (impl->session && ticket.id != 0) {
        impl->session->cancel(ticket.id);
    }
}

} // namespace platform
