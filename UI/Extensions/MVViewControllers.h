#pragma once

#include "Service/MVPlatform.h"

#include <memory>

namespace platform {
class UIViewController;
}

// Operations that the kit adds to every view controller.
namespace mv {

// Makes it a child whose view is a subview of the parent's.
void add(UIViewController& parent, const std::shared_ptr<UIViewController>& child);
// Takes a controller and its view out of its parent; without a parent it does nothing.
void remove(UIViewController& controller);
// Whether the way back from a screen is to dismiss it rather than to pop it: it, or a stack or tab bar around it, was presented,
// and nothing lies below it in its stack.
bool isModal(const UIViewController& controller);

} // namespace mv
