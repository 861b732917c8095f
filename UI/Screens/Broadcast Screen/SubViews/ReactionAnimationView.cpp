#include "UI/Screens/Broadcast Screen/SubViews/ReactionAnimationView.h"

#include "Platform/QuartzCore/CATransaction.h"
#include "Platform/UIKit/UIImageView.h"
#include "UI/Extensions/MVSetters.h"

#include <cstdlib>

namespace mv {

namespace {

constexpr CGRect iconFrame { 0, 0, 35, 35 };

std::shared_ptr<const CAMediaTimingFunction> easeOut()
{
    static const auto curve = std::make_shared<const CAMediaTimingFunction>(CAMediaTimingFunction::easeOut());
    return curve;
}

bool coin() { return drand48() > 0.5; }

} // namespace

ReactionAnimationView::ReactionAnimationView(const CGRect& frame)
    : UIView(frame)
{
    setBackgroundColor(UIColor::clear());
}

void ReactionAnimationView::animate(const std::shared_ptr<const UIImage>& icon)
{
    if (!window())
        return; // no frame would see it, and so none would end it
    const auto imageView
        = make<UIImageView>(iconFrame) | mv::setContentMode(UIViewContentMode::scaleAspectFit) | mv::setImage(icon);
    CATransaction::begin();
    CATransaction::setCompletionBlock([flown = weak(imageView)] {
        if (const auto view = flown.lock()) {
            view->setHidden(true);
            view->removeFromSuperview();
        }
    });
    const auto path = customPath(coin() ? PathType::one : PathType::two);
    const double duration = coin() ? 3 : 5;
    const auto position = positionAnimation(duration - 1, path);
    const auto scale = scaleAnimation(duration);
    const auto opacity = opacityAnimation(duration);
    imageView->layer()->addAnimation(groupAnimation(duration, { position, scale, opacity }));
    CATransaction::commit();
    addSubview(imageView);
}

std::shared_ptr<CAKeyframeAnimation> ReactionAnimationView::positionAnimation(
    double duration, std::shared_ptr<const CGPath> path) const
{
    const auto animation = CAKeyframeAnimation::withKeyPath("position");
    animation->path = std::move(path);
    animation->duration = duration;
    animation->fillMode = CAMediaTimingFillMode::forwards; // the icon waits at the top for the group's last second
    animation->timingFunction = easeOut();
    animation->removedOnCompletion = true;
    return animation;
}

std::shared_ptr<CABasicAnimation> ReactionAnimationView::scaleAnimation(double duration) const
{
    const auto animation = CABasicAnimation::withKeyPath("transform.scale");
    animation->fromValue = 1.0;
    animation->toValue = 0.0;
    animation->duration = duration;
    animation->timingFunction = easeOut();
    animation->removedOnCompletion = true;
    return animation;
}

std::shared_ptr<CAKeyframeAnimation> ReactionAnimationView::opacityAnimation(double duration) const
{
    const auto animation = CAKeyframeAnimation::withKeyPath("opacity");
    animation->values = { 1.0, 0.7, 0.0 };
    animation->keyTimes = { 0.4, 0.8, 5 }; // the last one lies beyond the end: the icon is still at about 0.67 when it goes
    animation->duration = duration;
    animation->removedOnCompletion = true;
    return animation;
}

std::shared_ptr<CAAnimationGroup> ReactionAnimationView::groupAnimation(
    double duration, std::vector<std::shared_ptr<CAAnimation>> animations) const
{
    const auto group = make<CAAnimationGroup>();
    group->animations = std::move(animations);
    group->duration = duration;
    group->timingFunction = easeOut();
    group->removedOnCompletion = true;
    return group;
}

std::shared_ptr<const CGPath> ReactionAnimationView::customPath(PathType type) const
{
    const auto edge = bounds();
    const bool mirrors = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    const auto beforeEnd = [&](CGFloat distance) { return mirrors ? edge.x + distance : edge.maxX() - distance; };
    const bool inwardsFirst = type == PathType::one;
    constexpr CGFloat middle = 50, inwards = 120, outwards = -20; // points from the trailing edge
    const auto path = std::make_shared<CGPath>();
    path->moveTo({ beforeEnd(middle), edge.maxY() });
    path->curveTo({ beforeEnd(inwardsFirst ? inwards : outwards), edge.maxY() * 3 / 4 },
        { beforeEnd(inwardsFirst ? outwards : inwards), edge.maxY() / 4 }, { beforeEnd(middle), 0 });
    return path;
}

bool ReactionAnimationView::pointInside(CGPoint, const UIEvent*) const { return false; }

void ReactionAnimationView::didMoveToWindow()
{
    UIView::didMoveToWindow();
    const auto icons = subviews();
    for (const auto& icon : icons)
        icon->removeFromSuperview();
}

} // namespace mv
