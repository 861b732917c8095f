#pragma once

#include "Platform/Foundation/FileSystem.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace platform {

// A disk in memory that knows what would survive a power cut: bytes survive once their file was flushed, names once their folder
// was. It can be told to kill the process before, in the middle of or after any step.
class MemoryDisk final : public FileSystem {
public:
    struct Killed { };
    enum class Moment { before, halfway, after };
    enum class Names { asFlushed, asLastChanged };
    enum class Bytes { lost, torn, kept }; // what became of bytes that were not flushed

    void put(const std::string& path, std::string_view content) // already safe
    {
        names[path] = flushedNames[path] = std::make_shared<File>(File { dataFromText(content), dataFromText(content) });
    }
    std::string contentOf(const std::string& path) const
    {
        const auto data = read(path);
        return data ? std::string(textView(*data)) : "(none)";
    }
    bool fails = false; // every change from now on, without killing anyone

    // Steps are counted from 1; 0 kills never.
    void killAt(int step, Moment moment)
    {
        fatalStep = step;
        fatalMoment = moment;
        steps = 0;
    }
    // What the next process finds after the machine lost its power.
    MemoryDisk afterPowerCut(Names which, Bytes unflushed) const
    {
        MemoryDisk disk;
        for (const auto& [path, file] : which == Names::asFlushed ? flushedNames : names) {
            Data bytes = file->flushed;
            if (unflushed == Bytes::kept)
                bytes = file->bytes;
            else if (unflushed == Bytes::torn && file->bytes != file->flushed)
                bytes.assign(file->bytes.begin(), file->bytes.begin() + static_cast<std::ptrdiff_t>(file->bytes.size() / 2));
            disk.names[path] = disk.flushedNames[path] = std::make_shared<File>(File { bytes, bytes });
        }
        return disk;
    }

    // FileSystem
    std::optional<Data> read(const std::string& path) const override
    {
        const auto name = names.find(path);
        return name == names.end() || unreadable.contains(path) ? std::nullopt : std::optional(name->second->bytes);
    }
    bool write(const std::string& path, const Data& data) override
    {
        auto& file = names[path];
        if (!file)
            file = std::make_shared<File>();
        return step([&] { file->bytes = data; },
            [&] { file->bytes.assign(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(data.size() / 2)); });
    }
    bool flush(const std::string& path) override
    {
        return step([&] {
            if (const auto name = names.find(path); name != names.end())
                name->second->flushed = name->second->bytes;
            else
                flushedNames = names; // there is one folder
        });
    }
    bool rename(const std::string& from, const std::string& to) override
    {
        return step([&] {
            names[to] = names.at(from);
            names.erase(from);
        });
    }
    bool remove(const std::string& path) override
    {
        return step([&] { names.erase(path); });
    }
    bool exists(const std::string& path) const override { return names.contains(path); }
    bool makeDirectories(const std::string&) override
    {
        return step([] {});
    }

    std::set<std::string> unreadable;

private:
    struct File {
        Data bytes;
        Data flushed;
    };

    template <typename Do> bool step(const Do& all)
    {
        return step(all, [] {});
    }
    template <typename Do, typename DoHalf> bool step(const Do& all, const DoHalf& half)
    {
        if (fails)
            return false;
        const bool isFatal = ++steps == fatalStep;
        if (isFatal && fatalMoment == Moment::before)
            throw Killed();
        if (isFatal && fatalMoment == Moment::halfway) {
            half();
            throw Killed();
        }
        all();
        if (isFatal)
            throw Killed();
        return true;
    }

    std::map<std::string, std::shared_ptr<File>> names;
    std::map<std::string, std::shared_ptr<File>> flushedNames;
    int steps = 0;
    int fatalStep = 0;
    Moment fatalMoment = Moment::before;
};

} // namespace platform
