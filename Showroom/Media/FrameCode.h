#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace showroom::media {

// A frame's number as a row of black and white cells, so that a picture of the screen tells which frame it shows. It survives
// compression and scaling as long as a cell is some three pixels wide.
namespace frameCode {

constexpr int cellCount = 30; // a dark one at both ends included
constexpr int highestNumber = 4095;

// White is true. Numbers beyond the highest begin anew.
std::vector<bool> cells(int number);

// The number in a picture of 0xXXRRGGBB words, `stride` words a row; nothing when there is none, or it cannot be read.
std::optional<int> read(const std::uint32_t* pixels, int stride, int width, int height);

} // namespace frameCode

} // namespace showroom::media
