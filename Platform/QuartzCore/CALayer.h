#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/QuartzCore/CAAnimation.h"
#include "Platform/QuartzCore/LayerValues.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class CALayer;
class CGContext;

// How a layer's picture lies in its bounds.
enum class CALayerContentsGravity : unsigned char {
    resize,
    resizeAspect,
    resizeAspectFill,
    center,
    top,
    bottom,
    left,
    right,
    topLeft,
    topRight,
    bottomLeft,
    bottomRight
};

// Bits of the corners that a corner radius rounds.
enum CACornerMask : unsigned char { minXMinY = 1, maxXMinY = 2, minXMaxY = 4, maxXMaxY = 8, allCorners = 15 };

class CALayerDelegate {
public:
    virtual ~CALayerDelegate() = default;
    virtual void layoutSublayersOf(CALayer&) { }
    virtual void drawLayer(CALayer&, CGContext&) { }
    // The animation for a change of a property that is about to happen; null for none. The layer fills in the key path and the
    // start value (what is seen at present) where they are absent, and runs it under the property's name.
    virtual std::shared_ptr<CABasicAnimation> actionForLayer(CALayer&, std::string_view /*key*/) { return nullptr; }
};

// The one home of visual state: what a view shows is what its layer says. Values here are the model; running animations change
// only what a frame shows. Every setter with an equal value does nothing. Main thread.
class CALayer : public NSObject {
public:
    CALayer();
    ~CALayer() override;
    std::uint64_t id() const { return id_; } // never reused

    // Tree. A layer holds its sublayers; back to front.
    const std::vector<std::shared_ptr<CALayer>>& sublayers() const { return sublayers_; }
    CALayer* superlayer() const { return superlayer_; }
    void addSublayer(const std::shared_ptr<CALayer>& layer);
    void insertSublayer(const std::shared_ptr<CALayer>& layer, std::size_t index);
    void removeFromSuperlayer();
    void setDelegate(CALayerDelegate* delegate) { delegate_ = delegate; } // cleared by its owner
    CALayerDelegate* delegate() const { return delegate_; }

    // Geometry, points. frame is derived from the others.
    CGRect frame() const;
    void setFrame(const CGRect& frame);
    const CGRect& bounds() const { return values_.bounds; }
    void setBounds(const CGRect& bounds);
    CGPoint position() const { return values_.position; }
    void setPosition(CGPoint position);
    CGPoint anchorPoint() const { return values_.anchorPoint; }
    void setAnchorPoint(CGPoint anchorPoint);
    const CGAffineTransform& transform() const { return values_.transform; }
    void setTransform(const CGAffineTransform& transform);
    const CGAffineTransform& sublayerTransform() const { return values_.sublayerTransform; }
    void setSublayerTransform(const CGAffineTransform& transform);
    CGFloat zPosition() const { return values_.zPosition; }
    void setZPosition(CGFloat z);
    // This layer's coordinates to its superlayer's.
    CGAffineTransform transformToSuperlayer() const;
    CGPoint convertTo(CGPoint point, const CALayer* other) const; // null: the root's coordinates

    // Looks.
    bool isHidden() const { return hidden_; }
    void setHidden(bool hidden);
    double opacity() const { return values_.opacity; } // 0 to 1; applies to the layer with all its sublayers as one picture
    void setOpacity(double opacity);
    const std::optional<CGColor>& backgroundColor() const { return values_.backgroundColor; }
    void setBackgroundColor(std::optional<CGColor> color);
    CGFloat cornerRadius() const { return values_.cornerRadius; }
    void setCornerRadius(CGFloat radius);
    unsigned char maskedCorners() const { return maskedCorners_; }
    void setMaskedCorners(unsigned char corners);
    CGFloat borderWidth() const { return values_.borderWidth; } // drawn inside the bounds, over the sublayers
    void setBorderWidth(CGFloat width);
    const std::optional<CGColor>& borderColor() const { return values_.borderColor; }
    void setBorderColor(std::optional<CGColor> color);
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);
    const std::shared_ptr<CALayer>& mask() const { return mask_; } // its alpha cuts the layer and its sublayers
    void setMask(std::shared_ptr<CALayer> mask);

    const CGColor& shadowColor() const { return values_.shadowColor; }
    void setShadowColor(const CGColor& color);
    double shadowOpacity() const { return values_.shadowOpacity; }
    void setShadowOpacity(double opacity);
    CGFloat shadowRadius() const { return values_.shadowRadius; } // points; the gaussian's sigma
    void setShadowRadius(CGFloat radius);
    CGSize shadowOffset() const { return values_.shadowOffset; }
    void setShadowOffset(CGSize offset);
    const std::shared_ptr<const CGPath>& shadowPath() const
    {
        return values_.shadowPath;
    } // null: the layer's own outline of pixels
    void setShadowPath(std::shared_ptr<const CGPath> path);

    // The picture, over the background and under the sublayers.
    const std::shared_ptr<const CGImage>& contents() const { return values_.contents; }
    void setContents(std::shared_ptr<const CGImage> contents);
    CALayerContentsGravity contentsGravity() const { return contentsGravity_; }
    void setContentsGravity(CALayerContentsGravity gravity);
    CGFloat contentsScale() const { return contentsScale_; } // pixels a point of a picture that is not resized
    void setContentsScale(CGFloat scale);
    const std::optional<CGColor>& contentsTint() const
    {
        return values_.contentsTint;
    } // fills the picture's alpha with one colour
    void setContentsTint(std::optional<CGColor> tint);
    // Gaussian sigma in points of the blur of everything that lies behind this layer, 0 for none. Saturation is multiplied too.
    CGFloat backdropBlurRadius() const { return values_.backdropBlurRadius; }
    CGFloat backdropSaturation() const { return values_.backdropSaturation; }
    void setBackdropBlur(CGFloat radius, CGFloat saturation = 1);

    // Drawing of its own: drawInContext or the delegate's drawLayer fills a backing store of the bounds' size (rounded up to
    // whole pixels) before the commit; it lies between background and contents. A new size of the bounds marks a drawing layer
    // too.
    void setNeedsDisplay();
    bool needsDisplay() const { return needsDisplay_; }
    void setDrawsContent(bool draws); // whether drawInContext / drawLayer is used at all; default false
    virtual void drawInContext(CGContext& context);
    void displayIfNeeded(CGFloat scale); // pixels a point

    // Layout: marks this layer; the frame's layout pass calls layoutSublayers once. A new size of the bounds and a new sublayer
    // mark it too.
    void setNeedsLayout();
    bool needsLayout() const { return needsLayout_; }
    // Lays out at once: from the topmost of the marked layers that lie in one line above this one, downwards.
    void layoutIfNeeded();
    // Lays out at once this one and what is below it, until nothing of it is marked: from within a layout further up.
    void layoutUntilSettled();

    // Animations. A second one under the same key replaces the first; without a key (empty) it just runs. They compose in the
    // order they were added. onStop is never called from inside these, but by the next LayerCommitter::finishAnimations.
    void addAnimation(const std::shared_ptr<CAAnimation>& animation, const std::string& key = {});
    void removeAnimation(const std::string& key);
    void removeAllAnimations();
    std::shared_ptr<CAAnimation> animation(const std::string& key) const; // the copy that runs; null for none
    std::vector<std::string> animationKeys() const; // in the order they were added, empty ones left out
    bool hasAnimations() const;
    // The value under a key path with the running animations applied at that time (seconds on the current clock), or the model's.
    // An animation that waits for its first commit counts as being at its start.
    CAValue presentationValue(std::string_view keyPath, double time) const;
    CAValue modelValue(std::string_view keyPath) const; // monostate for an unknown path and for an absent value
    CGRect presentationFrame(double time) const;

    // Bumped by every change of this layer (not of its sublayers) that can change a pixel.
    std::uint64_t changeCount() const { return changeCount_; }

    enum class Kind : unsigned char { plain, gradient, shape };
    Kind kind() const { return kind_; }
    const LayerValues& values() const { return values_; }

protected:
    explicit CALayer(Kind kind);
    virtual void layoutSublayers();
    // Fills the backing store. A drawing layer that gets its picture elsewhere sets its contents here instead: this is called for
    // a marked one in the first frame in which it can be seen.
    virtual void display(CGFloat scale); // pixels a point
    // Marks the layer for the next commit.
    void didChange();
    // Stores a property that differs from what it was, with the delegate's animation for that key.
    template <typename T> void change(T& field, const T& value, std::string_view key)
    {
        if (field == value)
            return;
        auto action = actionFor(key);
        field = value;
        didChange(std::move(action), key);
    }
    // The same for paths, of which equal ones are often built anew.
    void changePath(std::shared_ptr<const CGPath>& field, const std::shared_ptr<const CGPath>& value, std::string_view key);

private:
    friend class AnimationTimeline;
    friend class LayerCommitter;
    friend class LayerFlattener;
    struct Animations; // running animations, made at the first addAnimation

    // Before a property of that key changes: the delegate's animation for it, starting from what is seen now; null for none.
    std::shared_ptr<CABasicAnimation> actionFor(std::string_view key);
    // After it: runs the action, and marks the layer for the next commit.
    void didChange(std::shared_ptr<CABasicAnimation> action, std::string_view key);
    bool isWithin(const CALayer& other) const; // other itself or below it
    void adopt(CALayer& layer);
    void release(CALayer& layer);
    void markAncestors(bool CALayer::*mark);
    bool layoutPending() const { return needsLayout_ || subtreeNeedsLayout_; }
    bool displayPending() const { return needsDisplay_ || subtreeNeedsDisplay_; }
    void layoutSubtree();

    std::uint64_t id_;
    std::uint64_t changeCount_ = 1;
    std::vector<std::shared_ptr<CALayer>> sublayers_;
    CALayer* superlayer_ = nullptr; // of a mask: the layer it cuts
    CALayerDelegate* delegate_ = nullptr;
    LayerValues values_;
    std::shared_ptr<CALayer> mask_;
    std::unique_ptr<Animations> animations_;
    std::shared_ptr<const CGImage> backing; // what drawInContext drew
    CGFloat backingScale = 0; // pixels a point
    CGFloat contentsScale_ = 1;
    const Kind kind_;
    CALayerContentsGravity contentsGravity_ = CALayerContentsGravity::resize;
    unsigned char maskedCorners_ = allCorners;
    bool hidden_ = false;
    bool masksToBounds_ = false;
    bool drawsContent_ = false;
    bool needsDisplay_ = false;
    bool needsLayout_ = false;
    // Whether a layer below is marked, so that a frame finds the marked ones without walking the others.
    bool subtreeNeedsDisplay_ = false;
    bool subtreeNeedsLayout_ = false;
    bool detached_ = false; // was in a tree and has been taken out: its animations end at the next commit
};

} // namespace platform
