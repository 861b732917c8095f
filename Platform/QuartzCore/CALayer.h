#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/QuartzCore/CAAnimation.h"

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
    // The animation for a change of a property that is about to happen, with its start value filled in by the layer; null for
    // none.
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
    const CGRect& bounds() const { return bounds_; }
    void setBounds(const CGRect& bounds);
    CGPoint position() const { return position_; }
    void setPosition(CGPoint position);
    CGPoint anchorPoint() const { return anchorPoint_; }
    void setAnchorPoint(CGPoint anchorPoint);
    const CGAffineTransform& transform() const { return transform_; }
    void setTransform(const CGAffineTransform& transform);
    const CGAffineTransform& sublayerTransform() const { return sublayerTransform_; }
    void setSublayerTransform(const CGAffineTransform& transform);
    CGFloat zPosition() const { return zPosition_; }
    void setZPosition(CGFloat z);
    // This layer's coordinates to its superlayer's.
    CGAffineTransform transformToSuperlayer() const;
    CGPoint convertTo(CGPoint point, const CALayer* other) const; // null: the root's coordinates

    // Looks.
    bool isHidden() const { return hidden_; }
    void setHidden(bool hidden);
    double opacity() const { return opacity_; } // 0 to 1; applies to the layer with all its sublayers as one picture
    void setOpacity(double opacity);
    const std::optional<CGColor>& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(std::optional<CGColor> color);
    CGFloat cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(CGFloat radius);
    unsigned char maskedCorners() const { return maskedCorners_; }
    void setMaskedCorners(unsigned char corners);
    CGFloat borderWidth() const { return borderWidth_; } // drawn inside the bounds, over the sublayers
    void setBorderWidth(CGFloat width);
    const std::optional<CGColor>& borderColor() const { return borderColor_; }
    void setBorderColor(std::optional<CGColor> color);
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);
    const std::shared_ptr<CALayer>& mask() const { return mask_; } // its alpha cuts the layer and its sublayers
    void setMask(std::shared_ptr<CALayer> mask);

    const CGColor& shadowColor() const { return shadowColor_; }
    void setShadowColor(const CGColor& color);
    double shadowOpacity() const { return shadowOpacity_; }
    void setShadowOpacity(double opacity);
    CGFloat shadowRadius() const { return shadowRadius_; } // points; the gaussian's sigma
    void setShadowRadius(CGFloat radius);
    CGSize shadowOffset() const { return shadowOffset_; }
    void setShadowOffset(CGSize offset);
    const std::shared_ptr<const CGPath>& shadowPath() const { return shadowPath_; } // null: the layer's own outline of pixels
    void setShadowPath(std::shared_ptr<const CGPath> path);

    // The picture, over the background and under the sublayers.
    const std::shared_ptr<const CGImage>& contents() const { return contents_; }
    void setContents(std::shared_ptr<const CGImage> contents);
    CALayerContentsGravity contentsGravity() const { return contentsGravity_; }
    void setContentsGravity(CALayerContentsGravity gravity);
    CGFloat contentsScale() const { return contentsScale_; } // pixels a point of a picture that is not resized
    void setContentsScale(CGFloat scale);
    const std::optional<CGColor>& contentsTint() const { return contentsTint_; } // fills the picture's alpha with one colour
    void setContentsTint(std::optional<CGColor> tint);
    // Gaussian sigma in points of the blur of everything that lies behind this layer, 0 for none. Saturation is multiplied too.
    CGFloat backdropBlurRadius() const { return backdropBlurRadius_; }
    CGFloat backdropSaturation() const { return backdropSaturation_; }
    void setBackdropBlur(CGFloat radius, CGFloat saturation = 1);

    // Drawing of its own: drawInContext or the delegate's drawLayer fills a backing store of the bounds' size before the commit.
    void setNeedsDisplay();
    bool needsDisplay() const { return needsDisplay_; }
    void setDrawsContent(bool draws); // whether drawInContext / drawLayer is used at all; default false
    virtual void drawInContext(CGContext& context);
    void displayIfNeeded(CGFloat scale);

    // Layout: marks this layer; the frame's layout pass calls layoutSublayers once.
    void setNeedsLayout();
    bool needsLayout() const { return needsLayout_; }
    void layoutIfNeeded();

    // Animations. A second one under the same key replaces the first; without a key (empty) it just runs.
    void addAnimation(const std::shared_ptr<CAAnimation>& animation, const std::string& key = {});
    void removeAnimation(const std::string& key);
    void removeAllAnimations();
    std::shared_ptr<CAAnimation> animation(const std::string& key) const;
    std::vector<std::string> animationKeys() const;
    bool hasAnimations() const;
    // The value under a key path with the running animations applied at that time, or the model's.
    CAValue presentationValue(std::string_view keyPath, double time) const;
    virtual CAValue modelValue(std::string_view keyPath) const; // monostate for an unknown path
    CGRect presentationFrame(double time) const;

    // Bumped by every change of this layer (not of its sublayers) that can change a pixel.
    std::uint64_t changeCount() const { return changeCount_; }

protected:
    virtual void layoutSublayers();
    // Called before a property of that key changes: asks for an action, and marks the layer for the next commit.
    void willChange(std::string_view key);

    friend class LayerCommitter;
    friend class AnimationTimeline;
    struct Animations; // running animations, made at the first addAnimation
    std::unique_ptr<Animations> animations_;

private:
    std::uint64_t id_;
    std::uint64_t changeCount_ = 1;
    std::vector<std::shared_ptr<CALayer>> sublayers_;
    CALayer* superlayer_ = nullptr;
    CALayerDelegate* delegate_ = nullptr;
    CGRect bounds_;
    CGPoint position_;
    CGPoint anchorPoint_ { 0.5, 0.5 };
    CGAffineTransform transform_;
    CGAffineTransform sublayerTransform_;
    CGFloat zPosition_ = 0;
    double opacity_ = 1;
    std::optional<CGColor> backgroundColor_;
    CGFloat cornerRadius_ = 0;
    CGFloat borderWidth_ = 0;
    std::optional<CGColor> borderColor_;
    std::shared_ptr<CALayer> mask_;
    CGColor shadowColor_ { 0, 0, 0, 1 };
    double shadowOpacity_ = 0;
    CGFloat shadowRadius_ = 3;
    CGSize shadowOffset_ { 0, -3 };
    std::shared_ptr<const CGPath> shadowPath_;
    std::shared_ptr<const CGImage> contents_;
    CGFloat contentsScale_ = 1;
    std::optional<CGColor> contentsTint_;
    CGFloat backdropBlurRadius_ = 0;
    CGFloat backdropSaturation_ = 1;
    CALayerContentsGravity contentsGravity_ = CALayerContentsGravity::resize;
    unsigned char maskedCorners_ = allCorners;
    bool hidden_ = false;
    bool masksToBounds_ = false;
    bool needsDisplay_ = false;
    bool needsLayout_ = false;
    bool drawsContent_ = false;
};

} // namespace platform
