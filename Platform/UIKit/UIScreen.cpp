#include "Platform/UIKit/UIScreen.h"

#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

UIScreen& UIScreen::main()
{
    static auto& screen = *new UIScreen; // never destroyed, as views of static objects may look at it
    return screen;
}

UIScreen::UIScreen()
    : traits(std::make_shared<const UITraitCollection>(UITraitCollection::current()))
{
}

CGFloat UIScreen::scale() const { return std::max(1.0, traits->displayScale); }

void UIScreen::setGeometry(CGSize newSize, const UIEdgeInsets& newSafeArea, double duration)
{
    if (newSize == size && newSafeArea == safeArea)
        return;
    const CGRect previous = bounds();
    size = newSize;
    safeArea = newSafeArea;
    for (const auto& window : UIApplication::shared().windows())
        window->screenChanged(previous, duration);
}

void UIScreen::setTraitCollection(const UITraitCollection& newTraits)
{
    if (newTraits == *traits)
        return;
    traits = std::make_shared<const UITraitCollection>(newTraits);
    UITraitCollection::setCurrent(newTraits);
    const auto shared = traits;
    for (const auto& window : UIApplication::shared().windows())
        window->adoptTraitsInTree(shared);
}

} // namespace platform
