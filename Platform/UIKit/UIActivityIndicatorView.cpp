#include "Platform/UIKit/UIActivityIndicatorView.h"

#include "Platform/CoreGraphics/CGContext.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace platform {

namespace {

constexpr const char* turning = "turning"; // the animation's key
constexpr double secondsPerTurn = 1;

// A ring of spokes, in points.
struct Ring {
    CGFloat side;
    int spokes;
    CGFloat inner; // radius at which a spoke begins; it ends at the edge
    CGFloat width;
    double faintest; // opacity of the weakest spoke
};

constexpr Ring mediumRing { 20, 8, 5, 2.6, 0.25 };
constexpr Ring largeRing { 37, 8, 9.25, 4.8, 0.25 };
constexpr Ring grayRing { 20, 12, 5, 2, 0.2 };

const Ring& ringOf(UIActivityIndicatorViewStyle style)
{
    switch (style) {
    case UIActivityIndicatorViewStyle::medium:
        return mediumRing;
    case UIActivityIndicatorViewStyle::large:
        return largeRing;
    case UIActivityIndicatorViewStyle::gray:
        return grayRing;
    }
    return mediumRing;
}

// The strongest spoke points to step `step` of the turn, clockwise from the top; the others fade behind it.
std::shared_ptr<const Bitmap> drawRing(const Ring& ring, int step, int width, int height)
{
    auto pixels = Bitmap::make(width, height, PixelFormat::argb, true);
    if (!pixels)
        return nullptr;
    CGContext context(*pixels, CGAffineTransform::scale(width / ring.side, height / ring.side));
    const CGFloat middle = ring.side / 2;
    const CGFloat outer = middle - ring.width / 2, inner = ring.inner + ring.width / 2; // of the line inside its round caps
    for (int age = 0; age < ring.spokes; ++age) {
        const double angle = (step - age) * 2 * std::numbers::pi / ring.spokes;
        const double across = std::sin(angle), down = -std::cos(angle);
        CGPath spoke;
        spoke.moveTo({ middle + inner * across, middle + inner * down });
        spoke.lineTo({ middle + outer * across, middle + outer * down });
        const double opacity = 1 - (1 - ring.faintest) * age / (ring.spokes - 1);
        context.stroke(spoke, CGColor { 0, 0, 0, opacity }, ring.width, CGLineCap::round);
    }
    return pixels;
}

// One drawing a step, shared by all indicators of a style.
const std::vector<CAValue>& picturesOf(const Ring& ring)
{
    static std::vector<std::pair<const Ring*, std::vector<CAValue>>> made;
    for (const auto& [known, pictures] : made)
        if (known == &ring)
            return pictures;
    std::vector<CAValue> pictures;
    pictures.reserve(std::size_t(ring.spokes));
    for (int step = 0; step < ring.spokes; ++step)
        pictures.emplace_back(CGImage::fromDrawing(
            ring.side, ring.side, [&ring, step](int width, int height) { return drawRing(ring, step, width, height); }));
    return made.emplace_back(&ring, std::move(pictures)).second;
}

UIColor defaultColor()
{
    return UIColor::dynamic(
        [](const UITraitCollection& traits) { return traits.isDark() ? UIColor::white(0.6) : UIColor::white(0.54); });
}

} // namespace

UIActivityIndicatorView::UIActivityIndicatorView(UIActivityIndicatorViewStyle style)
    : UIView({ 0, 0, ringOf(style).side, ringOf(style).side })
    , style_(style)
    , color_(style == UIActivityIndicatorViewStyle::gray ? UIColor::gray() : defaultColor())
{
    UIView::setUserInteractionEnabled(false);
    UIView::setContentMode(UIViewContentMode::scaleAspectFit);
    layer()->setContents(std::get<std::shared_ptr<const CGImage>>(picturesOf(ringOf(style)).front()));
    showColor();
    setHidden(true);
}

void UIActivityIndicatorView::setColor(const UIColor& color)
{
    color_ = color;
    showColor();
}

void UIActivityIndicatorView::setHidesWhenStopped(bool hides)
{
    hidesWhenStopped_ = hides;
    setHidden(hides && !animating);
}

void UIActivityIndicatorView::startAnimating()
{
    if (animating)
        return;
    animating = true;
    setHidden(false);
    auto turn = CAKeyframeAnimation::withKeyPath("contents");
    turn->values = picturesOf(ringOf(style_));
    turn->calculationMode = CAAnimationCalculationMode::discrete;
    turn->duration = secondsPerTurn;
    turn->repeatCount = std::numeric_limits<double>::infinity();
    turn->removedOnCompletion = false; // goes on when the view is taken out and put back
    layer()->addAnimation(turn, turning);
}

void UIActivityIndicatorView::stopAnimating()
{
    if (!animating)
        return;
    animating = false;
    layer()->removeAnimation(turning);
    setHidden(hidesWhenStopped_);
}

CGSize UIActivityIndicatorView::intrinsicContentSize() const { return { ringOf(style_).side, ringOf(style_).side }; }

CGSize UIActivityIndicatorView::sizeThatFits(const CGSize& /*size*/) const { return intrinsicContentSize(); }

void UIActivityIndicatorView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    showColor();
}

void UIActivityIndicatorView::showColor() { layer()->setContentsTint(color_.cgColor(traitCollection())); }

} // namespace platform
