#pragma once

#include "Platform/Foundation/URL.h"
#include "Platform/Images/HttpModule.h"
#include "Platform/Images/ImageTarget.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

// Loads pictures for whoever shows them: one fetch for all who ask for an address at the same time, unpacked to the pixels that
// each of them needs, remembered in memory and (http, https) on the disk. Whoever no longer wants one lets go of its request;
// with the last one the work is cancelled. Each load that fails leaves one console line. What is under way counts as a job of the
// main queue. Main thread.
class ImageLoader {
public:
    struct Settings {
        HttpLimits limits { 32u << 20, 15, 60, 5 }; // the bytes hold for files too
        int mostFetches = 6; // at the same time; others wait, the newest goes first
        double retryAfter = 30; // seconds in which an address that failed is not tried again
        std::size_t pictureMemory = 8u << 20; // bytes; four banners of a phone
        std::size_t fileMemory = 4u << 20;
        std::size_t diskBytes = 64u << 20;
        std::optional<std::string> diskFolder; // absent: "images" in the application's cache folder; empty: none
    };
    using Completion = std::function<void(const std::shared_ptr<const CGImage>& picture)>; // null when it failed

    // Somebody's wish for a picture. Destroying it takes the wish back.
    class Request {
    public:
        ~Request();
        Request(const Request&) = delete;
        Request& operator=(const Request&) = delete;
        // Another size than it asked for before; without one the bytes are fetched and wait.
        void setTarget(const ImageTarget& target);

    private:
        friend class ImageLoader;
        struct Link;
        explicit Request(std::unique_ptr<Link> link);
        std::unique_ptr<Link> link;
    };

    static ImageLoader& shared();

    ImageLoader();
    explicit ImageLoader(const Settings& settings);
    ~ImageLoader(); // takes all wishes back
    ImageLoader(const ImageLoader&) = delete;
    ImageLoader& operator=(const ImageLoader&) = delete;

    // From memory, or null.
    std::shared_ptr<const CGImage> find(const URL& address, const ImageTarget& target);
    std::shared_ptr<const CGImage> findAnySize(const URL& address); // the largest
    // False while a failure of that address is too recent to try again.
    bool mayLoad(const URL& address) const;
    // Completes once, later, unless the request is destroyed before; then nothing is left of it.
    std::unique_ptr<Request> load(const URL& address, const std::optional<ImageTarget>& target, Completion completion);

    int fetchCount() const; // begun so far
    int decodeCount() const;

private:
    struct Impl;
    std::shared_ptr<Impl> impl;
};

} // namespace platform
