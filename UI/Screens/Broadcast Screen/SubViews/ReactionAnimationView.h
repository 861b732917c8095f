#pragma once

#include "Platform/UIKit/UIImage.h"
#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// Lies over the video and lets reactions drift up its right side, each along one of two curves, shrinking and fading. Touches
// pass through it.
class ReactionAnimationView final : public UIView {
public:
    enum class PathType { one, two }; // swings left first, or right first

    explicit ReactionAnimationView(const CGRect& frame = {});

    // One icon, once; it removes itself when it has arrived.
    void animate(const std::shared_ptr<const UIImage>& icon);

    std::shared_ptr<CAKeyframeAnimation> positionAnimation(double duration, std::shared_ptr<const CGPath> path) const; // seconds
    std::shared_ptr<CABasicAnimation> scaleAnimation(double duration) const;
    std::shared_ptr<CAKeyframeAnimation> opacityAnimation(double duration) const;
    std::shared_ptr<CAAnimationGroup> groupAnimation(double duration, std::vector<std::shared_ptr<CAAnimation>> animations) const;
    std::shared_ptr<const CGPath> customPath(PathType type) const; // from the bottom edge to the top edge of the bounds

    // UIView
    bool pointInside(CGPoint point, const UIEvent* event) const override;
};

} // namespace mv
