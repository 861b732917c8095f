#pragma once

#include "Platform/AVFoundation/MediaModule.h"

namespace platform {

std::unique_ptr<MediaPipeline> openPlaybin(const std::string& address, MediaPace pace, std::shared_ptr<MediaListener> listener);

} // namespace platform
