#pragma once

#include "Platform/AVFoundation/VideoFrame.h"

#include <memory>

namespace platform {

// The frame of a sample of the media library (a reference that it takes over); null when its memory cannot be read.
std::shared_ptr<const VideoFrame> makeDecodedFrame(void* sample);

} // namespace platform
