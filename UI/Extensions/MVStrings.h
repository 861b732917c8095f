#pragma once

#include "Service/MVPlatform.h"

#include <optional>
#include <string>
#include <string_view>

namespace mv {

// Standard base64, padded, of the text's bytes; absent for a text that is not UTF-8.
std::optional<std::string> base64String(std::string_view text);

} // namespace mv
