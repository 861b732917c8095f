#include "Platform/Images/ImageFetcher.h"

#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Images/ImageWorkers.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

FetchedImage failed(std::string problem) { return { nullptr, std::move(problem) }; }

// A pipe or a device is not waited for.
FetchedImage readFile(const std::string& path, std::size_t mostBytes)
{
    const auto reason = [] { return failed(std::strerror(errno)); };
    if (path.empty())
        return failed("is no file's address");
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return reason();
    const auto closing = std::shared_ptr<void>(nullptr, [descriptor](void*) { ::close(descriptor); });
    struct stat status { };
    if (::fstat(descriptor, &status) != 0)
        return reason();
    if (!S_ISREG(status.st_mode))
        return failed("is not a regular file");
    if (std::size_t(status.st_size) > mostBytes)
        return failed("file has more than " + std::to_string(mostBytes) + " bytes");
    auto bytes = std::make_shared<Data>(std::size_t(status.st_size));
    std::size_t count = 0;
    while (count < bytes->size()) {
        const auto read = ::read(descriptor, bytes->data() + count, bytes->size() - count);
        if (read < 0 && errno != EINTR)
            return reason();
        if (read == 0)
            break;
        count += std::size_t(std::max<ssize_t>(read, 0));
    }
    bytes->resize(count);
    return { std::move(bytes), {} };
}

} // namespace

struct ImageFetcher::Impl {
    struct Waiting {
        std::uint64_t id;
        HttpRequest request;
        HttpSession::Done done;
    };

    Impl(ImageWorkers& workers, const HttpLimits& limits, std::string cacheFolder, std::size_t cacheBytes)
        : workers(workers)
        , limits(limits)
        , cacheFolder(std::move(cacheFolder))
        , cacheBytes(cacheBytes)
    {
    }

    ImageWorkers& workers;
    const HttpLimits limits;
    const std::string cacheFolder;
    const std::size_t cacheBytes;
    std::uint64_t requests = 0; // over HTTP so far

    std::thread opener;
    std::mutex mutex; // of what follows
    std::vector<Waiting> waiting; // for the session
    std::unique_ptr<HttpSession> session;
    bool opened = false; // with a session or without

    // Loading the library takes tens of milliseconds, so a thread does it.
    void openSession()
    {
        auto* module = loadModule<HttpModule>("http");
        auto made = module ? module->open(cacheFolder, cacheBytes) : nullptr;
        std::vector<Waiting> first;
        {
            const std::lock_guard lock(mutex);
            session = std::move(made);
            opened = true;
            first.swap(waiting);
            if (session) {
                for (auto& entry : first)
                    session->get(entry.id, std::move(entry.request), std::move(entry.done));
                return;
            }
        }
        for (auto& entry : first)
            entry.done({ {}, "the HTTP module is not there" });
    }

    void get(std::uint64_t id, HttpRequest request, HttpSession::Done done)
    {
        std::unique_lock lock(mutex);
        if (opened && !session) {
            lock.unlock();
            return done({ {}, "the HTTP module is not there" });
        }
        if (session)
            return session->get(id, std::move(request), std::move(done));
        waiting.push_back({ id, std::move(request), std::move(done) });
        if (!opener.joinable())
            opener = std::thread([this] { openSession(); });
    }
};

ImageFetcher::ImageFetcher(ImageWorkers& workers, const HttpLimits& limits, std::string cacheFolder, std::size_t cacheBytes)
    : impl(std::make_unique<Impl>(workers, limits, std::move(cacheFolder), cacheBytes))
{
}

ImageFetcher::~ImageFetcher()
{
    if (impl->opener.joinable())
        impl->opener.join();
}

// An id is twice a worker's task for a file; for an HTTP request it is odd.
std::uint64_t ImageFetcher::fetch(const URL& address, bool revalidates, Done done)
{
    const auto scheme = address.scheme();
    if (scheme == "file") {
        return 2 * impl->workers.run([path = address.filePath(), most = impl->limits.bytes, done = std::move(done)] {
            done(readFile(path, most));
        });
    }
    const auto id = 2 * ++impl->requests + 1;
    if (scheme == "http" || scheme == "https") {
        impl->get(id, { address.absoluteString(), impl->limits, revalidates }, [done = std::move(done)](HttpAnswer answer) {
            if (!answer.problem.empty())
                return done(failed(std::move(answer.problem)));
            done({ std::make_shared<const Data>(std::move(answer.body)), {} });
        });
    } else {
        done(failed("only http, https and file addresses are loaded"));
    }
    return id;
}

void ImageFetcher::cancel(std::uint64_t id)
{
    if (id % 2 == 0)
        return impl->workers.cancel(id / 2);
    const std::lock_guard lock(impl->mutex);
    std::erase_if(impl->waiting, [id](const auto& entry) { return entry.id == id; });
    if (impl->session)
        impl->session->cancel(id);
}

} // namespace platform
