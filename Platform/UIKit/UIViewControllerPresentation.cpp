// What controllers present, and the containers they sit in.
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ClassName.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIPopoverPresentationController.h"
#include "Platform/UIKit/UITabBarController.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIViewController.h"

namespace platform {

UINavigationController* UIViewController::navigationController() const
{
    for (UIViewController* ancestor = parent_; ancestor; ancestor = ancestor->parent_)
        if (auto* navigation = dynamic_cast<UINavigationController*>(ancestor))
            return navigation;
    return nullptr;
}

UITabBarController* UIViewController::tabBarController() const
{
    for (UIViewController* ancestor = parent_; ancestor; ancestor = ancestor->parent_)
        if (auto* tabs = dynamic_cast<UITabBarController*>(ancestor))
            return tabs;
    return nullptr;
}

UIViewController& UIViewController::outermostAncestor()
{
    UIViewController* controller = this;
    while (controller->parent_)
        controller = controller->parent_;
    return *controller;
}

UIViewController& UIViewController::presenterOf(const UIViewController& controller)
{
    if (controller.presentationStyle == UIModalPresentationStyle::overCurrentContext)
        for (UIViewController* ancestor = this; ancestor; ancestor = ancestor->parent_)
            if (ancestor->definesContext)
                return *ancestor;
    return outermostAncestor();
}

void UIViewController::present(
    const std::shared_ptr<UIViewController>& controller, bool animated, std::function<void()> completion)
{
    if (!controller)
        return;
    UIViewController& presenter = presenterOf(*controller);
    const auto refuse = [&](const std::string& reason) {
        NSLog(className(*controller) + " not presented on " + className(*this) + ": " + reason);
    };
    if (!presenter.isViewLoaded() || !presenter.view_->window())
        return refuse("that is not in a window");
    if (controller->parent_ || controller->ownPresentation || controller.get() == &presenter)
        return refuse("it is shown elsewhere already");
    if (presenter.presentation && presenter.presentation->isDismissing())
        return presenter.presentation->presentAfterDismissal({ controller, animated, std::move(completion) });
    if (presenter.presentation)
        return refuse("that already presents " + className(*presenter.presentation->presentedViewController()));
    presenter.presentation = controller->makePresentationController(presenter);
    presenter.presentation->present(animated, std::move(completion));
}

void UIViewController::dismiss(bool animated, std::function<void()> completion)
{
    for (UIViewController* controller = this; controller; controller = controller->parent_)
        if (const auto above = controller->presentation)
            return above->dismiss(animated, std::move(completion));
    for (UIViewController* controller = this; controller; controller = controller->parent_)
        if (controller->ownPresentation)
            return controller->ownPresentation->dismiss(animated, std::move(completion));
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const
{
    for (const UIViewController* controller = this; controller; controller = controller->parent_)
        if (controller->presentation)
            return controller->presentation->presentedViewController();
    return nullptr;
}

UIViewController* UIViewController::presentingViewController() const
{
    for (const UIViewController* controller = this; controller; controller = controller->parent_)
        if (controller->ownPresentation)
            return controller->ownPresentation->presentingViewController();
    return nullptr;
}

std::shared_ptr<UIPresentationController> UIViewController::makePresentationController(UIViewController& presenter)
{
    if (presentationStyle != UIModalPresentationStyle::popover)
        return make<UIPresentationController>(presenter, weak(this).lock());
    popoverPresentationController();
    auto popover = std::exchange(nextPopover, nullptr);
    popover->connect(presenter, weak(this).lock());
    return popover;
}

std::shared_ptr<UIPopoverPresentationController> UIViewController::popoverPresentationController()
{
    if (presentationStyle != UIModalPresentationStyle::popover)
        return nullptr;
    if (auto* present = dynamic_cast<UIPopoverPresentationController*>(ownPresentation))
        return weak(present).lock();
    if (!nextPopover)
        nextPopover = make<UIPopoverPresentationController>();
    return nextPopover;
}

void UIViewController::setPreferredContentSize(CGSize size)
{
    if (preferredSize == size)
        return;
    preferredSize = size;
    if (ownPresentation)
        ownPresentation->preferredContentSizeDidChange();
}

std::shared_ptr<UIViewController> UIViewController::presentedInContext() const
{
    if (!parent_ || !presentation || presentation->isDismissing())
        return nullptr;
    return presentation->presentedViewController();
}

void UIViewController::appendPresentations(std::vector<std::shared_ptr<UIPresentationController>>& list) const
{
    for (const auto& child : children_)
        child->appendPresentations(list);
    if (!presentation)
        return;
    list.push_back(presentation);
    if (const auto& above = presentation->presentedViewController())
        above->appendPresentations(list);
}

} // namespace platform
