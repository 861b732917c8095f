#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The rules of who may include what, so that arrows between the boxes point down only and a host that embeds the kit compiles
// against our headers alone.
namespace repository {

// One sentence for each include of a file that breaks a rule. `path` is the file's place below the repository's root, with
// slashes; `exists` tells whether there is a file at such a place.
std::vector<std::string> includeFaults(
    const std::string& path, std::string_view text, const std::function<bool(const std::string&)>& exists);

} // namespace repository
