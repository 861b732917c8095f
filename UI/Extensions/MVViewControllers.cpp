#include "UI/Extensions/MVViewControllers.h"

#include "Platform/UIKit/UINavigationController.h"
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
    if (const auto* navigation = controller.navigationController()) {
        const auto& stack = navigation->viewControllers();
        const auto place = std::ranges::find(stack, &controller, &std::shared_ptr<UIViewController>::get);
        if (place != stack.end() && place != stack.begin())
            return false;
    }
    return controller.presentingViewController(); // or that of the stack or tab bar around it
}

} // namespace mv
