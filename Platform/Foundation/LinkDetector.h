#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// An address of the web in a text.
struct DetectedLink {
    std::size_t location = 0, length = 0; // bytes of the text
    std::string address; // with its scheme (http where the text has none), a host beyond ASCII in its ASCII form
    bool operator==(const DetectedLink&) const = default;
};

// The addresses of the web that a text mentions, as people write them: with http or https, or bare where the host ends in a known
// domain. Punctuation and brackets around them are left out, so are e-mail addresses, addresses of other schemes and those that
// name a user before the host. A bare host that reads like words ("nice.is", "run.sh") or like numbers counts only with www, a
// port, a path or a further label. Work grows with the text's length and no faster. In order, without overlaps. Main thread.
std::vector<DetectedLink> detectLinks(std::string_view text);

} // namespace platform
