#include "UI/Extensions/MVViewControllers.h"

#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UITabBarController.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>

namespace mv {

void add(UIViewController& parent, const std::shared_ptr<UIViewController>& child)
{
    parent.addChild(child);
    parent.view()->addSubview(child->view());
    child->didMoveToParent(&parent);
}

void remove(UIViewController& controller)
{
    if (!controller.parent())
        return;
    const auto keep = weak(&controller).lock();
    controller.willMoveToParent(nullptr);
    controller.view()->removeFromSuperview();
    controller.removeFromParent();
}

bool isModal(const UIViewController& controller)
{
    const auto* navigation = controller.navigationController();
    if (navigation) {
        const auto& stack = navigation->viewControllers();
        const auto place = std::ranges::find(stack, &controller, &std::shared_ptr<UIViewController>::get);
        if (place != stack.end() && place != stack.begin())
            return false;
    }
    if (controller.presentingViewController())
        return true;
    if (navigation && navigation->presentingViewController()
        && navigation->presentingViewController()->presentedViewController().get() == navigation)
        return true;
    const auto* tabBar = controller.tabBarController();
    return tabBar && dynamic_cast<const UITabBarController*>(tabBar->presentingViewController());
}

} // namespace mv
