#include "Platform/Foundation/Folders.h"

#include "Platform/Foundation/FileSystem.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <unistd.h>

namespace platform {

namespace {

struct Chosen {
    std::optional<std::string> applicationName;
    std::optional<std::string> data;
    std::optional<std::string> cache;
};

Chosen& chosen()
{
    static Chosen choices;
    return choices;
}

std::string executablePath()
{
    std::array<char, 4096> buffer;
    const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    return length > 0 ? std::string(buffer.data(), static_cast<std::size_t>(length)) : std::string();
}

std::string applicationName()
{
    if (chosen().applicationName)
        return *chosen().applicationName;
    const std::string path = executablePath();
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.empty() ? "mivora" : name;
}

// By the XDG rule a path there must be absolute, or it is not looked at.
std::string userFolder(const char* variable, const char* inHome)
{
    const char* const named = std::getenv(variable);
    if (named && named[0] == '/')
        return joinPath(named, applicationName());
    const char* const home = std::getenv("HOME");
    return joinPath(joinPath(home && home[0] == '/' ? home : "/tmp", inHome), applicationName());
}

} // namespace

void Folders::setApplicationName(std::string name) { chosen().applicationName = std::move(name); }

void Folders::setData(std::string path) { chosen().data = std::move(path); }

void Folders::setCache(std::string path) { chosen().cache = std::move(path); }

std::string Folders::data() { return chosen().data ? *chosen().data : userFolder("XDG_DATA_HOME", ".local/share"); }

std::string Folders::cache() { return chosen().cache ? *chosen().cache : userFolder("XDG_CACHE_HOME", ".cache"); }

std::string Folders::executable() { return folderOf(executablePath()); }

} // namespace platform
