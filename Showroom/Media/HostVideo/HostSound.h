#pragma once

#include <cstdint>
#include <vector>

namespace showroom::media {

constexpr int soundRate = 48000; // samples a second

// So many seconds of a quiet tune with a voice that babbles when the host talks (talkAt): pairs of left and right. Its end fits
// its beginning.
std::vector<std::int16_t> makeHostSound(double seconds);

} // namespace showroom::media
