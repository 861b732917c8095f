#pragma once

#include "Platform/Foundation/Data.h"

#include <optional>
#include <string>

namespace platform {

// The few file operations that stores need, replaceable in tests. Paths are UTF-8. Nothing throws; false or nothing says that it
// failed, and the reason is the caller's console line to give.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual std::optional<Data> read(const std::string& path) const = 0;
    // Makes the file or empties it first. The bytes may still be lost in a power cut until flush.
    virtual bool write(const std::string& path, const Data& data) = 0;
    // Brings a file's bytes, or a folder's list of names, to the disk.
    virtual bool flush(const std::string& path) = 0;
    // Replaces `to` if it is there, in one step.
    virtual bool rename(const std::string& from, const std::string& to) = 0;
    virtual bool remove(const std::string& path) = 0;
    virtual bool exists(const std::string& path) const = 0;
    virtual bool makeDirectories(const std::string& path) = 0; // true when it is there afterwards

    static FileSystem& real(); // any thread
};

// Replaces a file's whole content so that a process or machine that dies on the way leaves the old or the new content, never a
// mix: writes beside it (path + ".new"), flushes, renames, flushes the folder. Makes missing folders. False when it failed: the
// old content is then still there, unless only the very last step failed, the folder's flush.
bool replaceFile(FileSystem& files, const std::string& path, const Data& data);

// Moves a file that cannot be used out of the way, to path + ".damaged" (or ".damaged-2" and so on), and returns where it went.
std::optional<std::string> setFileAside(FileSystem& files, const std::string& path);

std::string folderOf(const std::string& path); // "." when it names no folder
std::string joinPath(const std::string& folder, const std::string& name);

} // namespace platform
