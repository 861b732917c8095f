#include "Platform/QuartzCore/RunningAnimation.h"

#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>

namespace platform {

AnimationNode AnimationNode::of(const CAAnimation& animation, double defaultDuration)
{
    AnimationNode node;
    node.timing = AnimationTiming::of(animation, defaultDuration);
    if (const auto* property = dynamic_cast<const CAPropertyAnimation*>(&animation))
        node.track = AnimationTrack::make(*property);
    else if (const auto* group = dynamic_cast<const CAAnimationGroup*>(&animation)) {
        for (const auto& member : group->animations) {
            if (member)
                node.members.push_back(of(*member, node.timing.duration));
        }
    }
    return node;
}

void AnimationNode::apply(double time, bool includesEnd, LayerPresentation& presentation) const
{
    const auto progress = timing.progressAt(time, includesEnd);
    if (!progress)
        return;
    if (track)
        track->apply(*progress, presentation);
    for (const AnimationNode& member : members)
        member.apply(*progress * timing.duration, true, presentation);
}

bool AnimationNode::animates(LayerProperty property) const
{
    return (track && track->keyPath().property == property)
        || std::ranges::any_of(members, [property](const AnimationNode& member) { return member.animates(property); });
}

void RunningAnimation::apply(double time, LayerPresentation& presentation) const
{
    // One that has not seen a commit yet stands at its start, so that what it will show is what the layer shows.
    const bool startsLater = state == State::waiting && animation->beginTime == 0;
    node.apply(startsLater ? node.timing.begin : time, false, presentation);
}

bool RunningAnimation::isUnderWay(double time) const
{
    return state == State::running && node.timing.speed != 0 && time >= node.timing.begin && time < node.timing.end();
}

} // namespace platform
