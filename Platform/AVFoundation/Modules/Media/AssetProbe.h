#pragma once

#include "Platform/AVFoundation/MediaModule.h"

namespace platform {

// Looks at what an address holds. On the worker's thread, where it also calls back, once.
void probeAsset(const std::string& address, std::function<void(const MediaFacts& facts)> done);

} // namespace platform
