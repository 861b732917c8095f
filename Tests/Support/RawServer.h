#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A server on the loopback that answers byte by byte as a test says, honestly or not.
class RawServer {
public:
    // A connection on which a request has arrived. Writes are silent once the other side is gone.
    class Exchange {
    public:
        std::string path;
        std::string head; // request line and headers
        std::string header(const std::string& name) const; // of the request; "" for none
        bool write(const std::string& bytes) const; // false when the other side is gone
        void waitUntilGone() const; // until the other side closes, or the server ends
        void sleep(double seconds) const; // shorter when the server ends

    private:
        friend class RawServer;
        RawServer* server = nullptr;
        int socket = -1;
    };
    using Answer = std::function<void(const Exchange&)>;

    RawServer();
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    // What follows a request for that path; the connection is closed after it. Others get a 404.
    void on(const std::string& path, Answer answer);
    // A well-formed answer with that body.
    static std::string response(const std::string& body, const std::string& type = "image/png", const std::string& headers = {},
        const std::string& status = "200 OK");

    std::string address(const std::string& path) const; // "http://127.0.0.1:PORT" and the path
    int requestCount(const std::string& path) const;
    std::vector<std::string> paths() const; // of all requests, in their order
    bool waitFor(const std::function<bool()>& condition) const; // up to 5 s

private:
    void listen();
    void serve(int socket);

    int listener = -1;
    int port = 0;
    mutable std::mutex mutex;
    std::map<std::string, Answer> answers;
    std::vector<std::string> requested;
    std::atomic<bool> ending = false;
    std::thread accepting;
    std::vector<std::thread> serving;
};
