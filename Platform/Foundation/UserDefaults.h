#pragma once

#include "Platform/Foundation/Data.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace platform {

class FileSystem;

// A persistent store of small values by key, one file. It is read at the first access; every change replaces the file before the
// call returns (replaceFile), so a process that dies has the old or the new content. A damaged file is set aside with one console
// line. One process owns a file at a time. Main thread.
class UserDefaults {
public:
    using Value = std::variant<bool, std::int64_t, double, std::string, Data>;

    UserDefaults(std::string filePath, FileSystem& fileSystem);

    // In Folders::data(), unless a host has chosen another path before its first use.
    static UserDefaults& standard();
    static void setStandardPath(std::string path);

    std::optional<Value> object(const std::string& key) const;
    // The value if it has exactly that type, or nothing: a text is not read as a number.
    std::optional<std::string> string(const std::string& key) const { return typed<std::string>(key); }
    std::optional<Data> data(const std::string& key) const { return typed<Data>(key); }
    std::optional<std::int64_t> integer(const std::string& key) const { return typed<std::int64_t>(key); }
    std::optional<bool> boolean(const std::string& key) const { return typed<bool>(key); }
    std::optional<double> number(const std::string& key) const; // an integer too

    // Invalid UTF-8 in keys and texts becomes U+FFFD. A number that is not finite is refused with a console line. When the file
    // cannot be written there is one console line, and the value holds for this process.
    void set(const std::string& key, Value value);
    void removeObject(const std::string& key);

private:
    using Values = std::map<std::string, Value>;

    template <typename T> std::optional<T> typed(const std::string& key) const
    {
        const auto value = object(key);
        const T* found = value ? std::get_if<T>(&*value) : nullptr;
        return found ? std::optional<T>(*found) : std::nullopt;
    }
    void load() const;
    void save();

    const std::string path;
    FileSystem& files;
    mutable Values values;
    mutable bool loaded = false;
    mutable bool writable = true; // false while an unusable file could not be set aside
};

} // namespace platform
