#include "Platform/UIKit/UILayoutGuide.h"

#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/UIView.h"

namespace platform {

UILayoutGuide::UILayoutGuide(Role role)
    : role_(role)
{
}

UILayoutGuide::~UILayoutGuide() { ConstraintKeeper::itemEnds(*this); }

CGRect UILayoutGuide::layoutFrame() const
{
    if (!owner)
        return {};
    return role_ == Role::safeArea ? owner->safeAreaInsets().inset(owner->bounds()) : owner->frameByLayout(*this);
}

std::string UILayoutGuide::layoutName() const
{
    return (owner ? owner->layoutName() : std::string("UILayoutGuide")) + (role_ == Role::safeArea ? ".safeArea" : ".guide");
}

} // namespace platform
