#include "Tests/Support/RawServer.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int pollMilliseconds = 20;

bool isReadable(int socket, int milliseconds)
{
    pollfd wanted { socket, POLLIN, 0 };
    return ::poll(&wanted, 1, milliseconds) > 0;
}

} // namespace

std::string RawServer::Exchange::header(const std::string& name) const
{
    const auto at = head.find("\r\n" + name + ": ");
    if (at == std::string::npos)
        return "";
    const auto start = at + 2 + name.size() + 2;
    return head.substr(start, head.find("\r\n", start) - start);
}

bool RawServer::Exchange::write(const std::string& bytes) const
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const auto count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0 || server->ending)
            return false;
        sent += std::size_t(count);
    }
    return true;
}

void RawServer::Exchange::waitUntilGone() const
{
    char byte = 0;
    while (!server->ending)
        if (isReadable(socket, pollMilliseconds) && ::recv(socket, &byte, 1, 0) <= 0)
            return;
}

void RawServer::Exchange::sleep(double seconds) const
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!server->ending && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

RawServer::RawServer()
    : listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in place {};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof place;
    ::bind(listener, reinterpret_cast<sockaddr*>(&place), length);
    ::listen(listener, 64);
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&place), &length);
    port = ntohs(place.sin_port);
    accepting = std::thread([this] { listen(); });
}

RawServer::~RawServer()
{
    ending = true;
    accepting.join();
    for (auto& thread : serving)
        thread.join();
    ::close(listener);
}

void RawServer::on(const std::string& path, Answer answer)
{
    const std::lock_guard lock(mutex);
    answers[path] = std::move(answer);
}

std::string RawServer::response(
    const std::string& body, const std::string& type, const std::string& headers, const std::string& status)
{
    char date[64];
    const auto now = std::time(nullptr);
    std::tm parts {};
    std::strftime(date, sizeof date, "%a, %d %b %Y %H:%M:%S GMT", ::gmtime_r(&now, &parts));
    return "HTTP/1.1 " + status + "\r\nDate: " + date + "\r\nContent-Type: " + type
        + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

std::string RawServer::address(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port) + path; }

int RawServer::requestCount(const std::string& path) const
{
    const std::lock_guard lock(mutex);
    return int(std::count(requested.begin(), requested.end(), path));
}

std::vector<std::string> RawServer::paths() const
{
    const std::lock_guard lock(mutex);
    return requested;
}

bool RawServer::waitFor(const std::function<bool()>& condition) const
{
    for (int i = 0; i < 1000; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

void RawServer::listen()
{
    while (!ending) {
        if (!isReadable(listener, pollMilliseconds))
            continue;
        const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket >= 0)
            serving.emplace_back([this, socket] { serve(socket); });
    }
}

void RawServer::serve(int socket)
{
    Exchange exchange;
    exchange.server = this;
    exchange.socket = socket;
    while (!ending && exchange.head.find("\r\n\r\n") == std::string::npos) {
        char bytes[2048];
        if (!isReadable(socket, pollMilliseconds))
            continue;
        const auto count = ::recv(socket, bytes, sizeof bytes, 0);
        if (count <= 0)
            break;
        exchange.head.append(bytes, std::size_t(count));
    }
    const auto start = exchange.head.find(' ');
    if (start != std::string::npos) {
        exchange.path = exchange.head.substr(start + 1, exchange.head.find(' ', start + 1) - start - 1);
        Answer answer;
        {
            const std::lock_guard lock(mutex);
            requested.push_back(exchange.path);
            const auto found = answers.find(exchange.path);
            if (found != answers.end())
                answer = found->second;
        }
        answer ? answer(exchange) : void(exchange.write(response("no", "text/plain", {}, "404 Not Found")));
    }
    ::close(socket);
}
