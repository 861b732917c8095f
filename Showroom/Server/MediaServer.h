#pragma once

#include <memory>
#include <string>

namespace showroom {

// Serves the shop's pictures and videos on 127.0.0.1, so that the kit loads them as it would from the shop's real servers:
// GET and HEAD, ranges, ETags. It answers for files of those kinds below one folder and for nothing else. Main thread.
class MediaServer {
public:
    // Returns at once; the library behind it is loaded meanwhile. Null, after one console line, when there is no port.
    static std::unique_ptr<MediaServer> start(const std::string& folder);
    ~MediaServer();
    MediaServer(const MediaServer&) = delete;
    MediaServer& operator=(const MediaServer&) = delete;

    std::string address() const; // of the folder: "http://127.0.0.1:PORT/"

private:
    MediaServer();
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace showroom
