#pragma once

#include <memory>
#include <string>

namespace showroom {

// A folder that is being served. Destroying it ends that.
class ServedFolder {
public:
    virtual ~ServedFolder() = default;
};

// The HTTP library's server, loaded by MediaServer.
class MediaServerModule {
public:
    static constexpr const char* moduleInterface = "media_server 1"; // count up with every change above or below
    virtual ~MediaServerModule() = default;
    // Answers what arrives at that listening socket (which stays the caller's) on a thread of its own. Null, with the reason,
    // when it cannot.
    virtual std::unique_ptr<ServedFolder> serve(int listener, const std::string& folder, std::string& reason) = 0;
};

} // namespace showroom
