#include "Platform/UIKit/UIViewController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ClassName.h"
#include "Platform/UIKit/UIPresentationController.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

void UIViewControllerTransitionCoordinator::animateAlongside(std::function<void()> animation, std::function<void()> completion)
{
    if (animation)
        animations.push_back(std::move(animation));
    if (completion)
        completions.push_back(std::move(completion));
}

UIViewController::~UIViewController()
{
    if (view_)
        view_->viewController_ = nullptr;
    for (const auto& child : children_)
        child->parent_ = nullptr;
    if (presentation)
        presentation->presenting = nullptr;
}

const std::shared_ptr<UIView>& UIViewController::view()
{
    if (!view_) {
        const auto keep = weak(this).lock();
        loadView();
        if (!view_)
            setView(make<UIView>());
        viewDidLoad();
    }
    return view_;
}

void UIViewController::setView(std::shared_ptr<UIView> view)
{
    if (view_ == view)
        return;
    if (view_)
        view_->viewController_ = nullptr;
    view_ = std::move(view);
    if (!view_)
        return;
    view_->viewController_ = this;
    if (overrideStyle != UIUserInterfaceStyle::unspecified)
        view_->setOverrideUserInterfaceStyle(overrideStyle);
}

void UIViewController::setTitle(std::string title)
{
    title_ = std::move(title);
    if (parent_)
        parent_->titleDidChange(*this);
}

const UITraitCollection& UIViewController::traitCollection() const
{
    return view_ ? view_->traitCollection() : UIScreen::main().traitCollection();
}

void UIViewController::setOverrideUserInterfaceStyle(UIUserInterfaceStyle style)
{
    if (overrideStyle == style)
        return;
    overrideStyle = style;
    if (view_)
        view_->setOverrideUserInterfaceStyle(style);
    if (ownPresentation && ownPresentation->containerView())
        ownPresentation->containerView()->setOverrideUserInterfaceStyle(style);
}

void UIViewController::addChild(const std::shared_ptr<UIViewController>& child)
{
    if (!child || child->parent_ == this)
        return;
    for (const UIViewController* ancestor = this; ancestor; ancestor = ancestor->parent_) {
        if (ancestor == child.get()) {
            NSLog(className(*child) + " not added to " + className(*this) + ": it would hold itself");
            return;
        }
    }
    const auto added = child;
    if (added->parent_)
        added->removeFromParent();
    added->willMoveToParent(this);
    children_.push_back(added);
    added->parent_ = this;
}

void UIViewController::removeFromParent()
{
    if (!parent_)
        return;
    const auto keep = weak(this).lock();
    auto& siblings = parent_->children_;
    siblings.erase(std::ranges::find(siblings, this, &std::shared_ptr<UIViewController>::get));
    parent_ = nullptr;
    didMoveToParent(nullptr);
}

void UIViewController::beginAppearanceTransition(bool appearing, bool animated)
{
    if (isShown() == appearing)
        return;
    const auto keep = weak(this).lock();
    appearance = appearing ? Appearance::appearing : Appearance::disappearing;
    appearanceAnimated = animated;
    if (appearing) {
        loadViewIfNeeded();
        viewWillAppear(animated);
    } else {
        viewWillDisappear(animated);
    }
    const auto list = children_;
    for (const auto& child : list)
        if (child->isViewLoaded() && showsChild(*child))
            child->beginAppearanceTransition(appearing, animated);
    if (const auto above = presentedInContext())
        above->beginAppearanceTransition(appearing, animated);
}

void UIViewController::endAppearanceTransition()
{
    if (appearance != Appearance::appearing && appearance != Appearance::disappearing)
        return;
    const auto keep = weak(this).lock();
    const bool appeared = appearance == Appearance::appearing;
    appearance = appeared ? Appearance::appeared : Appearance::disappeared;
    if (appeared)
        viewDidAppear(appearanceAnimated);
    else
        viewDidDisappear(appearanceAnimated);
    const auto list = children_;
    for (const auto& child : list)
        child->endAppearanceTransition();
    if (const auto above = presentedInContext())
        above->endAppearanceTransition();
    passage = Passage::none;
}

bool UIViewController::showsChild(const UIViewController& child) const { return child.view_ && child.view_->superview(); }

// A child whose view comes or goes while its parent is on the screen. One without a parent is told by whoever shows it.
void UIViewController::viewMoved(bool toWindow)
{
    if (!parent_ || isShown() == toWindow)
        return;
    if (toWindow && !(parent_->isShown() && parent_->showsChild(*this)))
        return;
    const Appearance around = parent_->appearance;
    if (parent_->view_ && parent_->view_->window()) // else the parent goes, and takes it along
        passage = toWindow ? Passage::movedIn : Passage::movedOut;
    beginAppearanceTransition(toWindow, false);
    if (around == Appearance::appeared || !toWindow)
        endAppearanceTransition();
}

void UIViewController::viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator)
{
    const auto list = children_;
    for (const auto& child : list)
        child->viewWillTransition(size, coordinator);
}

UIResponder* UIViewController::nextResponder() const { return view_ ? view_->superview() : nullptr; }

void UIViewController::loadView() { setView(make<UIView>()); }

} // namespace platform
