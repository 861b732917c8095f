#pragma once

#include <map>
#include <string>
#include <string_view>

namespace platform {

// Texts by key.
using StringTable = std::map<std::string, std::string, std::less<>>;

// Reads the content of a .strings file: "key" = "value"; entries in UTF-8, with comments of both kinds and the escapes
// \n \r \t \" \' \\ and \UXXXX (UTF-16 units). At the first fault it says so in one console line with the file's name and the
// line's number, and returns what came before. Of equal keys the last one wins.
StringTable parseStrings(std::string_view content, const std::string& name);

} // namespace platform
