#pragma once

#include "Platform/CoreGraphics/CGColor.h"

#include <array>
#include <cstdint>
#include <vector>

namespace platform::pixels {

// The colours along a gradient, from position 0 to 1 and constant beyond.
class Ramp {
public:
    // As many locations (0 to 1, ascending) as colours; otherwise they are spread evenly. At least one colour.
    Ramp(const std::vector<CGColor>& colors, const std::vector<double>& locations);
    bool isOpaque() const { return opaque; }
    // Pixels at position, position + step...
    void fillRow(std::uint32_t* row, int count, double position, double step) const;

private:
    static constexpr int length = 1024; // enough for every step of 8-bit colours
    std::array<std::uint32_t, length> words {};
    bool opaque = true;
};

} // namespace platform::pixels
