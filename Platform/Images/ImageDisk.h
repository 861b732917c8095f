#pragma once

#include "Platform/Foundation/Data.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace platform {

// An answer of a server as it is kept.
struct KeptAnswer {
    std::shared_ptr<const Data> bytes;
    std::string etag; // empty: none
    std::string lastModified;
    double freshUntil = 0; // seconds since 1970, by the machine's clock
};

// Answers of servers as files in a folder, at most so many bytes; what was read or written longest ago goes first. Other
// processes may use the folder at the same time, and anyone may empty it. A file that is not whole counts as none. Any thread.
class ImageDisk {
public:
    // The folder is made when it is first needed; an empty name keeps nothing.
    ImageDisk(std::string folder, std::size_t mostBytes);

    std::optional<KeptAnswer> read(const std::string& address);
    // Leaves the old file or the new one, whatever happens on the way.
    void write(const std::string& address, const KeptAnswer& answer);
    bool isUsed() const { return !folder.empty(); }

private:
    struct File {
        std::size_t bytes;
        std::int64_t lastUse; // grows with every use
    };

    void findFiles(); // once, under the lock
    void noteUse(const std::string& name, std::size_t bytes);
    void forget(const std::string& name);

    const std::string folder;
    const std::size_t mostBytes;
    std::mutex mutex; // of what follows
    bool isListed = false;
    std::map<std::string, File> files;
    std::size_t bytes = 0;
    std::uint64_t writes = 0;
};

} // namespace platform
