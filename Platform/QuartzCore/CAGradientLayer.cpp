#include "Platform/QuartzCore/CAGradientLayer.h"

namespace platform {

CAGradientLayer::CAGradientLayer()
    : CALayer(Kind::gradient)
{
}

void CAGradientLayer::setColors(std::vector<CGColor> colors) { change(gradient.colors, colors, "colors"); }

void CAGradientLayer::setLocations(std::vector<double> locations) { change(gradient.locations, locations, "locations"); }

void CAGradientLayer::setStartPoint(CGPoint p) { change(gradient.startPoint, p, "startPoint"); }

void CAGradientLayer::setEndPoint(CGPoint p) { change(gradient.endPoint, p, "endPoint"); }

} // namespace platform
