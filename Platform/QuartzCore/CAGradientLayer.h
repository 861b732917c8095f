#pragma once

#include "Platform/QuartzCore/CALayer.h"

namespace platform {

// A linear gradient over its bounds, under its picture and sublayers.
class CAGradientLayer final : public CALayer {
public:
    CAGradientLayer();

    const std::vector<CGColor>& colors() const { return gradient.colors; } // empty draws nothing
    void setColors(std::vector<CGColor> colors);
    // 0 to 1, rising; empty spreads the colours evenly. Colours beyond the last location take no part, as on the platform.
    const std::vector<double>& locations() const { return gradient.locations; }
    void setLocations(std::vector<double> locations);
    CGPoint startPoint() const { return gradient.startPoint; } // in the unit square
    void setStartPoint(CGPoint p);
    CGPoint endPoint() const { return gradient.endPoint; }
    void setEndPoint(CGPoint p);
    const GradientValues& gradientValues() const { return gradient; }

private:
    GradientValues gradient;
};

} // namespace platform
