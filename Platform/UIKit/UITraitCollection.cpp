#include "Platform/UIKit/UITraitCollection.h"

namespace platform {

namespace {
UITraitCollection& currentTraits()
{
    static UITraitCollection traits;
    return traits;
}
}

const UITraitCollection& UITraitCollection::current() { return currentTraits(); }

void UITraitCollection::setCurrent(const UITraitCollection& traits) { currentTraits() = traits; }

void UITraitCollection::performAsCurrent(const std::function<void()>& function) const
{
    const UITraitCollection former = currentTraits();
    currentTraits() = *this;
    function();
    currentTraits() = former;
}

} // namespace platform
