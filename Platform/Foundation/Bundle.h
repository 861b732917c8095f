#pragma once

#include "Platform/Foundation/FileSystem.h"
#include "Platform/Foundation/StringTable.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A folder of resources, with one sub-folder LANGUAGE.lproj for each language. Main thread.
class Bundle {
public:
    explicit Bundle(std::string folder, FileSystem& fileSystem = FileSystem::real());

    // The host application's; until the host names it, the folder of the executable.
    static Bundle& mainBundle();
    static void setMainBundle(std::string path);

    const std::string& bundlePath() const { return path; }

    // PATH/name.type, or in the best language's folder; nothing when there is no such file. An empty type means that the name has
    // it.
    std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const;
    std::optional<Data> contentsOfResource(std::string_view name, std::string_view type) const;

    // The key's text in the table of the first of the viewer's preferred languages that has one, English last. A missing key
    // gives `value`, or the key itself when that is empty.
    std::string localizedString(
        std::string_view key, std::string_view value = {}, const std::string& table = "Localizable") const;

private:
    const StringTable& stringTable(const std::string& table) const;
    std::optional<std::string> pathInLanguages(const std::string& file) const;

    const std::string path;
    FileSystem& files;
    mutable std::map<std::string, StringTable> tables; // read at their first use, forgotten when the languages change
    mutable unsigned languagesSeen = 0; // Locale::changes() when they were read
};

} // namespace platform
