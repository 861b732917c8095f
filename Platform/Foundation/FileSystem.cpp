#include "Platform/Foundation/FileSystem.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

class Descriptor {
public:
    Descriptor(const std::string& path, int flags)
        : number(::open(path.c_str(), flags | O_CLOEXEC, 0644))
    {
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (number >= 0)
            ::close(number);
    }

    const int number; // negative when it did not open
};

class RealFileSystem final : public FileSystem {
public:
    std::optional<Data> read(const std::string& path) const override
    {
        const Descriptor file(path, O_RDONLY | O_NONBLOCK); // a pipe under that name must not hold us up
        struct stat status;
        if (file.number < 0 || ::fstat(file.number, &status) != 0 || !S_ISREG(status.st_mode))
            return std::nullopt;
        Data data(static_cast<std::size_t>(status.st_size));
        std::size_t filled = 0;
        for (;;) {
            if (filled == data.size())
                data.resize(filled + 4096); // one read more than the size says, in case the file grows
            const ssize_t count = ::read(file.number, data.data() + filled, data.size() - filled);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                return std::nullopt;
            if (count == 0)
                break;
            filled += static_cast<std::size_t>(count);
        }
        data.resize(filled);
        return data;
    }

    bool write(const std::string& path, const Data& data) override
    {
        const Descriptor file(path, O_WRONLY | O_CREAT | O_TRUNC);
        if (file.number < 0)
            return false;
        std::size_t done = 0;
        while (done < data.size()) {
            const ssize_t count = ::write(file.number, data.data() + done, data.size() - done);
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                return false;
            done += static_cast<std::size_t>(count);
        }
        return true;
    }

    bool flush(const std::string& path) override
    {
        const Descriptor file(path, O_RDONLY);
        // Some file systems have nothing to flush for a folder and say EINVAL.
        return file.number >= 0 && (::fsync(file.number) == 0 || errno == EINVAL);
    }

    bool rename(const std::string& from, const std::string& to) override { return ::rename(from.c_str(), to.c_str()) == 0; }

    bool remove(const std::string& path) override { return ::unlink(path.c_str()) == 0; }

    bool exists(const std::string& path) const override { return ::access(path.c_str(), F_OK) == 0; }

    bool makeDirectories(const std::string& path) override
    {
        std::error_code error;
        std::filesystem::create_directories(path, error);
        return std::filesystem::is_directory(path, error);
    }
};

} // namespace

FileSystem& FileSystem::real()
{
    static RealFileSystem files;
    return files;
}

bool replaceFile(FileSystem& files, const std::string& path, const Data& data)
{
    const std::string folder = folderOf(path);
    const std::string fresh = path + ".new";
    if (!files.exists(folder) && !files.makeDirectories(folder))
        return false;
    if (!files.write(fresh, data) || !files.flush(fresh) || !files.rename(fresh, path)) {
        files.remove(fresh);
        return false;
    }
    return files.flush(folder);
}

std::optional<std::string> setFileAside(FileSystem& files, const std::string& path)
{
    constexpr int attempts = 1000;
    std::string aside = path + ".damaged";
    for (int i = 2; files.exists(aside); ++i) {
        if (i > attempts)
            return std::nullopt;
        aside = path + ".damaged-" + std::to_string(i);
    }
    if (!files.rename(path, aside))
        return std::nullopt;
    files.flush(folderOf(path));
    return aside;
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string joinPath(const std::string& folder, const std::string& name)
{
    return folder.empty() || folder.back() == '/' ? folder + name : folder + '/' + name;
}

} // namespace platform
