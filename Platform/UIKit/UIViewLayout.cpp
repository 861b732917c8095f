// How views and the constraint engine of their tree talk to each other.
#include "Platform/QuartzCore/FrameRequest.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIViewController.h"

#include <algorithm>
#include <cmath>

namespace platform {

void UIView::setAutoresizingMask(UIViewAutoresizing mask)
{
    if (autoresizingMask_ == mask)
        return;
    autoresizingMask_ = mask;
    itemChanged();
}

CGSize UIView::sizeThatFits(const CGSize& /*size*/) const { return bounds().size(); }

void UIView::sizeToFit()
{
    const CGRect box = bounds();
    const CGRect before = frame();
    const CGSize fitting = sizeThatFits(box.size());
    if (layer_->transform().isIdentity())
        setFrame({ before.x, before.y, fitting.width, fitting.height });
    else
        setBounds({ box.x, box.y, fitting.width, fitting.height });
}

void UIView::setNeedsLayout() { layer_->setNeedsLayout(); }

void UIView::layoutIfNeeded()
{
    const auto keep = weak(this).lock();
    const LayoutRoot::Pass pass;
    // A layout that changes constraints asks for another one; a circle of such changes is cut off.
    for (int round = 0; round < 100; ++round) {
        UIView& rootView = layoutRootView();
        const auto keepRoot = weak(&rootView).lock();
        rootView.makeLayoutRoot().solve();
        layer_->layoutIfNeeded();
        if (!rootView.ownLayoutRoot || !rootView.ownLayoutRoot->needsSolve())
            break;
    }
}

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates)
{
    if (translatesAutoresizingMask == translates)
        return;
    translatesAutoresizingMask = translates;
    itemChanged();
}

void UIView::addLayoutGuide(const std::shared_ptr<UILayoutGuide>& guide)
{
    if (!guide || guide->owner == this || guide->role_ != UILayoutGuide::Role::free)
        return;
    if (guide->owner)
        guide->owner->removeLayoutGuide(*guide);
    layoutGuides.push_back(guide);
    guide->owner = this;
    setNeedsLayout();
}

void UIView::removeLayoutGuide(const UILayoutGuide& guide)
{
    const auto found = std::ranges::find(layoutGuides, &guide, &std::shared_ptr<UILayoutGuide>::get);
    if (found == layoutGuides.end())
        return;
    const auto removed = *found;
    ConstraintKeeper::deactivateNaming(*removed);
    if (LayoutRoot* root = layoutRoot())
        root->forget(*removed);
    layoutGuides.erase(std::ranges::find(layoutGuides, removed));
    removed->owner = nullptr;
}

void UIView::setNeedsUpdateConstraints()
{
    if (std::exchange(needsUpdateConstraints, true))
        return;
    if (LayoutRoot* root = layoutRoot())
        root->updateConstraintsOf(*this);
    else
        layoutRootView().layoutRootChanged();
}

void UIView::invalidateIntrinsicContentSize()
{
    if (superview_)
        superview_->subviewContentSizeDidChange(*this);
    LayoutRoot* root = superview_ ? superview_->layoutRoot() : nullptr;
    if (!root || constraintsNaming().empty())
        return;
    root->itemChanged(*this);
    root->edgesChanged(*this);
}

void UIView::setContentHuggingPriority(UILayoutPriority priority, NSLayoutConstraintAxis axis)
{
    if (!(priority > 0 && priority <= LayoutPriority::required) || hugging[std::size_t(axis)] == priority)
        return;
    hugging[std::size_t(axis)] = priority;
    itemChanged();
}

void UIView::setContentCompressionResistancePriority(UILayoutPriority priority, NSLayoutConstraintAxis axis)
{
    if (!(priority > 0 && priority <= LayoutPriority::required) || compression[std::size_t(axis)] == priority)
        return;
    compression[std::size_t(axis)] = priority;
    itemChanged();
}

CGSize UIView::systemLayoutSizeFitting(CGSize target, UILayoutPriority horizontal, UILayoutPriority vertical)
{
    const auto keep = weak(this).lock();
    if (&layoutRootView() == this)
        return makeLayoutRoot().fittingSize(target, horizontal, vertical);
    updateConstraintsInTree();
    return LayoutRoot(*this, LayoutRoot::Use::measuring).fittingSize(target, horizontal, vertical);
}

void UIView::setLayoutRoot(bool root)
{
    if (layoutRootFlag == root)
        return;
    layoutRootFlag = root;
    ownLayoutRoot.reset();
    setNeedsLayout();
}

void UIView::setExcludedFromLayout(bool excluded)
{
    if (excludedFromLayout == excluded)
        return;
    excludedFromLayout = excluded;
    if (LayoutRoot* root = superview_ ? superview_->layoutRoot() : nullptr)
        root->subtreeChanged(*this);
}

void UIView::layoutSubviews()
{
    LayoutRoot* root = layoutRoot();
    if (!root || subviews_.empty())
        return;
    root->solve();
    const auto children = subviews_;
    for (const auto& child : children) {
        if (child->translatesAutoresizingMask || child->superview_ != this)
            continue;
        root = layoutRoot(); // placing one calls out
        if (const auto solved = root ? root->frame(*child) : std::nullopt)
            child->placeByLayout(*solved);
    }
}

void UIView::layoutSublayersOf(CALayer& /*layer*/)
{
    const auto keep = weak(this).lock();
    if ((layoutRootFlag || !superview_) && (ownLayoutRoot || !subviews_.empty()))
        makeLayoutRoot().solve();
    const auto controller = weak(viewController_).lock();
    if (controller)
        controller->viewWillLayoutSubviews();
    layoutSubviews();
    if (controller)
        controller->viewDidLayoutSubviews();
}

LayoutRoot* UIView::layoutRoot() const { return layoutRootView().ownLayoutRoot.get(); }

LayoutRoot& UIView::makeLayoutRoot()
{
    if (!ownLayoutRoot)
        ownLayoutRoot = std::make_unique<LayoutRoot>(*this);
    return *ownLayoutRoot;
}

UIView& UIView::layoutRootView() const
{
    const UIView* view = this;
    while (view->superview_ && !view->layoutRootFlag)
        view = view->superview_;
    return const_cast<UIView&>(*view);
}

bool UIView::solveConstraints()
{
    const bool isNew = !ownLayoutRoot;
    LayoutRoot& root = makeLayoutRoot();
    if (!isNew && !root.needsSolve())
        return false;
    root.solve();
    return true;
}

// Constraints of this root wait to be solved. That alone is no reason to lay out the topmost view: a layoutIfNeeded further down
// would then begin here, and animate what does not belong to it.
void UIView::layoutRootChanged()
{
    if (superview_)
        setNeedsLayout();
    else if (window_)
        FrameRequest::make();
}

CGRect UIView::frameByLayout(const UILayoutGuide& guide) const
{
    LayoutRoot* root = layoutRoot();
    return root ? root->frame(guide).value_or(CGRect {}) : CGRect {};
}

void UIView::updateConstraintsInTree()
{
    if (std::exchange(needsUpdateConstraints, false))
        updateConstraints();
    const auto children = subviews_;
    for (const auto& child : children)
        if (!child->layoutRootFlag)
            child->updateConstraintsInTree();
}

// The engine that places this view shall look at it again.
void UIView::itemChanged()
{
    if (LayoutRoot* root = superview_ ? superview_->layoutRoot() : nullptr)
        root->itemChanged(*this);
}

} // namespace platform
