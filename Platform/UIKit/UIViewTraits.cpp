// What views know of their surroundings, and how it reaches them.
#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

namespace platform {

const UITraitCollection& UIView::traitCollection() const { return *traits; }

void UIView::setOverrideUserInterfaceStyle(UIUserInterfaceStyle style)
{
    if (overrideStyle == style)
        return;
    overrideStyle = style;
    adoptTraitsInTree(traitsAround());
}

void UIView::setSemanticContentAttribute(UISemanticContentAttribute attribute)
{
    if (semanticContentAttribute_ == attribute)
        return;
    semanticContentAttribute_ = attribute;
    if (LayoutRoot* root = layoutRoot())
        root->directionChanged();
    setNeedsLayout();
}

UIUserInterfaceLayoutDirection UIView::effectiveUserInterfaceLayoutDirection() const
{
    switch (semanticContentAttribute_) {
    case UISemanticContentAttribute::forceLeftToRight:
        return UIUserInterfaceLayoutDirection::leftToRight;
    case UISemanticContentAttribute::forceRightToLeft:
        return UIUserInterfaceLayoutDirection::rightToLeft;
    case UISemanticContentAttribute::unspecified:
        break;
    }
    return traits->layoutDirection;
}

void UIView::traitCollectionDidChange(const UITraitCollection& /*previous*/) { }

std::shared_ptr<const UITraitCollection> UIView::traitsAround() const
{
    return superview_ ? superview_->traits : UIScreen::main().sharedTraits();
}

// Of this view alone, from what is around it.
void UIView::adoptTraits(const std::shared_ptr<const UITraitCollection>& around)
{
    auto own = around;
    if (overrideStyle != UIUserInterfaceStyle::unspecified && overrideStyle != around->userInterfaceStyle) {
        UITraitCollection forced = *around;
        forced.userInterfaceStyle = overrideStyle;
        own = std::make_shared<const UITraitCollection>(forced);
    }
    if (traits == own)
        return;
    const auto previous = std::exchange(traits, own);
    if (*previous == *traits)
        return;
    resolveColors();
    if (previous->displayScale != traits->displayScale || previous->layoutDirection != traits->layoutDirection)
        setNeedsLayout();
    if (previous->layoutDirection != traits->layoutDirection && ownLayoutRoot)
        ownLayoutRoot->directionChanged();
    own->performAsCurrent([&] {
        traitCollectionDidChange(*previous);
        if (viewController_)
            viewController_->traitCollectionDidChange(*previous);
    });
    if (isFirstResponder())
        ScreenKeyboard::shared().firstRespondersTraitsChanged();
}

void UIView::adoptTraitsInTree(const std::shared_ptr<const UITraitCollection>& around)
{
    const auto keep = weak(this).lock();
    adoptTraits(around);
    const auto own = traits;
    const auto children = subviews_;
    for (const auto& child : children)
        if (child->superview_ == this)
            child->adoptTraitsInTree(own);
}

void UIView::resolveColors()
{
    if (backgroundColor_)
        layer_->setBackgroundColor(backgroundColor_->cgColor(*traits));
    else
        layer_->setBackgroundColor({});
}

} // namespace platform
