#pragma once

#include "Platform/Foundation/URL.h"
#include "Platform/Images/HttpClient.h"
#include "Platform/Images/ImageDisk.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class ImageWorkers;

// The bytes of an address, or why there are none.
struct FetchedImage {
    std::shared_ptr<const Data> bytes;
    std::string problem; // empty when there are bytes
    std::optional<KeptAnswer> toKeep; // for ImageFetcher::keep once they have proved to be a picture
};

// Gets the bytes behind http, https and file addresses: from the disk without asking anyone where the answer kept there is still
// good. Main thread.
class ImageFetcher {
public:
    using Done = std::function<void(FetchedImage)>; // on any thread, once, unless it was cancelled

    // A fetch. Destroying it cancels it if it is still under way; it ends before its fetcher.
    class Fetch {
    public:
        ~Fetch();
        Fetch(const Fetch&) = delete;
        Fetch& operator=(const Fetch&) = delete;

    private:
        friend class ImageFetcher;
        explicit Fetch(ImageFetcher& fetcher)
            : fetcher(fetcher)
        {
        }
        ImageFetcher& fetcher;
        std::uint64_t task = 0; // of the workers
        const std::shared_ptr<HttpClient::Ticket> ticket = std::make_shared<HttpClient::Ticket>();
    };

    // The folder of the disk cache may be empty for none.
    ImageFetcher(ImageWorkers& workers, const HttpLimits& limits, std::string cacheFolder, std::size_t cacheBytes);

    // With `asksAnew` the disk is not believed.
    std::unique_ptr<Fetch> fetch(const URL& address, bool asksAnew, Done done);
    // Writes it to the disk, sometime.
    void keep(const URL& address, KeptAnswer answer);

private:
    // On a worker's thread.
    void look(const std::string& address, bool asksAnew, const std::shared_ptr<HttpClient::Ticket>& ticket, const Done& done);

    ImageWorkers& workers;
    const HttpLimits limits;
    ImageDisk disk;
    HttpClient client;
};

} // namespace platform
