#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
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
    // What the answer that is known was marked with: the server may say that it has not changed. Empty: none.
    std::string etag;
    std::string lastModified;
};

// What came of a request.
struct HttpAnswer {
    std::string problem; // why there is no answer; empty when there is one
    bool isUnchanged = false; // the known one still holds; there is no body then
    std::vector<std::uint8_t> body;
    std::string etag;
    std::string lastModified;
    // For how long from now it may be shown without asking again; absent: it must not be kept at all.
    std::optional<double> freshSeconds;
};

// Requests over one thread.
class HttpSession {
public:
    using Done = std::function<void(HttpAnswer)>; // on the session's thread, once, unless it was cancelled

    virtual ~HttpSession() = default; // cancels what is under way
    // The id is the caller's, never used twice. Any thread.
    virtual void get(std::uint64_t id, HttpRequest request, Done done) = 0;
    // Lets go of `done` soon. Any thread.
    virtual void cancel(std::uint64_t id) = 0;
};

// The HTTP library, loaded when an http address is not on the disk.
class HttpModule {
public:
    static constexpr const char* moduleInterface = "http 2"; // count up with every change above or below
    virtual ~HttpModule() = default;
    virtual std::unique_ptr<HttpSession> open() = 0;
};

} // namespace platform
