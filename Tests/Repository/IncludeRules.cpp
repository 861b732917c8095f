#include "Tests/Repository/IncludeRules.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <sstream>

namespace repository {
namespace {

// Lowest first. A box sees itself and what stands before it. Of two entries that fit a path the longer one counts.
struct Box {
    std::string_view folder;
    int storey;
};
constexpr std::array boxes {
    Box { "Platform/Foundation/", 1 },
    Box { "Platform/CoreGraphics/", 2 },
    Box { "Platform/QuartzCore/", 3 },
    Box { "Platform/UIKit/Layout/", 4 },
    Box { "Platform/UIKit/", 5 },
    Box { "Platform/Controls/", 6 },
    Box { "Platform/Images/", 6 },
    Box { "Platform/AVFoundation/", 7 },
    Box { "Platform/EventKit/", 7 },
    Box { "Platform/SafariServices/", 7 },
    Box { "Platform/Host/", 8 },
    Box { "Resources/", 9 },
    Box { "Service/", 9 },
    Box { "UI/Extensions/", 10 },
    Box { "UI/Utils/", 10 },
    Box { "Main/", 11 },
    Box { "UI/", 12 },
    Box { "Showroom/", 13 },
    Box { "Examples/", 14 },
    Box { "Tests/", 14 },
    Box { "Benchmarks/", 14 },
};
// Neighbours on one storey do not see each other, but for these, which are one box.
constexpr std::array sameBox { std::pair { std::string_view("UI/Extensions/"), std::string_view("UI/Utils/") } };
// Whoever measures or tests may use any library.
constexpr int firstOutsideStorey = 14;

const Box* boxOf(std::string_view path)
{
    const Box* found = nullptr;
    for (const Box& box : boxes) {
        if (path.starts_with(box.folder) && (!found || box.folder.size() > found->folder.size()))
            found = &box;
    }
    return found;
}

bool sees(const Box& from, const Box& to)
{
    if (from.folder == to.folder || to.storey < from.storey || from.storey >= firstOutsideStorey)
        return true;
    return std::any_of(sameBox.begin(), sameBox.end(), [&](const auto& pair) {
        return (from.folder == pair.first && to.folder == pair.second) || (from.folder == pair.second && to.folder == pair.first);
    });
}

struct Include {
    std::string name;
    bool quoted;
};

std::optional<Include> includeOf(std::string_view line)
{
    const auto skip = [&line] { line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size())); };
    skip();
    if (!line.starts_with('#'))
        return std::nullopt;
    line.remove_prefix(1);
    skip();
    if (!line.starts_with("include"))
        return std::nullopt;
    line.remove_prefix(std::string_view("include").size());
    skip();
    if (line.empty() || (line[0] != '"' && line[0] != '<'))
        return std::nullopt;
    const bool quoted = line[0] == '"';
    const auto end = line.find(quoted ? '"' : '>', 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    return Include { std::string(line.substr(1, end - 1)), quoted };
}

// The C++ library's headers are the ones without a folder and an extension.
bool isStandardHeader(const std::string& name) { return name.find_first_of("/.") == std::string::npos; }

bool mayUseLibraries(const std::string& path, const Box& box)
{
    if (box.storey >= firstOutsideStorey)
        return true;
    return path.ends_with(".cpp") && (path.starts_with("Platform/") || path.starts_with("Showroom/"));
}

} // namespace

std::vector<std::string> includeFaults(
    const std::string& path, std::string_view text, const std::function<bool(const std::string&)>& exists)
{
    std::vector<std::string> faults;
    const Box* box = boxOf(path);
    if (!box)
        return { path + " stands in no box; give its folder a storey in IncludeRules.cpp" };

    const auto folder = std::filesystem::path(path).parent_path();
    const auto ownHeader = std::filesystem::path(path).replace_extension(".h").generic_string();
    const bool wantsOwnHeader = path.ends_with(".cpp") && exists(ownHeader);
    bool isFirst = true;

    std::istringstream lines { std::string(text) };
    for (std::string line; std::getline(lines, line);) {
        const auto include = includeOf(line);
        if (!include)
            continue;
        const auto beside = (folder / include->name).lexically_normal().generic_string();
        const bool ours = include->quoted && (exists(include->name) || exists(beside));
        const auto& target = exists(include->name) ? include->name : beside;

        if (isFirst && wantsOwnHeader && !(ours && target == ownHeader))
            faults.push_back(path + " includes " + include->name + " before its own header, which so may lean on it");
        isFirst = false;

        if (ours) {
            const Box* other = boxOf(target);
            if (!other || !sees(*box, *other))
                faults.push_back(path + " includes " + include->name + ", which does not stand below it");
        } else if (!isStandardHeader(include->name) && !mayUseLibraries(path, *box)) {
            faults.push_back(
                path + " includes " + include->name + ", a library's header; only Platform and Showroom .cpp files may");
        }
    }
    return faults;
}

} // namespace repository
