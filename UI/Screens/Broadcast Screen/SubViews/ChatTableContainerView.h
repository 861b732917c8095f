#pragma once

#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// Holds the chat: what lies in it fades in over its top quarter and ends just above its bottom edge.
class ChatTableContainerView final : public UIView {
public:
    explicit ChatTableContainerView(const CGRect& frame = {});

protected:
    // UIView
    void layoutSubviews() override;

private:
    const std::shared_ptr<CAGradientLayer> fadingGradientLayer;
    const std::shared_ptr<UIView> fadingView; // over that layer, which so goes along in animated changes
};

} // namespace mv
