#pragma once

#include <cstddef>

namespace platform {

// A stretch of a text, in bytes of its UTF-8.
struct NSRange {
    std::size_t location = 0, length = 0;
    std::size_t end() const { return location + length; }
    bool operator==(const NSRange&) const = default;
};

} // namespace platform
