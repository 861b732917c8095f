#pragma once

#include "Platform/QuartzCore/CALayer.h"

namespace platform {

// A linear gradient over its bounds, under its picture and sublayers.
class CAGradientLayer final : public CALayer {
public:
    const std::vector<CGColor>& colors() const { return colors_; } // empty draws nothing
    void setColors(std::vector<CGColor> colors);
    // 0 to 1, rising; empty spreads the colours evenly. Colours beyond the last location take no part, as on the platform.
    const std::vector<double>& locations() const { return locations_; }
    void setLocations(std::vector<double> locations);
    CGPoint startPoint() const { return startPoint_; } // in the unit square
    void setStartPoint(CGPoint p);
    CGPoint endPoint() const { return endPoint_; }
    void setEndPoint(CGPoint p);
    CAValue modelValue(std::string_view keyPath) const override;

private:
    std::vector<CGColor> colors_;
    std::vector<double> locations_;
    CGPoint startPoint_ { 0.5, 0 };
    CGPoint endPoint_ { 0.5, 1 };
};

} // namespace platform
