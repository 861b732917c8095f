// Where views hang: adding, removing and ordering them, and what they hear of it.
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

namespace {

std::size_t indexIn(const std::vector<std::shared_ptr<UIView>>& views, const UIView& view)
{
    return std::size_t(std::ranges::find(views, &view, &std::shared_ptr<UIView>::get) - views.begin());
}

} // namespace

void UIView::addSubview(const std::shared_ptr<UIView>& view) { insertSubview(view, subviews_.size()); }

void UIView::insertSubview(const std::shared_ptr<UIView>& view, std::size_t index)
{
    if (!view)
        return;
    if (isDescendant(*view)) {
        NSLog(view->layoutName() + " not added to " + layoutName() + ": it would hold itself");
        return;
    }
    const auto keepSelf = weak(this).lock();
    const auto added = view; // the argument may lie in a list that is about to change
    if (added->superview_ == this) {
        reorder(added, index);
        return;
    }
    added->removeFromSuperview();
    added->willMoveToSuperview(this);
    if (!added->superview_ && !isDescendant(*added))
        attach(added, index);
}

void UIView::insertSubviewBelow(const std::shared_ptr<UIView>& view, const UIView& sibling)
{
    insertSubview(view, indexIn(subviews_, sibling));
}

void UIView::insertSubviewAbove(const std::shared_ptr<UIView>& view, const UIView& sibling)
{
    insertSubview(view, indexIn(subviews_, sibling) + 1);
}

void UIView::removeFromSuperview()
{
    UIView* parent = superview_;
    if (!parent)
        return;
    const auto keepSelf = parent->subviews_[indexIn(parent->subviews_, *this)];
    const auto keepParent = weak(parent).lock();
    willMoveToSuperview(nullptr);
    parent->willRemoveSubview(*this);
    if (superview_ != parent)
        return;
    UIWindow* former = window_;
    const UIColor tint = tintColor();
    detachFrom(*parent);
    if (former) {
        const auto keepWindow = weak(former).lock();
        moveToWindow(nullptr);
        former->cancelTouchesIn(*this);
    }
    if (!superview_) {
        updateSafeArea();
        if (!tintColor_ && !(tintColor() == tint))
            tintChangedInTree();
        didMoveToSuperview();
    }
}

void UIView::bringSubviewToFront(const UIView& view)
{
    if (view.superview_ == this)
        reorder(subviews_[indexIn(subviews_, view)], subviews_.size());
}

void UIView::sendSubviewToBack(const UIView& view)
{
    if (view.superview_ == this)
        reorder(subviews_[indexIn(subviews_, view)], 0);
}

bool UIView::isDescendant(const UIView& other) const
{
    const UIView* view = this;
    while (view && view != &other)
        view = view->superview_;
    return view;
}

std::shared_ptr<UIView> UIView::viewWithTag(int wanted)
{
    if (tag_ == wanted)
        return weak(this).lock();
    for (const auto& child : subviews_)
        if (auto found = child->viewWithTag(wanted))
            return found;
    return nullptr;
}

void UIView::attach(const std::shared_ptr<UIView>& view, std::size_t index)
{
    index = std::min(index, subviews_.size());
    const UIColor tint = view->tintColor();
    subviews_.insert(subviews_.begin() + std::ptrdiff_t(index), view);
    view->superview_ = this;
    placeLayer(index);
    if (!view->layoutRootFlag)
        view->ownLayoutRoot.reset();
    LayoutRoot* root = layoutRoot();
    if (!root)
        layoutRootView().layoutRootChanged(); // which makes one that finds all constraints
    else if (!view->layoutRootFlag)
        root->enqueueSubtree(*view);
    setNeedsLayout();
    if (view->window_ != window_)
        view->moveToWindow(window_);
    if (view->superview_ != this) // a hook has moved it on
        return;
    if (!view->tintColor_ && !(view->tintColor() == tint))
        view->tintChangedInTree();
    view->updateSafeArea();
    view->didMoveToSuperview();
    if (view->superview_ == this)
        didAddSubview(*view);
}

void UIView::detachFrom(UIView& parent)
{
    LayoutRoot* root = parent.layoutRoot();
    parent.subviews_.erase(parent.subviews_.begin() + std::ptrdiff_t(indexIn(parent.subviews_, *this)));
    superview_ = nullptr;
    layer_->removeFromSuperlayer();
    ConstraintKeeper::subtreeLeft(*this);
    if (root && layoutRootFlag)
        root->forget(*this);
    else if (root)
        root->forgetSubtree(*this);
    parent.setNeedsLayout();
}

void UIView::reorder(const std::shared_ptr<UIView>& view, std::size_t index)
{
    const auto moved = view;
    const std::size_t from = indexIn(subviews_, *moved);
    const std::size_t to = std::min(index > from ? index - 1 : index, subviews_.size() - 1);
    if (from == to && (to + 1 < subviews_.size() || layer_->sublayers().back() == moved->layer_))
        return;
    subviews_.erase(subviews_.begin() + std::ptrdiff_t(from));
    subviews_.insert(subviews_.begin() + std::ptrdiff_t(to), moved);
    moved->layer_->removeFromSuperlayer();
    placeLayer(to);
}

// Below the next subview's layer, else above everything: layers that belong to no subview keep their places.
void UIView::placeLayer(std::size_t index)
{
    const auto& layers = layer_->sublayers();
    if (index + 1 == subviews_.size()) {
        layer_->addSublayer(subviews_[index]->layer_);
        return;
    }
    const auto next = std::ranges::find(layers, subviews_[index + 1]->layer_);
    layer_->insertSublayer(subviews_[index]->layer_, std::size_t(next - layers.begin()));
}

void UIView::moveToWindow(UIWindow* window)
{
    const auto keep = weak(this).lock();
    const auto controller = weak(viewController_).lock();
    willMoveToWindow(window);
    window_ = window;
    if (window)
        adoptTraits(traitsAround());
    if (controller)
        controller->viewMoved(window);
    didMoveToWindow();
    const auto children = subviews_;
    for (const auto& child : children)
        if (child->superview_ == this && child->window_ != window_)
            child->moveToWindow(window_);
}

} // namespace platform
