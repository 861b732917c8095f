#include "Platform/Foundation/Bundle.h"

#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/Locale.h"
#include "Platform/Foundation/NSLog.h"

#include <algorithm>
#include <memory>

namespace platform {

namespace {

std::unique_ptr<Bundle>& installedMainBundle()
{
    static std::unique_ptr<Bundle> bundle;
    return bundle;
}

// The folders that a language may be under, the closest first: "zh-Hant-TW" -> zh-Hant-TW, zh_Hant_TW, zh-Hant, zh_Hant, zh.
std::vector<std::string> foldersOf(std::string tag)
{
    std::vector<std::string> folders;
    std::replace(tag.begin(), tag.end(), '_', '-');
    while (!tag.empty()) {
        folders.push_back(tag + ".lproj");
        if (tag.find('-') == std::string::npos)
            break;
        std::string withUnderscores = tag;
        std::replace(withUnderscores.begin(), withUnderscores.end(), '-', '_');
        folders.push_back(withUnderscores + ".lproj");
        tag.resize(tag.rfind('-'));
    }
    return folders;
}

// A name from outside must not lead out of the bundle.
bool staysInside(std::string_view name)
{
    return !name.empty() && name.front() != '/' && name.find("..") == std::string_view::npos
        && name.find('\0') == std::string_view::npos;
}

} // namespace

Bundle::Bundle(std::string folder, FileSystem& fileSystem)
    : path(std::move(folder))
    , files(fileSystem)
{
}

Bundle& Bundle::mainBundle()
{
    auto& bundle = installedMainBundle();
    if (!bundle)
        bundle = std::make_unique<Bundle>(Folders::executable());
    return *bundle;
}

void Bundle::setMainBundle(std::string path) { installedMainBundle() = std::make_unique<Bundle>(std::move(path)); }

std::optional<std::string> Bundle::pathForResource(std::string_view name, std::string_view type) const
{
    if (!staysInside(name) || type.find('/') != std::string_view::npos)
        return std::nullopt;
    std::string file(name);
    if (!type.empty())
        file.append(1, '.').append(type);
    const std::string plain = joinPath(path, file);
    return files.exists(plain) ? std::optional(plain) : pathInLanguages(file);
}

std::optional<Data> Bundle::contentsOfResource(std::string_view name, std::string_view type) const
{
    const auto found = pathForResource(name, type);
    return found ? files.read(*found) : std::nullopt;
}

std::string Bundle::localizedString(std::string_view key, std::string_view value, const std::string& table) const
{
    const StringTable& texts = stringTable(table);
    const auto text = texts.find(key);
    if (text != texts.end())
        return text->second;
    return std::string(value.empty() ? key : value);
}

const StringTable& Bundle::stringTable(const std::string& table) const
{
    if (languagesSeen != Locale::changes()) {
        languagesSeen = Locale::changes();
        tables.clear();
    }
    const auto [entry, isNew] = tables.try_emplace(table);
    if (!isNew || !staysInside(table))
        return entry->second;
    if (const auto file = pathInLanguages(table + ".strings")) {
        if (const auto content = files.read(*file))
            entry->second = parseStrings(textView(*content), *file);
        else
            NSLog("strings file \"" + *file + "\" cannot be read");
    }
    return entry->second;
}

std::optional<std::string> Bundle::pathInLanguages(const std::string& file) const
{
    std::vector<std::string> languages = Locale::preferredLanguages();
    languages.push_back("en");
    for (const std::string& language : languages) {
        for (const std::string& folder : foldersOf(language)) {
            std::string candidate = joinPath(joinPath(path, folder), file);
            if (staysInside(folder) && files.exists(candidate))
                return candidate;
        }
    }
    return std::nullopt;
}

} // namespace platform
