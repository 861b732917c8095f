#include "Showroom/Server/MediaServer.h"

#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Showroom/Server/MediaServerModule.h"

#include <cerrno>
#include <cstring>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace showroom {

using namespace platform;

namespace {

// So that addresses, and what the disk keeps under them, are the same at the next start. Where it is taken any other will do.
constexpr int preferredPort = 47817;
constexpr int waitingConnections = 64;

bool bindTo(int socket, int port)
{
    sockaddr_in place {};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    place.sin_port = htons(std::uint16_t(port));
    return ::bind(socket, reinterpret_cast<sockaddr*>(&place), sizeof place) == 0 && ::listen(socket, waitingConnections) == 0;
}

int portOf(int socket)
{
    sockaddr_in place {};
    socklen_t length = sizeof place;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&place), &length);
    return ntohs(place.sin_port);
}

} // namespace

struct MediaServer::Impl {
    int listener = -1;
    int port = 0;
    std::unique_ptr<ServedFolder> served; // set by the thread
    std::thread opener;
};

std::unique_ptr<MediaServer> MediaServer::start(const std::string& folder)
{
    std::unique_ptr<MediaServer> server(new MediaServer);
    Impl& impl = *server->impl;
    for (const int port : { preferredPort, 0 }) {
        impl.listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const int yes = 1; // a port that an earlier start has just left
        ::setsockopt(impl.listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        if (impl.listener >= 0 && bindTo(impl.listener, port))
            break;
        if (port == 0) {
            NSLog("the shop's pictures are not served: " + std::string(std::strerror(errno)));
            return nullptr;
        }
        ::close(impl.listener);
    }
    impl.port = portOf(impl.listener);
    // Connections wait in the socket's queue until the library is there.
    impl.opener = std::thread([&impl, folder] {
        auto* module = loadModule<MediaServerModule>("media_server");
        std::string reason = "its module is not there";
        if (module)
            impl.served = module->serve(impl.listener, folder, reason);
        if (impl.served)
            return;
        NSLog("the shop's pictures are not served: " + reason);
        ::shutdown(impl.listener, SHUT_RDWR); // whoever asks is refused instead of kept waiting
    });
    return server;
}

MediaServer::MediaServer()
    : impl(std::make_unique<Impl>())
{
}

MediaServer::~MediaServer()
{
    if (impl->opener.joinable())
        impl->opener.join();
    impl->served = nullptr;
    if (impl->listener >= 0)
        ::close(impl->listener);
}

std::string MediaServer::address() const { return "http://127.0.0.1:" + std::to_string(impl->port) + "/"; }

} // namespace showroom
