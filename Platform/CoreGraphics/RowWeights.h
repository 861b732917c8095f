#pragma once

#include <cstdint>

// What blurs and resampling have in common: rows that are weighed and added up, which vectorises in either direction.
namespace platform::pixels {

// sums += bytes * weight; weights add up to 256.
void weighRow(std::uint16_t* sums, const std::uint8_t* bytes, int count, std::uint16_t weight);
void roundRow(std::uint8_t* bytes, const std::uint16_t* sums, int count);

} // namespace platform::pixels
