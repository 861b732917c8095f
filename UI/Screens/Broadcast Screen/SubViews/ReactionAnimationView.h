#pragma once

#include "Platform/UIKit/UIImage.h"
#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// Lies over the video and lets reactions drift up along its trailing edge (the right one unless the interface runs from right to
// left), each on one of two curves, shrinking and fading. Touches pass through it.
class ReactionAnimationView final : public UIView {
public:
    enum class PathType { one, two }; // swings inwards first, or towards the trailing edge first

    explicit ReactionAnimationView(const CGRect& frame = {});

    // One icon, once, from the next frame on; it removes itself when it has arrived, or when the view leaves its window. Outside
    // a window nothing flies. An icon of nothing flies unseen.
    void animate(const std::shared_ptr<const UIImage>& icon);

    std::shared_ptr<CAKeyframeAnimation> positionAnimation(double duration, std::shared_ptr<const CGPath> path) const; // seconds
    std::shared_ptr<CABasicAnimation> scaleAnimation(double duration) const;
    std::shared_ptr<CAKeyframeAnimation> opacityAnimation(double duration) const;
    std::shared_ptr<CAAnimationGroup> groupAnimation(double duration, std::vector<std::shared_ptr<CAAnimation>> animations) const;
    std::shared_ptr<const CGPath> customPath(PathType type) const; // from the bottom edge to the top edge of the bounds

    // UIView
    bool pointInside(CGPoint point, const UIEvent* event) const override;

protected:
    void didMoveToWindow() override;
};

} // namespace mv
