#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

// How much a request may take before it is given up.
struct HttpLimits {
    std::size_t bytes = 0; // of the answer, unpacked
    double idleSeconds = 0; // without a sign of life from the server
    double wholeSeconds = 0;
    int redirects = 0;
};

struct HttpRequest {
    std::string address; // http or https
    HttpLimits limits;
    bool revalidates = false; // asks the server even when the disk has an answer that is still good
};

// What came of a request.
struct HttpAnswer {
    std::vector<std::uint8_t> body;
    std::string problem; // why there is no body; empty when there is one
};

// Requests over one thread and one cache on disk.
class HttpSession {
public:
    using Done = std::function<void(HttpAnswer)>; // on the session's thread, once, unless it was cancelled

    virtual ~HttpSession() = default; // cancels what is under way and leaves the disk cache complete
    // The id is the caller's, never used twice. Any thread.
    virtual void get(std::uint64_t id, HttpRequest request, Done done) = 0;
    // Lets go of `done` soon; no call comes once the session's thread has seen it. Any thread.
    virtual void cancel(std::uint64_t id) = 0;
};

// The HTTP library, loaded at the first http address.
class HttpModule {
public:
    static constexpr const char* moduleInterface = "http 1"; // count up with every change above or below
    virtual ~HttpModule() = default;
    // Answers that may be kept are kept in that folder (made if it is missing, empty text: nowhere), at most so many bytes.
    virtual std::unique_ptr<HttpSession> open(const std::string& cacheFolder, std::size_t cacheBytes) = 0;
};

} // namespace platform
