#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Bytes of any meaning.
using Data = std::vector<std::uint8_t>;

Data dataFromText(std::string_view text);
// The bytes as text, unchecked: see validUTF8 in Text.h for bytes from outside. The view ends with the data.
std::string_view textView(const Data& data);

std::string base64(const Data& data);
// Nothing for anything that is not padded standard base64.
std::optional<Data> dataFromBase64(std::string_view text);

} // namespace platform
