#include "Platform/Images/ImageFetcher.h"

#include "Platform/Images/ImageWorkers.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

FetchedImage failed(std::string problem) { return { nullptr, std::move(problem), {} }; }

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
    return { std::move(bytes), {}, {} };
}

// By the machine's clock, also in scenes whose own clock stands still: that is the one that servers go by.
double wallTime() { return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count(); }

// What an answer comes to, together with what was known before.
FetchedImage judged(HttpAnswer answer, const std::optional<KeptAnswer>& known)
{
    if (!answer.problem.empty())
        return failed(std::move(answer.problem));
    if (answer.isUnchanged && !known)
        return failed("the server says that nothing has changed, unasked");
    const auto bytes = answer.isUnchanged ? known->bytes : std::make_shared<const Data>(std::move(answer.body));
    FetchedImage fetched { bytes, {}, {} };
    const double fresh = answer.freshSeconds.value_or(0);
    const bool canBeAskedFor = !answer.etag.empty() || !answer.lastModified.empty();
    const bool isNews = !answer.isUnchanged || fresh > 0; // else the disk has it as it is
    if (answer.freshSeconds && isNews && (fresh > 0 || canBeAskedFor)) {
        fetched.toKeep = KeptAnswer { bytes, answer.etag, answer.lastModified, wallTime() + fresh };
        if (answer.isUnchanged && !canBeAskedFor) { // then the former marks hold
            fetched.toKeep->etag = known->etag;
            fetched.toKeep->lastModified = known->lastModified;
        }
    }
    return fetched;
}

} // namespace

ImageFetcher::Fetch::~Fetch()
{
    if (task)
        fetcher.workers.cancel(task);
    fetcher.client.cancel(*ticket);
}

ImageFetcher::ImageFetcher(ImageWorkers& workers, const HttpLimits& limits, std::string cacheFolder, std::size_t cacheBytes)
    : workers(workers)
    , limits(limits)
    , disk(std::move(cacheFolder), cacheBytes)
{
}

std::unique_ptr<ImageFetcher::Fetch> ImageFetcher::fetch(const URL& address, bool asksAnew, Done done)
{
    std::unique_ptr<Fetch> made(new Fetch(*this));
    const auto scheme = address.scheme();
    if (scheme == "file") {
        made->task = workers.run([ticket = made->ticket, path = address.filePath(), most = limits.bytes, done = std::move(done)] {
            auto fetched = readFile(path, most);
            if (!ticket->isOver.exchange(true))
                done(std::move(fetched));
        });
    } else if (scheme == "http" || scheme == "https") {
        made->task = workers.run([this, ticket = made->ticket, address = address.absoluteString(), asksAnew,
                                     done = std::move(done)] { look(address, asksAnew, ticket, done); });
    } else {
        made->ticket->isOver = true;
        done(failed("only http, https and file addresses are loaded"));
    }
    return made;
}

void ImageFetcher::keep(const URL& address, KeptAnswer answer)
{
    if (disk.isUsed())
        workers.run([this, address = address.absoluteString(), answer = std::move(answer)] { disk.write(address, answer); });
}

void ImageFetcher::look(
    const std::string& address, bool asksAnew, const std::shared_ptr<HttpClient::Ticket>& ticket, const Done& done)
{
    const auto known = asksAnew ? std::nullopt : disk.read(address);
    if (known && wallTime() < known->freshUntil) {
        if (!ticket->isOver.exchange(true))
            done({ known->bytes, {}, {} });
        return;
    }
    HttpRequest request { address, limits, known ? known->etag : "", known ? known->lastModified : "" };
    client.get(ticket, std::move(request), [known, done](HttpAnswer answer) { done(judged(std::move(answer), known)); });
}

} // namespace platform
