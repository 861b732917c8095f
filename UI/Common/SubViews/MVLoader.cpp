#include "UI/Common/SubViews/MVLoader.h"

#include "Platform/QuartzCore/CAAnimation.h"

#include <algorithm>
#include <limits>
#include <numbers>

namespace mv {

namespace {

constexpr double forEver = std::numeric_limits<double>::infinity();

// A member of the stroke's cycle; seconds from the cycle's start.
std::shared_ptr<CAAnimation> stroke(const char* keyPath, double begin, double duration, double from, double to)
{
    static const auto curve = std::make_shared<const CAMediaTimingFunction>(CAMediaTimingFunction::easeInEaseOut());
    const auto animation = CABasicAnimation::withKeyPath(keyPath);
    animation->beginTime = begin;
    animation->duration = duration;
    animation->fromValue = from;
    animation->toValue = to;
    animation->timingFunction = curve;
    return animation;
}

} // namespace

MVLoader::MVLoader(const CGRect& frame)
    : UIView(frame)
    , drawableLayer_(make<CAShapeLayer>())
    , color_(UIColor::lightGray())
{
    layer()->addSublayer(drawableLayer_);
    setUp();
}

MVLoader::MVLoader(CGFloat radius, const UIColor& color)
    : MVLoader(CGRect {})
{
    radius_ = radius;
    color_ = color;
    setUp();
}

void MVLoader::setUp()
{
    setHidden(true);
    drawableLayer_->setStrokeColor(color_.cgColor(traitCollection()));
    drawableLayer_->setLineWidth(lineWidth_);
    drawableLayer_->setFillColor(UIColor::clear().cgColor());
    drawableLayer_->setLineJoin(CGLineJoin::round);
    drawableLayer_->setStrokeStart(0.99); // a sliver while it rests
    drawableLayer_->setStrokeEnd(1);
    updatePath();
}

void MVLoader::setColor(const UIColor& color)
{
    color_ = color;
    drawableLayer_->setStrokeColor(color.cgColor(traitCollection()));
}

void MVLoader::setLineWidth(CGFloat width)
{
    lineWidth_ = width;
    drawableLayer_->setLineWidth(width);
    updatePath();
}

void MVLoader::startAnimating()
{
    if (animating)
        return;
    animating = true;
    setHidden(false);
    setupAnimation(*drawableLayer_, bounds().size());
}

void MVLoader::stopAnimating()
{
    drawableLayer_->removeAllAnimations();
    animating = false;
    setHidden(true);
}

void MVLoader::setupAnimation(CALayer& layer, CGSize /*size*/)
{
    layer.removeAllAnimations();

    const auto rotation = CABasicAnimation::withKeyPath("transform.rotation");
    rotation->fromValue = 0.0;
    rotation->toValue = 2 * std::numbers::pi;
    rotation->duration = 4;
    rotation->repeatCount = forEver;
    rotation->removedOnCompletion = false;
    layer.addAnimation(rotation, "rotation");

    const auto cycle = make<CAAnimationGroup>();
    cycle->animations = {
        stroke("strokeStart", 0.1, 1, 0, 0.25), // the arc grows to a circle, its tail to a quarter
        stroke("strokeEnd", 0.1, 1, 0, 1),
        stroke("strokeStart", 1, 0.5, 0.25, 0.99), // the tail catches up
        stroke("strokeEnd", 1, 0.5, 1, 1),
    };
    cycle->duration = 1.5;
    cycle->repeatCount = forEver;
    cycle->removedOnCompletion = false;
    layer.addAnimation(cycle, "stroke");
}

void MVLoader::layoutSubviews()
{
    UIView::layoutSubviews();
    updatePath();
}

void MVLoader::boundsDidChange(const CGRect& previous)
{
    UIView::boundsDidChange(previous);
    updatePath();
}

void MVLoader::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    setColor(color_); // a layer keeps the colour as it was resolved
}

void MVLoader::updatePath()
{
    const CGRect box = bounds();
    drawableLayer_->setFrame({ 0, 0, box.width, box.height });
    const auto circle = std::make_shared<CGPath>();
    circle->addArc({ box.midX(), box.midY() }, std::max(0.0, radius_ - lineWidth_), 0, 2 * std::numbers::pi, true);
    drawableLayer_->setPath(circle);
}

} // namespace mv
