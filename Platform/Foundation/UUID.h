#pragma once

#include <string>

namespace platform {

// A new random (version 4) identifier in its usual form, such as "3F2504E0-4F89-41D3-9A0C-0305E82C3301". Any thread.
std::string makeUUID();

} // namespace platform
