#pragma once

#include "Platform/Foundation/Data.h"
#include "Platform/Foundation/URL.h"
#include "Platform/Images/HttpModule.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class ImageWorkers;

// The bytes of an address, or why there are none.
struct FetchedImage {
    std::shared_ptr<const Data> bytes;
    std::string problem; // empty when there are bytes
};

// Gets the bytes behind http, https and file addresses. The HTTP library is loaded by the first address that needs it, on a
// thread of its own.
class ImageFetcher {
public:
    using Done = std::function<void(FetchedImage)>; // on any thread, once, unless it was cancelled

    // The folder of the disk cache may be empty for none.
    ImageFetcher(ImageWorkers& workers, const HttpLimits& limits, std::string cacheFolder, std::size_t cacheBytes);
    ~ImageFetcher();
    ImageFetcher(const ImageFetcher&) = delete;
    ImageFetcher& operator=(const ImageFetcher&) = delete;

    // Returns an id. Main thread.
    std::uint64_t fetch(const URL& address, bool revalidates, Done done);
    void cancel(std::uint64_t id);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
