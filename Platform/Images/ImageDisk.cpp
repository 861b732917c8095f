#include "Platform/Images/ImageDisk.h"

#include "Platform/Foundation/FileSystem.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view magic = "mivora picture 1";
constexpr std::string_view extension = ".picture";
constexpr std::string_view unfinished = ".new";
constexpr auto abandonedAfter = std::chrono::hours(1); // an unfinished file of a process that ended

std::uint64_t mixed(std::string_view text, std::uint64_t start)
{
    std::uint64_t hash = start;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

// Eight bytes at a time, so that a check costs less than the reading.
std::uint64_t checksum(const Data& bytes)
{
    std::uint64_t sum = 0xcbf29ce484222325 ^ bytes.size();
    std::size_t at = 0;
    for (; at + 8 <= bytes.size(); at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, 8);
        sum = (sum ^ word) * 0x9e3779b97f4a7c15;
        sum ^= sum >> 29;
    }
    return mixed({ reinterpret_cast<const char*>(bytes.data()) + at, bytes.size() - at }, sum);
}

std::string hexText(std::uint64_t number)
{
    char text[17] = {};
    for (int i = 15; i >= 0; --i, number >>= 4)
        text[i] = "0123456789abcdef"[number & 15];
    return text;
}

std::string fileName(const std::string& address)
{
    return hexText(mixed(address, 0xcbf29ce484222325)) + hexText(mixed(address, 0x84222325cbf29ce4)) + std::string(extension);
}

std::string_view takeLine(std::string_view& text)
{
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

// What stands before the bytes, a value a line.
std::string headOf(const std::string& address, const KeptAnswer& answer)
{
    std::string head(magic);
    for (const auto& line : { address, answer.etag, answer.lastModified,
             std::to_string(static_cast<long long>(answer.freshUntil)), hexText(checksum(*answer.bytes)) })
        head += "\n" + line;
    return head + "\n";
}

std::optional<KeptAnswer> parse(const Data& file, const std::string& address)
{
    auto rest = textView(file);
    KeptAnswer answer;
    if (takeLine(rest) != magic || takeLine(rest) != address)
        return std::nullopt;
    answer.etag = takeLine(rest);
    answer.lastModified = takeLine(rest);
    long long freshUntil = 0;
    const auto time = takeLine(rest);
    std::from_chars(time.data(), time.data() + time.size(), freshUntil);
    answer.freshUntil = double(freshUntil);
    const auto sum = takeLine(rest);
    auto bytes = std::make_shared<const Data>(rest.begin(), rest.end());
    if (sum != hexText(checksum(*bytes)))
        return std::nullopt;
    answer.bytes = std::move(bytes);
    return answer;
}

bool isOneLine(const std::string& text) { return text.find_first_of("\r\n") == std::string::npos; }

std::int64_t now() { return fs::file_time_type::clock::now().time_since_epoch().count(); }

} // namespace

ImageDisk::ImageDisk(std::string folder, std::size_t mostBytes)
    : folder(std::move(folder))
    , mostBytes(mostBytes)
{
}

std::optional<KeptAnswer> ImageDisk::read(const std::string& address)
{
    if (!isUsed())
        return std::nullopt;
    const auto name = fileName(address), path = joinPath(folder, name);
    const auto content = FileSystem::real().read(path);
    if (!content)
        return std::nullopt;
    auto answer = parse(*content, address);
    const std::lock_guard lock(mutex);
    findFiles();
    if (!answer) {
        FileSystem::real().remove(path);
        forget(name);
        return std::nullopt;
    }
    noteUse(name, content->size());
    std::error_code ignored;
    fs::last_write_time(path, fs::file_time_type::clock::now(), ignored); // the next start's order of use
    return answer;
}

void ImageDisk::write(const std::string& address, const KeptAnswer& answer)
{
    const bool fits = answer.bytes && answer.bytes->size() <= mostBytes / 4;
    if (!isUsed() || !fits || !isOneLine(address) || !isOneLine(answer.etag) || !isOneLine(answer.lastModified))
        return;
    auto content = dataFromText(headOf(address, answer));
    content.insert(content.end(), answer.bytes->begin(), answer.bytes->end());
    auto& system = FileSystem::real();
    if (!system.makeDirectories(folder))
        return;
    const std::lock_guard lock(mutex);
    findFiles();
    const auto name = fileName(address);
    const auto beside
        = joinPath(folder, name + "." + std::to_string(::getpid()) + "-" + std::to_string(++writes) + std::string(unfinished));
    if (!system.write(beside, content) || !system.rename(beside, joinPath(folder, name))) {
        system.remove(beside);
        return;
    }
    noteUse(name, content.size());
    while (bytes > mostBytes) {
        const auto oldest = std::min_element(
            files.begin(), files.end(), [](const auto& a, const auto& b) { return a.second.lastUse < b.second.lastUse; });
        const auto victim = oldest->first;
        system.remove(joinPath(folder, victim));
        forget(victim);
    }
}

void ImageDisk::findFiles()
{
    if (std::exchange(isListed, true))
        return;
    std::error_code problem;
    for (fs::directory_iterator entry(folder, problem), end; !problem && entry != end; entry.increment(problem)) {
        std::error_code ignored;
        const auto name = entry->path().filename().string();
        const auto time = entry->last_write_time(ignored);
        if (name.ends_with(unfinished)) {
            if (time + abandonedAfter < fs::file_time_type::clock::now())
                fs::remove(entry->path(), ignored);
        } else if (name.ends_with(extension)) {
            const auto size = std::size_t(entry->file_size(ignored));
            if (!ignored) {
                files[name] = { size, time.time_since_epoch().count() };
                bytes += size;
            }
        }
    }
}

void ImageDisk::noteUse(const std::string& name, std::size_t size)
{
    forget(name);
    files[name] = { size, now() };
    bytes += size;
}

void ImageDisk::forget(const std::string& name)
{
    if (const auto file = files.extract(name))
        bytes -= file.mapped().bytes;
}

} // namespace platform
