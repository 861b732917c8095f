#pragma once

#include <cstddef>

namespace platform {

// A place between two characters, in bytes of the text. Where the direction changes the two stand apart, and it matters which of
// them the place goes with.
struct TextPosition {
    std::size_t offset = 0;
    bool leansForward = false; // goes with the character after it
    bool operator==(const TextPosition&) const = default;
};

} // namespace platform
