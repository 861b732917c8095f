#include "Platform/UIKit/ScrollIndicator.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/QuartzCore/CAAnimation.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double thickness = 3; // points
constexpr double distance = 3; // from the side and from the ends
constexpr double shortest = 36;
constexpr double squeezed = 8; // the shortest beyond an end
constexpr double stays = 0.4; // seconds after the last movement
constexpr double fades = 0.25;

} // namespace

ScrollIndicator::~ScrollIndicator()
{
    if (layer)
        layer->removeFromSuperlayer();
}

void ScrollIndicator::show(UIView& view, const CGRect& track, const Range& range)
{
    if (!layer) {
        layer = make<CALayer>();
        layer->setZPosition(1e6); // in front of whatever is added later
        layer->setCornerRadius(thickness / 2);
        view.layer()->addSublayer(layer);
    }
    const bool dark = view.traitCollection().isDark();
    layer->setBackgroundColor((dark ? UIColor::white(1, 0.45) : UIColor::white(0, 0.35)).cgColor());
    layer->removeAnimation("fade");
    layer->setOpacity(1);
    CGRect bar = barFrame(track, range);
    if (vertical && view.effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft)
        bar.x = track.x + track.maxX() - bar.maxX();
    layer->setFrame(bar);
}

void ScrollIndicator::hideSoon()
{
    if (!layer || layer->opacity() == 0 || layer->animation("fade"))
        return;
    const auto fade = CABasicAnimation::withKeyPath("opacity");
    fade->fromValue = 1.0;
    fade->toValue = 0.0;
    fade->duration = fades;
    fade->beginTime = Clock::current().now() + stays;
    fade->fillMode = CAMediaTimingFillMode::backwards;
    layer->setOpacity(0);
    layer->addAnimation(fade, "fade");
}

void ScrollIndicator::hide()
{
    if (!layer)
        return;
    layer->removeAnimation("fade");
    layer->setOpacity(0);
}

CGRect ScrollIndicator::barFrame(const CGRect& track, const Range& range) const
{
    const double room = (vertical ? track.height : track.width) - 2 * distance;
    const double seen = vertical ? track.height : track.width;
    const double way = range.high - range.low;
    const double beyond = std::max({ 0.0, range.low - range.offset, range.offset - range.high });
    const double natural = std::max(shortest, room * seen / std::max(way + seen, 1.0));
    const double length = std::clamp(natural - beyond, std::min(squeezed, room), std::max(room, 0.0));
    const double part = way > 0 ? std::clamp((range.offset - range.low) / way, 0.0, 1.0) : 0;
    const double start = distance + part * (room - length);
    if (vertical)
        return { track.maxX() - distance - thickness, track.y + start, thickness, length };
    return { track.x + start, track.maxY() - distance - thickness, length, thickness };
}

} // namespace platform
