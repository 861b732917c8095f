// Animation blocks: what a block changes on layers of views becomes animations of those layers.
#include "Platform/Foundation/Clock.h"
#include "Platform/QuartzCore/CATransaction.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform {

namespace {

struct Block {
    double duration = 0; // seconds; 0 changes at once
    double delay = 0;
    UIViewAnimationCurve curve = UIViewAnimationCurve::easeInOut;
    bool off = false; // whatever is asked for inside changes at once
    std::shared_ptr<bool> finished {}; // false as soon as one of its animations is cut short
};

// The blocks that are being run, outermost first. Main thread.
std::vector<Block>& running()
{
    static std::vector<Block> blocks;
    return blocks;
}

// Open for the length of a scope.
class RunningBlock {
public:
    explicit RunningBlock(Block block) { running().push_back(std::move(block)); }
    ~RunningBlock() { running().pop_back(); }
    RunningBlock(const RunningBlock&) = delete;
    RunningBlock& operator=(const RunningBlock&) = delete;
};

CAMediaTimingFunction timing(UIViewAnimationCurve curve)
{
    switch (curve) {
    case UIViewAnimationCurve::easeIn:
        return CAMediaTimingFunction::easeIn();
    case UIViewAnimationCurve::easeOut:
        return CAMediaTimingFunction::easeOut();
    case UIViewAnimationCurve::linear:
        return CAMediaTimingFunction::linear();
    case UIViewAnimationCurve::easeInOut:
        break;
    }
    return CAMediaTimingFunction::easeInEaseOut();
}

bool isAnimatable(std::string_view key)
{
    static constexpr std::array<std::string_view, 16> keys { "position", "bounds", "transform", "opacity", "backgroundColor",
        "cornerRadius", "borderWidth", "borderColor", "shadowColor", "shadowOpacity", "shadowRadius", "shadowOffset",
        "shadowPath", "contentsTint", "colors", "locations" };
    return std::ranges::find(keys, key) != keys.end();
}

} // namespace

void UIView::animate(double duration, const std::function<void()>& animations, std::function<void(bool)> completion)
{
    animate(duration, 0, UIViewAnimationCurve::easeInOut, animations, std::move(completion));
}

void UIView::animate(double duration, double delay, UIViewAnimationCurve curve, const std::function<void()>& animations,
    std::function<void(bool)> completion)
{
    Block block { .duration = std::isfinite(duration) ? std::max(duration, 0.0) : 0,
        .delay = std::isfinite(delay) ? std::max(delay, 0.0) : 0,
        .curve = curve,
        .off = !running().empty() && running().back().off,
        .finished = std::make_shared<bool>(true) };
    if (!running().empty() && running().back().duration > 0) {
        block.duration = running().back().duration;
        block.curve = running().back().curve;
    }
    CATransaction::begin();
    if (completion)
        CATransaction::setCompletionBlock(
            [finished = block.finished, completion = std::move(completion)] { completion(*finished); });
    if (animations) {
        const RunningBlock open(std::move(block));
        animations();
    }
    CATransaction::commit();
}

void UIView::performWithoutAnimation(const std::function<void()>& changes)
{
    if (!changes)
        return;
    const RunningBlock open(Block { .off = true });
    changes();
}

double UIView::inheritedAnimationDuration() { return running().empty() ? 0 : running().back().duration; }

std::shared_ptr<CABasicAnimation> UIView::actionForLayer(CALayer& layer, std::string_view key)
{
    if (running().empty() || running().back().off || running().back().duration <= 0 || &layer != layer_.get()
        || !isAnimatable(key))
        return nullptr;
    const Block& block = running().back();
    auto animation = CABasicAnimation::withKeyPath(std::string(key));
    animation->duration = block.duration;
    animation->timingFunction = std::make_shared<const CAMediaTimingFunction>(timing(block.curve));
    if (block.delay > 0) {
        animation->beginTime = Clock::current().now() + block.delay;
        animation->fillMode = CAMediaTimingFillMode::backwards;
    }
    animation->onStop = [finished = block.finished](bool ended) {
        if (finished && !ended)
            *finished = false;
    };
    return animation;
}

} // namespace platform
