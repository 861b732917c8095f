#pragma once

#include "Service/MVEnumerations.h"

#include <memory>
#include <utility>

namespace platform {
class UIView;
}

namespace mv {

// Where and how the service draws the host's live video.
class MVVideoStreamConfig {
public:
    explicit MVVideoStreamConfig(std::shared_ptr<UIView> streamView = nullptr,
        MVVideoStreamRenderMode renderMode = MVVideoStreamRenderMode::scaleAspectFill)
        : streamContainerView(std::move(streamView))
        , streamRenderMode(renderMode)
    {
    }

    std::shared_ptr<UIView> streamContainerView; // null: the video is not shown
    MVVideoStreamRenderMode streamRenderMode;
};

} // namespace mv
