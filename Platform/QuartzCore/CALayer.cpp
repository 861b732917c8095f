#include "Platform/QuartzCore/CALayer.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/QuartzCore/AnimationTimeline.h"
#include "Platform/QuartzCore/FrameRequest.h"
#include "Platform/QuartzCore/UsableNumbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr int mostLayoutRounds = 100; // a layout that marks anew each time would else never end
std::uint64_t lastId = 0;

// A rectangle of negative size, turned over.
CGRect standardized(const CGRect& r)
{
    return { std::min(r.x, r.x + r.width), std::min(r.y, r.y + r.height), std::abs(r.width), std::abs(r.height) };
}

} // namespace

CALayer::CALayer()
    : CALayer(Kind::plain)
{
}

CALayer::CALayer(Kind kind)
    : id_(++lastId)
    , kind_(kind)
{
}

CALayer::~CALayer()
{
    AnimationTimeline::shared().removeAll(*this);
    for (const auto& sublayer : sublayers_)
        release(*sublayer);
    if (mask_)
        release(*mask_);
}

void CALayer::addSublayer(const std::shared_ptr<CALayer>& layer)
{
    if (sublayers_.empty() || sublayers_.back() != layer)
        insertSublayer(layer, sublayers_.size());
}

void CALayer::insertSublayer(const std::shared_ptr<CALayer>& layer, std::size_t index)
{
    if (!layer)
        return;
    if (isWithin(*layer)) {
        NSLog("layer not added: it would hold itself");
        return;
    }
    const auto keepAlive = layer; // the argument may lie in the list that is about to change
    if (index < sublayers_.size() && sublayers_[index] == keepAlive)
        return;
    keepAlive->removeFromSuperlayer();
    sublayers_.insert(sublayers_.begin() + std::ptrdiff_t(std::min(index, sublayers_.size())), keepAlive);
    adopt(*keepAlive);
    setNeedsLayout();
}

void CALayer::removeFromSuperlayer()
{
    CALayer* parent = superlayer_;
    if (!parent)
        return;
    std::shared_ptr<CALayer> keepAlive;
    if (parent->mask_.get() == this) {
        keepAlive = std::move(parent->mask_);
    } else {
        const auto place = std::ranges::find(parent->sublayers_, this, &std::shared_ptr<CALayer>::get);
        keepAlive = *place;
        parent->sublayers_.erase(place);
    }
    release(*this);
    FrameRequest::noteChange();
}

void CALayer::setMask(std::shared_ptr<CALayer> mask)
{
    if (mask_ == mask)
        return;
    if (mask && isWithin(*mask)) {
        NSLog("mask not set: it would cut itself");
        return;
    }
    if (mask_)
        release(*mask_);
    mask_ = nullptr;
    if (mask) {
        mask->removeFromSuperlayer();
        mask_ = std::move(mask);
        adopt(*mask_);
    }
    didChange();
}

CGRect CALayer::frame() const { return values_.toSuperlayer().apply(values_.bounds); }

// The bounds' size is what the transform makes that frame of; for a rotation it is as undefined as on the platform.
void CALayer::setFrame(const CGRect& newFrame)
{
    if (!areUsable("frame", { newFrame.x, newFrame.y, newFrame.width, newFrame.height }))
        return;
    const CGRect wanted = standardized(newFrame);
    LayerValues placed = values_;
    const CGRect untransformed = placed.transform.inverted().apply(CGRect { 0, 0, wanted.width, wanted.height });
    placed.bounds.width = untransformed.width;
    placed.bounds.height = untransformed.height;
    placed.position = {};
    const CGRect box = placed.toSuperlayer().apply(placed.bounds);
    setBounds(placed.bounds);
    setPosition({ wanted.x - box.x, wanted.y - box.y });
}

void CALayer::setBounds(const CGRect& newBounds)
{
    if (!areUsable("bounds", { newBounds.x, newBounds.y, newBounds.width, newBounds.height }))
        return;
    const CGSize before = values_.bounds.size();
    change(values_.bounds, standardized(newBounds), "bounds");
    if (before == values_.bounds.size())
        return;
    setNeedsLayout();
    if (drawsContent_)
        setNeedsDisplay();
}

void CALayer::setPosition(CGPoint position)
{
    if (areUsable("position", { position.x, position.y }))
        change(values_.position, position, "position");
}

void CALayer::setAnchorPoint(CGPoint anchorPoint)
{
    if (areUsable("anchor point", { anchorPoint.x, anchorPoint.y }))
        change(values_.anchorPoint, anchorPoint, "anchorPoint");
}

void CALayer::setTransform(const CGAffineTransform& t)
{
    if (areUsable("transform", { t.a, t.b, t.c, t.d, t.tx, t.ty }))
        change(values_.transform, t, "transform");
}

void CALayer::setSublayerTransform(const CGAffineTransform& t)
{
    if (areUsable("sublayer transform", { t.a, t.b, t.c, t.d, t.tx, t.ty }))
        change(values_.sublayerTransform, t, "sublayerTransform");
}

void CALayer::setZPosition(CGFloat z)
{
    if (areUsable("z position", { z }))
        change(values_.zPosition, z, "zPosition");
}

CGAffineTransform CALayer::transformToSuperlayer() const
{
    const CGAffineTransform own = values_.toSuperlayer();
    return superlayer_ ? own.then(superlayer_->values_.sublayersToBounds()) : own;
}

CGPoint CALayer::convertTo(CGPoint point, const CALayer* other) const
{
    const auto toRoot = [](const CALayer* layer, const CALayer*& root) {
        CGAffineTransform transform;
        for (; layer->superlayer_; layer = layer->superlayer_)
            transform = transform.then(layer->transformToSuperlayer());
        root = layer;
        return transform;
    };
    const CALayer *ownRoot, *otherRoot;
    CGAffineTransform outwards = toRoot(this, ownRoot);
    if (!other)
        return outwards.apply(point);
    CGAffineTransform otherOutwards = toRoot(other, otherRoot);
    if (ownRoot != otherRoot) { // two trees meet on the screen
        outwards = outwards.then(ownRoot->transformToSuperlayer());
        otherOutwards = otherOutwards.then(otherRoot->transformToSuperlayer());
    }
    return outwards.then(otherOutwards.inverted()).apply(point);
}

void CALayer::setNeedsDisplay()
{
    if (needsDisplay_)
        return;
    needsDisplay_ = true;
    markAncestors(&CALayer::subtreeNeedsDisplay_);
    FrameRequest::noteChange();
}

void CALayer::setDrawsContent(bool draws)
{
    if (drawsContent_ == draws)
        return;
    drawsContent_ = draws;
    backing = nullptr;
    didChange();
    if (draws)
        setNeedsDisplay();
}

void CALayer::drawInContext(CGContext& context)
{
    if (delegate_)
        delegate_->drawLayer(*this, context);
}

void CALayer::displayIfNeeded(CGFloat scale)
{
    const bool drawsAnew = drawsContent_ && (needsDisplay_ || backingScale != scale);
    needsDisplay_ = false;
    if (!drawsAnew)
        return;
    backingScale = scale;
    display(scale);
}

void CALayer::display(CGFloat scale)
{
    const CGRect& area = values_.bounds;
    const PixelRect pixels = PixelRect::around({ 0, 0, area.width * scale, area.height * scale });
    const auto bitmap = Bitmap::make(pixels.width, pixels.height, PixelFormat::argb, true);
    if (bitmap) {
        CGContext context(*bitmap, CGAffineTransform { scale, 0, 0, scale, -area.x * scale, -area.y * scale });
        drawInContext(context);
    }
    backing = bitmap ? CGImage::fromBitmap(bitmap) : nullptr;
    ++changeCount_;
}

void CALayer::setNeedsLayout()
{
    if (needsLayout_)
        return;
    needsLayout_ = true;
    markAncestors(&CALayer::subtreeNeedsLayout_);
    FrameRequest::noteChange();
}

void CALayer::layoutIfNeeded()
{
    CALayer* top = this;
    while (top->superlayer_ && top->superlayer_->needsLayout_)
        top = top->superlayer_;
    top->layoutUntilSettled();
}

void CALayer::layoutSublayers()
{
    if (delegate_)
        delegate_->layoutSublayersOf(*this);
}

bool CALayer::isWithin(const CALayer& other) const
{
    const CALayer* layer = this;
    while (layer && layer != &other)
        layer = layer->superlayer_;
    return layer;
}

void CALayer::adopt(CALayer& layer)
{
    layer.superlayer_ = this;
    layer.detached_ = false;
    if (layer.needsLayout_ || layer.subtreeNeedsLayout_)
        layer.markAncestors(&CALayer::subtreeNeedsLayout_);
    if (layer.needsDisplay_ || layer.subtreeNeedsDisplay_)
        layer.markAncestors(&CALayer::subtreeNeedsDisplay_);
    FrameRequest::noteChange();
}

void CALayer::release(CALayer& layer)
{
    layer.superlayer_ = nullptr;
    layer.detached_ = true;
    AnimationTimeline::shared().noteDetached();
}

// Stops at the first marked one, above which all are marked.
void CALayer::markAncestors(bool CALayer::*mark)
{
    for (CALayer* layer = superlayer_; layer && !(layer->*mark); layer = layer->superlayer_)
        layer->*mark = true;
}

void CALayer::layoutUntilSettled()
{
    for (int round = 0; round < mostLayoutRounds; ++round) {
        if (!layoutPending())
            return;
        layoutSubtree();
    }
    static bool said = false; // it would be said in every frame
    if (layoutPending() && !std::exchange(said, true))
        NSLog("layout does not settle: a layer marks itself in each of its layouts");
}

void CALayer::layoutSubtree()
{
    if (std::exchange(needsLayout_, false))
        layoutSublayers();
    if (!std::exchange(subtreeNeedsLayout_, false))
        return;
    // By index, since a layout may change the list it is called from.
    for (std::size_t i = 0; i < sublayers_.size(); ++i) {
        const auto sublayer = sublayers_[i];
        if (sublayer->layoutPending())
            sublayer->layoutSubtree();
    }
    if (mask_ && mask_->layoutPending())
        mask_->layoutSubtree();
    // One that the change moved out of the way is found again in the next round.
    for (const auto& sublayer : sublayers_) {
        if (sublayer->layoutPending())
            sublayer->markAncestors(&CALayer::subtreeNeedsLayout_);
    }
}

} // namespace platform
