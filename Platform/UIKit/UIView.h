#pragma once

#include "Platform/QuartzCore/CALayer.h"
#include "Platform/UIKit/UIAccessibilityElement.h"
#include "Platform/UIKit/UIColor.h"
#include "Platform/UIKit/UIGeometry.h"
#include "Platform/UIKit/UILayoutGuide.h"
#include "Platform/UIKit/UIResponder.h"
#include "Platform/UIKit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class CGContext;
class LayoutRoot;
class UIGestureRecognizer;
class UIViewController;
class UIWindow;

enum class UIViewAnimationCurve : unsigned char { easeInOut, easeIn, easeOut, linear };

// A rectangle of the screen that draws, lays out its subviews and takes touches. Everything to be seen lives in its layer; the
// view forwards to it. Lengths are points. Main thread. Every call out (overrides, callbacks) may remove or drop any view.
class UIView : public UIResponder, public UILayoutItem, private CALayerDelegate {
public:
    // Stands for a side of the intrinsic size that the content does not decide.
    static constexpr CGFloat noIntrinsicMetric = -1;

    // `layer` decides what shows the view: a view over a gradient hands in a gradient layer here.
    explicit UIView(const CGRect& frame = {}, std::shared_ptr<CALayer> layer = make<CALayer>());
    ~UIView() override;

    const std::shared_ptr<CALayer>& layer() const { return layer_; }

    // Tree. A view holds its subviews, back to front. Adding one that is elsewhere moves it; one that would hold itself is
    // refused with a console line.
    const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    UIView* superview() const { return superview_; }
    UIWindow* window() const { return window_; }
    void addSubview(const std::shared_ptr<UIView>& view);
    void insertSubview(const std::shared_ptr<UIView>& view, std::size_t index); // beyond the end counts as the end
    void insertSubviewBelow(const std::shared_ptr<UIView>& view, const UIView& sibling);
    void insertSubviewAbove(const std::shared_ptr<UIView>& view, const UIView& sibling);
    void removeFromSuperview();
    void bringSubviewToFront(const UIView& view);
    void sendSubviewToBack(const UIView& view);
    bool isDescendant(const UIView& other) const; // of itself too
    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    std::shared_ptr<UIView> viewWithTag(int tag); // itself or the first descendant, depth first; null for none
    const std::string& accessibilityIdentifier() const { return accessibilityIdentifier_; }
    void setAccessibilityIdentifier(std::string identifier) { accessibilityIdentifier_ = std::move(identifier); }
    // What is drawn rather than a subview and is to be found by name all the same.
    virtual std::vector<UIAccessibilityElement> accessibilityElements() const { return {}; }
    UIViewController* viewController() const { return viewController_; } // the one whose root view this is

    // Geometry. frame is derived from bounds, center and transform, and is the bounding box under a transform.
    CGRect frame() const { return layer_->frame(); }
    void setFrame(const CGRect& frame);
    CGRect bounds() const { return layer_->bounds(); }
    void setBounds(const CGRect& bounds);
    CGPoint center() const { return layer_->position(); }
    void setCenter(CGPoint center);
    const CGAffineTransform& transform() const { return layer_->transform(); }
    void setTransform(const CGAffineTransform& transform) { layer_->setTransform(transform); }
    // Between this view's coordinates and another's; null is the window's (or the topmost view's).
    CGPoint convertTo(CGPoint point, const UIView* other) const;
    CGPoint convertFrom(CGPoint point, const UIView* other) const;
    CGRect convertTo(const CGRect& rect, const UIView* other) const; // the bounding box
    CGRect convertFrom(const CGRect& rect, const UIView* other) const;
    // Room at the edges that bars, the notch or the home indicator take, as far as they reach into this view.
    const UIEdgeInsets& safeAreaInsets() const { return safeAreaInsets_; }
    std::shared_ptr<UILayoutGuide> safeAreaLayoutGuide();

    // Looks.
    CGFloat alpha() const { return layer_->opacity(); }
    void setAlpha(CGFloat alpha); // 0 to 1
    bool isHidden() const { return layer_->isHidden(); }
    virtual void setHidden(bool hidden);
    const std::optional<UIColor>& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(std::optional<UIColor> color);
    bool clipsToBounds() const { return layer_->masksToBounds(); }
    void setClipsToBounds(bool clips) { layer_->setMasksToBounds(clips); }
    UIViewContentMode contentMode() const { return contentMode_; }
    virtual void setContentMode(UIViewContentMode mode);
    UIColor tintColor() const; // its own, or the nearest ancestor's; the system's blue where none has one
    void setTintColor(std::optional<UIColor> color); // absent: the superview's
    const UITraitCollection& traitCollection() const;
    // Light or dark in this view and below, whatever is around; unspecified follows that.
    UIUserInterfaceStyle overrideUserInterfaceStyle() const { return overrideStyle; }
    void setOverrideUserInterfaceStyle(UIUserInterfaceStyle style);
    UISemanticContentAttribute semanticContentAttribute() const { return semanticContentAttribute_; }
    void setSemanticContentAttribute(UISemanticContentAttribute attribute);
    UIUserInterfaceLayoutDirection effectiveUserInterfaceLayoutDirection() const;
    void setNeedsDisplay();

    // Layout by frames.
    UIViewAutoresizing autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(UIViewAutoresizing mask);
    bool autoresizesSubviews() const { return autoresizesSubviews_; }
    void setAutoresizesSubviews(bool autoresizes) { autoresizesSubviews_ = autoresizes; }
    virtual CGSize sizeThatFits(const CGSize& size) const; // the present size unless overridden
    void sizeToFit(); // keeps the origin
    void setNeedsLayout();
    // Lays this tree out now, and the marked ancestors on the way to it; inside an animation block the changes are animated.
    void layoutIfNeeded();

    // Layout by constraints.
    bool translatesAutoresizingMaskIntoConstraints() const { return translatesAutoresizingMask; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    void addConstraint(const std::shared_ptr<NSLayoutConstraint>& constraint) { constraint->setActive(true); }
    void removeConstraint(const std::shared_ptr<NSLayoutConstraint>& constraint) { constraint->setActive(false); }
    const NSLayoutConstraints& constraints() const { return heldConstraints; } // those it keeps, as nearest common ancestor
    void addLayoutGuide(const std::shared_ptr<UILayoutGuide>& guide);
    void removeLayoutGuide(const UILayoutGuide& guide);
    void setNeedsUpdateConstraints();
    void invalidateIntrinsicContentSize();
    virtual CGSize intrinsicContentSize() const { return { noIntrinsicMetric, noIntrinsicMetric }; }
    UILayoutPriority contentHuggingPriority(NSLayoutConstraintAxis axis) const { return hugging[std::size_t(axis)]; }
    void setContentHuggingPriority(UILayoutPriority priority, NSLayoutConstraintAxis axis);
    UILayoutPriority contentCompressionResistancePriority(NSLayoutConstraintAxis axis) const
    {
        return compression[std::size_t(axis)];
    }
    void setContentCompressionResistancePriority(UILayoutPriority priority, NSLayoutConstraintAxis axis);
    // The size that satisfies the constraints inside best, as near to the target as the priorities ask for. Moves nothing.
    CGSize systemLayoutSizeFitting(CGSize target, UILayoutPriority horizontalPriority = LayoutPriority::fittingSizeLevel,
        UILayoutPriority verticalPriority = LayoutPriority::fittingSizeLevel);
    // A root has an engine of its own: constraints inside it never reach outside, its own size is given by frame. For cells'
    // content views. Set it before anything inside is constrained.
    bool isLayoutRoot() const { return layoutRootFlag; }
    void setLayoutRoot(bool root);
    // While excluded, no constraint that names this view or anything below it takes part. A stack view excludes what it hides.
    bool isExcludedFromLayout() const { return excludedFromLayout; }
    void setExcludedFromLayout(bool excluded);

    // Touches.
    bool isUserInteractionEnabled() const { return userInteractionEnabled; }
    virtual void setUserInteractionEnabled(bool enabled) { userInteractionEnabled = enabled; }
    // The deepest view that takes a touch at that point (in this view's coordinates); null when none does.
    virtual std::shared_ptr<UIView> hitTest(CGPoint point, const UIEvent* event);
    virtual bool pointInside(CGPoint point, const UIEvent* event) const;
    // Those that hear of touches here or below.
    virtual std::vector<std::shared_ptr<UIGestureRecognizer>> gestureRecognizers() const { return gestureRecognizers_; }
    // Instead of the present ones.
    void setGestureRecognizers(const std::vector<std::shared_ptr<UIGestureRecognizer>>& recognizers);
    void addGestureRecognizer(const std::shared_ptr<UIGestureRecognizer>& recognizer);
    void removeGestureRecognizer(const UIGestureRecognizer& recognizer);
    // Asked of the touched view before a recogniser of its own or of an ancestor begins: a control keeps its taps to itself.
    virtual bool gestureRecognizerShouldBegin(UIGestureRecognizer& /*recognizer*/) { return true; }

    // Animates what the block changes on views, layout included, for so many seconds from the next frame on. Not more than 0
    // seconds changes at once. A block inside a block takes the outer one's duration and curve. A value that is on its way turns
    // towards its new goal from where it is. The completion runs once, at the start of a frame, with false when an animation was
    // cut short; it runs also when nothing changed.
    static void animate(double duration, const std::function<void()>& animations, std::function<void(bool)> completion = {});
    static void animate(double duration, double delay, UIViewAnimationCurve curve, const std::function<void()>& animations,
        std::function<void(bool)> completion = {});
    static void performWithoutAnimation(const std::function<void()>& changes);
    static double inheritedAnimationDuration(); // seconds, of the block that is being run; 0 outside

    // Takes the role of first responder from this view or whatever below it has it. One that would keep it is asked, unless
    // forced. True when none here has it any more.
    bool endEditing(bool force);

    // UIResponder
    UIResponder* nextResponder() const override; // its controller, else the superview
    // UILayoutItem
    UIView* layoutView() const override { return const_cast<UIView*>(this); }
    std::string layoutName() const override;

protected:
    // Hooks, empty unless said otherwise.
    virtual void willMoveToSuperview(UIView* /*superview*/) { }
    virtual void didMoveToSuperview() { }
    virtual void willMoveToWindow(UIWindow* /*window*/) { }
    virtual void didMoveToWindow() { }
    virtual void didAddSubview(UIView& /*subview*/) { }
    virtual void willRemoveSubview(UIView& /*subview*/) { }
    virtual void subviewHiddenDidChange(UIView& /*subview*/) { }
    virtual void subviewContentSizeDidChange(UIView& /*subview*/) { } // its intrinsic size
    // Places the subviews that constraints place: an override calls it first, and finds their final frames afterwards.
    virtual void layoutSubviews();
    // Before the constraints are solved, after setNeedsUpdateConstraints.
    virtual void updateConstraints() { }
    // Draws the content in points; called only when the layer's drawsContent is on.
    virtual void draw(const CGRect& /*rect*/, CGContext& /*context*/) { }
    virtual void tintColorDidChange() { }
    // After every change of appearance, scale, direction or device, superviews first; `previous` is what held before. An override
    // calls its base.
    virtual void traitCollectionDidChange(const UITraitCollection& previous);
    virtual void safeAreaInsetsDidChange() { }
    virtual void boundsDidChange(const CGRect& /*previous*/) { }
    // The height of the content at that width in points, when one depends on the other (text of several lines).
    virtual std::optional<CGFloat> intrinsicHeight(CGFloat /*width*/) const { return {}; }
    // Points from the top edge, and from the bottom edge, to the content's first and last baseline.
    virtual CGFloat firstBaselineOffset() const { return 0; }
    virtual CGFloat lastBaselineOffset() const { return 0; }
    // What constraints from inside name when they name this view's edges; null: the view itself. A scroll view's content.
    virtual const UILayoutItem* contentLayoutItem() const { return nullptr; }
    // As far as the superview's safe area leaves this view; a window takes the screen's.
    virtual UIEdgeInsets inheritedSafeAreaInsets() const;
    // What subviews have to keep clear of: less than the whole where this view moves them out of the way itself.
    virtual UIEdgeInsets safeAreaInsetsForSubviews() const { return safeAreaInsets_; }
    void updateSafeAreaOfSubviews(); // after safeAreaInsetsForSubviews has changed

private:
    friend class ConstraintKeeper;
    friend class UIApplication;
    friend class LayoutRoot;
    friend class UILayoutGuide;
    friend class UIScreen;
    friend class UIViewController;
    friend class UIWindow;

    void layoutSublayersOf(CALayer& layer) override;
    void drawLayer(CALayer& layer, CGContext& context) override;
    std::shared_ptr<CABasicAnimation> actionForLayer(CALayer& layer, std::string_view key) override;

    // What a view gains of each point that its superview grows by, on one axis.
    struct AutoresizingShare {
        double origin = 0;
        double size = 0;
    };

    void attach(const std::shared_ptr<UIView>& view, std::size_t index);
    void detachFrom(UIView& parent);
    void reorder(const std::shared_ptr<UIView>& view, std::size_t index);
    void placeLayer(std::size_t index);
    void moveToWindow(UIWindow* window);
    std::shared_ptr<const UITraitCollection> traitsAround() const;
    void adoptTraits(const std::shared_ptr<const UITraitCollection>& around);
    void adoptTraitsInTree(const std::shared_ptr<const UITraitCollection>& around);
    void tintChangedInTree();
    void resolveColors();
    void geometryChanged(const CGRect& previousBounds, CGPoint previousCenter);
    AutoresizingShare autoresizingShare(NSLayoutConstraintAxis axis, double origin, double size, double around) const;
    void autoresize(const CGSize& before, const CGSize& after); // of the superview
    void updateSafeArea();
    CGRect untransformedFrame() const;
    void placeByLayout(const CGRect& frame);
    CGRect frameByLayout(const UILayoutGuide& guide) const;
    void updateConstraintsInTree();
    void itemChanged();
    LayoutRoot* layoutRoot() const; // of the engine that places its subviews; null while none is needed
    LayoutRoot& makeLayoutRoot();
    UIView& layoutRootView() const;
    void layoutRootChanged();
    bool solveConstraints(); // of this root; false when nothing waited

    std::shared_ptr<CALayer> layer_;
    std::vector<std::shared_ptr<UIView>> subviews_;
    std::vector<std::shared_ptr<UIGestureRecognizer>> gestureRecognizers_;
    std::vector<std::shared_ptr<UILayoutGuide>> layoutGuides;
    std::shared_ptr<UILayoutGuide> safeAreaGuide;
    NSLayoutConstraints heldConstraints;
    std::unique_ptr<LayoutRoot> ownLayoutRoot;
    std::optional<UIColor> backgroundColor_;
    std::optional<UIColor> tintColor_;
    std::shared_ptr<const UITraitCollection> traits;
    std::string accessibilityIdentifier_;
    UIEdgeInsets safeAreaInsets_;
    int tag_ = 0;
    UILayoutPriority hugging[2] = { LayoutPriority::defaultLow, LayoutPriority::defaultLow };
    UILayoutPriority compression[2] = { LayoutPriority::defaultHigh, LayoutPriority::defaultHigh };
    UIViewAutoresizing autoresizingMask_ = noAutoresizing;
    UIViewContentMode contentMode_ = UIViewContentMode::scaleToFill;
    UISemanticContentAttribute semanticContentAttribute_ = UISemanticContentAttribute::unspecified;
    UIUserInterfaceStyle overrideStyle = UIUserInterfaceStyle::unspecified;
    bool translatesAutoresizingMask = true;
    bool autoresizesSubviews_ = true;
    bool userInteractionEnabled = true;
    bool layoutRootFlag = false;
    bool excludedFromLayout = false;
    bool needsUpdateConstraints = false;

    UIView* superview_ = nullptr; // which clears it
    UIWindow* window_ = nullptr;
    UIViewController* viewController_ = nullptr; // which clears it
};

} // namespace platform
