#include "Platform/QuartzCore/AnimationTimeline.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/CATransaction.h"
#include "Platform/QuartzCore/FrameRequest.h"
#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>

namespace platform {

void CALayer::addAnimation(const std::shared_ptr<CAAnimation>& animation, const std::string& key)
{
    if (animation)
        AnimationTimeline::shared().add(*this, *animation, key);
}

void CALayer::removeAnimation(const std::string& key) { AnimationTimeline::shared().remove(*this, key); }

void CALayer::removeAllAnimations() { AnimationTimeline::shared().removeAll(*this); }

std::shared_ptr<CAAnimation> CALayer::animation(const std::string& key) const
{
    if (!animations_ || key.empty())
        return nullptr;
    const auto found = std::ranges::find(animations_->list, key, &RunningAnimation::key);
    return found == animations_->list.end() ? nullptr : (*found)->animation;
}

std::vector<std::string> CALayer::animationKeys() const
{
    std::vector<std::string> keys;
    if (!animations_)
        return keys;
    for (const auto& animation : animations_->list) {
        if (!animation->key.empty())
            keys.push_back(animation->key);
    }
    return keys;
}

bool CALayer::hasAnimations() const { return animations_ && !animations_->list.empty(); }

CAValue CALayer::presentationValue(std::string_view keyPath, double time) const
{
    const auto parsed = AnimationKeyPath::parse(keyPath);
    if (!parsed || !hasAnimations())
        return modelValue(keyPath);
    return animations_->presentation(*this, time).value(*parsed);
}

CAValue CALayer::modelValue(std::string_view keyPath) const
{
    const auto parsed = AnimationKeyPath::parse(keyPath);
    return parsed ? LayerPresentation(*this).value(*parsed) : CAValue {};
}

CGRect CALayer::presentationFrame(double time) const
{
    if (!hasAnimations())
        return frame();
    const LayerValues shown = animations_->presentation(*this, time).layer;
    return shown.toSuperlayer().apply(shown.bounds);
}

void CALayer::changePath(std::shared_ptr<const CGPath>& field, const std::shared_ptr<const CGPath>& value, std::string_view key)
{
    const bool alike = field && value && *field == *value;
    if (!alike)
        change(field, value, key);
}

std::shared_ptr<CABasicAnimation> CALayer::actionFor(std::string_view key)
{
    if (!delegate_ || CATransaction::disableActions())
        return nullptr;
    auto action = delegate_->actionForLayer(*this, key);
    if (!action)
        return nullptr;
    if (action->keyPath.empty())
        action->keyPath = key;
    if (std::holds_alternative<std::monostate>(action->fromValue))
        action->fromValue = presentationValue(action->keyPath, AnimationTimeline::shared().now());
    return action;
}

void CALayer::didChange(std::shared_ptr<CABasicAnimation> action, std::string_view key)
{
    didChange();
    if (!action)
        return;
    // A colour that was not there comes out of its own clear shade.
    const CAValue now = modelValue(action->keyPath);
    const auto* color = std::get_if<CGColor>(&now);
    if (color && std::holds_alternative<std::monostate>(action->fromValue))
        action->fromValue = CGColor { color->red, color->green, color->blue, 0 };
    addAnimation(action, std::string(key));
}

void CALayer::didChange()
{
    ++changeCount_;
    FrameRequest::noteChange();
}

} // namespace platform
