#include "Platform/QuartzCore/AnimationTimeline.h"

#include "Platform/QuartzCore/CATransaction.h"
#include "Platform/QuartzCore/FrameRequest.h"
#include "Platform/QuartzCore/LayerPresentation.h"
#include "Platform/QuartzCore/TransactionRecord.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr double clockRounding = 1e-6; // seconds; an end that close has come

const CALayer* topmost(const CALayer* layer)
{
    while (layer->superlayer())
        layer = layer->superlayer();
    return layer;
}

RunningAnimation::Reach reachOf(const AnimationNode& node)
{
    using Reach = RunningAnimation::Reach;
    Reach reach = Reach::still;
    if (node.track) {
        const AnimationKeyPath path = node.track->keyPath();
        switch (path.property) {
        case LayerProperty::transform:
            reach = path.part == ValuePart::rotation ? Reach::turning : Reach::anywhere;
            break;
        case LayerProperty::position:
        case LayerProperty::bounds:
        case LayerProperty::anchorPoint:
        case LayerProperty::opacity:
        case LayerProperty::sublayerTransform:
            reach = Reach::anywhere;
            break;
        default:
            break;
        }
    }
    for (const AnimationNode& member : node.members)
        reach = std::max(reach, reachOf(member));
    return reach;
}

} // namespace

bool CALayer::Animations::animates(LayerProperty property) const
{
    return std::ranges::any_of(list, [property](const auto& animation) { return animation->node.animates(property); });
}

LayerPresentation CALayer::Animations::presentation(const CALayer& layer, double time) const
{
    LayerPresentation result(layer);
    for (const auto& animation : list)
        animation->apply(time, result);
    return result;
}

AnimationTimeline& AnimationTimeline::shared()
{
    static AnimationTimeline& timeline = *new AnimationTimeline;
    return timeline;
}

void AnimationTimeline::add(CALayer& layer, const CAAnimation& description, const std::string& key)
{
    remove(layer, key);
    auto running = std::make_shared<RunningAnimation>();
    running->layer = &layer;
    running->key = key;
    running->animation = description.copy();
    if (!running->animation->timingFunction)
        running->animation->timingFunction = CATransaction::animationTimingFunction();
    running->node = AnimationNode::of(*running->animation, CATransaction::animationDuration());
    running->animation->duration = running->node.timing.duration;
    running->animation->beginTime = running->node.timing.begin;
    running->reach = reachOf(running->node);
    running->order = ++lastOrder;
    running->transaction = CATransaction::currentRecord();
    if (running->transaction)
        running->transaction->addOne();
    if (!layer.animations_)
        layer.animations_ = std::make_unique<CALayer::Animations>();
    layer.animations_->list.push_back(running);
    all.push_back(std::move(running));
    if (topmost(&layer)->detached_)
        noteDetached();
    FrameRequest::noteChange();
}

void AnimationTimeline::remove(CALayer& layer, const std::string& key)
{
    if (key.empty() || !layer.animations_)
        return;
    const auto& list = layer.animations_->list;
    const auto found = std::ranges::find(list, key, &RunningAnimation::key);
    if (found == list.end())
        return;
    const auto animation = *found;
    takeOff(*animation);
    announceEnd(*animation, false);
}

void AnimationTimeline::removeAll(CALayer& layer)
{
    if (!layer.animations_)
        return;
    const auto list = std::exchange(layer.animations_->list, {});
    for (const auto& animation : list) {
        animation->layer = nullptr;
        announceEnd(*animation, false);
    }
    if (!list.empty())
        FrameRequest::noteChange();
}

void AnimationTimeline::finish(double time)
{
    now_ = time;
    std::vector<std::shared_ptr<RunningAnimation>> ended;
    for (const auto& animation : all) {
        if (animation->layer && animation->state == RunningAnimation::State::running
            && animation->node.timing.end() <= time + clockRounding)
            ended.push_back(animation);
    }
    std::ranges::sort(ended, {}, [](const auto& animation) { return std::pair(animation->node.timing.end(), animation->order); });
    for (const auto& animation : ended) {
        if (animation->animation->removedOnCompletion)
            takeOff(*animation);
        animation->state = RunningAnimation::State::finished;
        announceEnd(*animation, true);
        FrameRequest::noteChange();
    }
    forgetTakenOff();
    // What these callbacks bring about is told at the next step, so that a chain of them cannot hold up a frame.
    for (const auto& callback : std::exchange(callbacks, {}))
        callback();
}

void AnimationTimeline::start(const std::vector<std::shared_ptr<CALayer>>& roots, double time)
{
    now_ = time;
    const auto isInTree = [&roots](const CALayer* layer) {
        const CALayer* root = topmost(layer);
        return std::ranges::any_of(roots, [root](const auto& one) { return one.get() == root; });
    };
    const bool looksForDetached = std::exchange(someDetached, false);
    for (const auto& animation : all) {
        if (!animation->layer)
            continue;
        if (animation->state == RunningAnimation::State::waiting && isInTree(animation->layer)) {
            animation->state = RunningAnimation::State::running;
            if (animation->animation->beginTime == 0)
                animation->node.timing.begin = time;
        } else if (looksForDetached && isDetached(*animation) && !isInTree(animation->layer)) {
            takeOff(*animation);
            announceEnd(*animation, false);
        }
    }
    forgetTakenOff();
}

double AnimationTimeline::nextEventTime() const
{
    double next = std::numeric_limits<double>::infinity();
    for (const auto& animation : all) {
        if (!animation->layer || animation->state != RunningAnimation::State::running)
            continue;
        const AnimationTiming& timing = animation->node.timing;
        next = std::min(next, now_ < timing.begin ? timing.begin : timing.end());
    }
    return next;
}

void AnimationTimeline::callLater(std::function<void()> callback)
{
    callbacks.push_back(std::move(callback));
    FrameRequest::make();
}

void AnimationTimeline::takeOff(RunningAnimation& animation)
{
    std::erase_if(animation.layer->animations_->list, [&](const auto& other) { return other.get() == &animation; });
    animation.layer = nullptr;
    FrameRequest::noteChange();
}

void AnimationTimeline::announceEnd(RunningAnimation& animation, bool finished)
{
    if (auto onStop = std::exchange(animation.animation->onStop, nullptr))
        callLater([onStop = std::move(onStop), finished] { onStop(finished); });
    if (const auto transaction = std::exchange(animation.transaction, nullptr))
        transaction->endOne();
}

// Its layer, or one above it, was taken out of a tree and not put back in the same turn. One that waits there would wait for ever,
// and keep what its end concerns.
bool AnimationTimeline::isDetached(const RunningAnimation& animation) const
{
    return animation.state != RunningAnimation::State::finished && animation.animation->removedOnCompletion
        && topmost(animation.layer)->detached_;
}

void AnimationTimeline::forgetTakenOff()
{
    std::erase_if(all, [](const auto& animation) { return !animation->layer; });
}

} // namespace platform
