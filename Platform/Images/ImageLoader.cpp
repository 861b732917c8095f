#include "Platform/Images/ImageLoader.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Images/ImageFetcher.h"
#include "Platform/Images/ImageMemory.h"
#include "Platform/Images/ImageWorkers.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t longestName = 200; // bytes of an address in a console line

std::string shortened(const std::string& address)
{
    return address.size() <= longestName ? address : address.substr(0, longestName) + "...";
}

std::string diskFolder(const ImageLoader::Settings& settings)
{
    return settings.diskFolder ? *settings.diskFolder : joinPath(Folders::cache(), "images");
}

} // namespace

struct ImageLoader::Impl : std::enable_shared_from_this<Impl> {
    struct Asker {
        std::string address;
        std::optional<ImageTarget> target;
        Completion completion;
    };
    // An address that somebody waits for: to be fetched, being fetched, or there.
    struct Source {
        URL url;
        std::uint64_t serial = 0; // tells its answer from one of a cancelled fetch
        std::unique_ptr<ImageFetcher::Fetch> fetch; // while it is under way
        std::shared_ptr<const Data> bytes; // once they are there
        std::optional<KeptAnswer> toKeep; // on the disk, once they have proved to be a picture
        std::optional<CountedJob> job; // until they are there
    };
    using DecodeKey = std::pair<std::string, ImageTarget>;
    struct Decode {
        std::uint64_t serial; // tells its result from one of a cancelled decode
        std::uint64_t task;
        CountedJob job;
    };

    explicit Impl(const Settings& settings)
        : settings(settings)
        , fetcher(workers, settings.limits, diskFolder(settings), settings.diskBytes)
        , memory(settings.pictureMemory, settings.fileMemory)
    {
    }

    // What is still to be written to the disk is written.
    ~Impl()
    {
        sources.clear();
        for (const auto& [key, decode] : decodes)
            workers.cancel(decode.task);
        workers.finish();
    }

    // Wishes

    std::uint64_t add(Asker asker, const URL& url)
    {
        const auto id = nextAsker++;
        const auto address = asker.address;
        askers.emplace(id, std::move(asker));
        const bool isNew = !sources.contains(address);
        Source& source = sources.try_emplace(address, Source { url, 0, {}, memory.findFile(address), {}, {} }).first->second;
        if (source.bytes) {
            startDecodes(address);
        } else if (isNew) {
            source.job.emplace();
            waiting.push_back(address);
            startFetches();
        } else if (std::erase(waiting, address) > 0) {
            waiting.push_back(address); // wished for anew
        }
        return id;
    }

    void retarget(std::uint64_t id, const ImageTarget& target)
    {
        const auto found = askers.find(id);
        if (found == askers.end() || found->second.target == target)
            return;
        found->second.target = target;
        dropUnwanted(found->second.address);
        startDecodes(found->second.address);
    }

    void remove(std::uint64_t id)
    {
        const auto asker = askers.extract(id);
        if (asker)
            dropUnwanted(asker.mapped().address);
    }

    // Cancels what nobody waits for any more.
    void dropUnwanted(const std::string& address)
    {
        std::erase_if(decodes, [&](const auto& entry) {
            const bool goes = entry.first.first == address && !isWanted(entry.first);
            if (goes)
                workers.cancel(entry.second.task);
            return goes;
        });
        const bool isAsked
            = std::any_of(askers.begin(), askers.end(), [&](const auto& entry) { return entry.second.address == address; });
        if (!isAsked)
            dropSource(address);
    }

    bool isWanted(const DecodeKey& key) const
    {
        return std::any_of(askers.begin(), askers.end(),
            [&](const auto& entry) { return entry.second.target == key.second && entry.second.address == key.first; });
    }

    void dropSource(const std::string& address)
    {
        auto source = sources.extract(address);
        if (!source)
            return;
        std::erase(waiting, address);
        if (std::exchange(source.mapped().fetch, nullptr)) {
            --fetching;
            startFetches();
        }
    }

    // Fetching

    void startFetches()
    {
        while (fetching < settings.mostFetches && !waiting.empty()) {
            const auto address = std::move(waiting.back());
            waiting.pop_back();
            Source& source = sources.at(address);
            ++fetching;
            ++fetchCount;
            const auto serial = source.serial = ++lastSerial;
            source.fetch = fetcher.fetch(
                source.url, failures.contains(address), [weakSelf = weak_from_this(), address, serial](FetchedImage fetched) {
                    MainQueue::shared().async([weakSelf, address, serial, fetched = std::move(fetched)] {
                        if (const auto self = weakSelf.lock())
                            self->didFetch(address, serial, fetched);
                    });
                });
        }
    }

    void didFetch(const std::string& address, std::uint64_t serial, const FetchedImage& fetched)
    {
        const auto source = sources.find(address);
        if (source == sources.end() || source->second.serial != serial)
            return; // cancelled when it was on its way here
        const auto job = std::exchange(source->second.job, std::nullopt); // ends when all that follows from it has begun
        source->second.fetch = nullptr;
        --fetching;
        startFetches();
        if (!fetched.bytes) {
            NSLog("image \"" + shortened(address) + "\" not shown: " + fetched.problem);
            return fail(address);
        }
        source->second.bytes = fetched.bytes;
        source->second.toKeep = fetched.toKeep;
        memory.keepFile(address, fetched.bytes);
        startDecodes(address);
    }

    // Unpacking

    void startDecodes(const std::string& address)
    {
        const auto source = sources.find(address);
        if (source == sources.end() || !source->second.bytes)
            return;
        for (const auto& [id, asker] : askers) {
            if (asker.address == address && asker.target && !decodes.contains({ address, *asker.target }))
                startDecode({ address, *asker.target }, source->second.bytes);
        }
    }

    void startDecode(const DecodeKey& key, const std::shared_ptr<const Data>& bytes)
    {
        ++decodeCount;
        const auto serial = ++lastSerial;
        const auto task = workers.run([weakSelf = weak_from_this(), key, serial, bytes] {
            auto picture = decodeImage(*bytes, shortened(key.first), key.second);
            MainQueue::shared().async([weakSelf, key, serial, picture = std::move(picture)] {
                if (const auto self = weakSelf.lock())
                    self->didDecode(key, serial, picture);
            });
        });
        decodes.emplace(key, Decode { serial, task, {} });
    }

    void didDecode(const DecodeKey& key, std::uint64_t serial, const std::shared_ptr<const CGImage>& picture)
    {
        const auto decode = decodes.find(key);
        if (decode == decodes.end() || decode->second.serial != serial)
            return;
        const auto finished = decodes.extract(decode); // its job ends when the askers have been told
        if (!picture) {
            memory.forgetFile(key.first);
            return fail(key.first);
        }
        failures.erase(key.first);
        if (const auto source = sources.find(key.first); source != sources.end()) {
            if (auto answer = std::exchange(source->second.toKeep, std::nullopt))
                fetcher.keep(source->second.url, std::move(*answer));
        }
        memory.keep(key.first, key.second, picture);
        complete(picture, [&](const Asker& asker) { return asker.target == key.second && asker.address == key.first; });
        dropUnwanted(key.first);
    }

    // Ends

    void fail(const std::string& address)
    {
        const double now = Clock::current().now();
        std::erase_if(failures, [&](const auto& entry) { return entry.second + forgetAfter() <= now; });
        failures[address] = now;
        complete(nullptr, [&](const Asker& asker) { return asker.address == address; });
        dropUnwanted(address);
    }

    double forgetAfter() const { return 20 * settings.retryAfter; }

    template <typename Matches> void complete(const std::shared_ptr<const CGImage>& picture, Matches matches)
    {
        std::vector<std::uint64_t> told;
        for (const auto& [id, asker] : askers) {
            if (matches(asker))
                told.push_back(id);
        }
        for (const auto id : told) {
            if (const auto asker = askers.extract(id)) // one told before may have taken its wish back
                asker.mapped().completion(picture);
        }
    }

    const Settings settings;
    ImageWorkers workers;
    ImageFetcher fetcher;
    ImageMemory memory;
    std::map<std::uint64_t, Asker> askers;
    std::map<std::string, Source> sources;
    std::map<DecodeKey, Decode> decodes;
    std::map<std::string, double> failures; // when each was last tried
    std::vector<std::string> waiting; // to be fetched, the newest last
    std::uint64_t nextAsker = 1;
    std::uint64_t lastSerial = 0;
    int fetching = 0;
    int fetchCount = 0;
    int decodeCount = 0;
};

struct ImageLoader::Request::Link {
    std::weak_ptr<Impl> loader;
    std::uint64_t asker;
};

ImageLoader::Request::Request(std::unique_ptr<Link> link)
    : link(std::move(link))
{
}

ImageLoader::Request::~Request()
{
    if (const auto loader = link->loader.lock())
        loader->remove(link->asker);
}

void ImageLoader::Request::setTarget(const ImageTarget& target)
{
    if (const auto loader = link->loader.lock())
        loader->retarget(link->asker, target);
}

ImageLoader& ImageLoader::shared()
{
    static ImageLoader loader;
    return loader;
}

ImageLoader::ImageLoader()
    : ImageLoader(Settings {})
{
}

ImageLoader::ImageLoader(const Settings& settings)
    : impl(std::make_shared<Impl>(settings))
{
}

ImageLoader::~ImageLoader() = default;

std::shared_ptr<const CGImage> ImageLoader::find(const URL& address, const ImageTarget& target)
{
    return impl->memory.find(address.absoluteString(), target);
}

std::shared_ptr<const CGImage> ImageLoader::findAnySize(const URL& address)
{
    return impl->memory.findAnySize(address.absoluteString());
}

bool ImageLoader::mayLoad(const URL& address) const
{
    const auto failure = impl->failures.find(address.absoluteString());
    if (failure == impl->failures.end())
        return true;
    const double passed = Clock::current().now() - failure->second;
    return passed < 0 || passed >= impl->settings.retryAfter; // negative: on another clock
}

std::unique_ptr<ImageLoader::Request> ImageLoader::load(
    const URL& address, const std::optional<ImageTarget>& target, Completion completion)
{
    const auto id = impl->add({ address.absoluteString(), target, std::move(completion) }, address);
    return std::unique_ptr<Request>(new Request(std::unique_ptr<Request::Link>(new Request::Link { impl, id })));
}

int ImageLoader::fetchCount() const { return impl->fetchCount; }

int ImageLoader::decodeCount() const { return impl->decodeCount; }

} // namespace platform
