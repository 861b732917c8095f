#include "Platform/UIKit/NSLayoutConstraint.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIView.h"

#include <cmath>
#include <cstdio>

namespace platform {

namespace {

const char* word(NSLayoutAttribute attribute)
{
    static constexpr const char* words[] = { "left", "right", "top", "bottom", "leading", "trailing", "width", "height",
        "centerX", "centerY", "firstBaseline", "lastBaseline", "" };
    return words[static_cast<std::size_t>(attribute)];
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

std::string named(const UILayoutItem* item, NSLayoutAttribute attribute)
{
    return (item ? item->layoutName() : "(ended)") + "." + word(attribute);
}

} // namespace

NSLayoutConstraint::NSLayoutConstraint(UILayoutItem& first, NSLayoutAttribute firstAttribute, NSLayoutRelation relation,
    UILayoutItem* second, NSLayoutAttribute secondAttribute, CGFloat multiplier, CGFloat constant)
    : items { &first, second }
    , attributes { firstAttribute, second ? secondAttribute : NSLayoutAttribute::notAnAttribute }
    , relation_(relation)
    , multiplier_(multiplier)
    , constant_(constant)
{
    ConstraintKeeper::registerItems(*this);
}

NSLayoutConstraint::NSLayoutConstraint() = default;

NSLayoutConstraint::~NSLayoutConstraint() { ConstraintKeeper::forgetItems(*this); }

void NSLayoutConstraint::activate(const NSLayoutConstraints& constraints)
{
    for (const auto& constraint : constraints)
        ConstraintKeeper::activate(constraint);
}

void NSLayoutConstraint::deactivate(const NSLayoutConstraints& constraints)
{
    for (const auto& constraint : constraints)
        if (constraint)
            ConstraintKeeper::deactivate(*constraint);
}

void NSLayoutConstraint::setActive(bool newActive)
{
    if (newActive)
        ConstraintKeeper::activate(weak(this).lock());
    else
        ConstraintKeeper::deactivate(*this);
}

void NSLayoutConstraint::setConstant(CGFloat constant)
{
    if (!std::isfinite(constant)) {
        NSLog("constraint \"" + description() + "\" keeps its constant: " + number(constant) + " is no length");
        return;
    }
    if (constant == constant_)
        return;
    constant_ = constant;
    if (LayoutRoot* root = ConstraintKeeper::rootOf(*this))
        root->constantChanged(*this);
}

void NSLayoutConstraint::setPriority(UILayoutPriority priority)
{
    if (!(priority > 0 && priority <= LayoutPriority::required)) {
        NSLog("constraint \"" + description() + "\" keeps its priority: " + number(priority) + " is not above 0 up to 1000");
        return;
    }
    if (priority == priority_)
        return;
    priority_ = priority;
    if (LayoutRoot* root = ConstraintKeeper::rootOf(*this))
        root->priorityChanged(*this);
}

std::string NSLayoutConstraint::description() const
{
    static constexpr const char* signs[] = { " <= ", " == ", " >= " };
    std::string text = named(items[0], attributes[0]) + signs[static_cast<int>(relation_) + 1];
    if (attributes[1] == NSLayoutAttribute::notAnAttribute) {
        text += number(constant_);
    } else {
        text += named(items[1], attributes[1]);
        if (multiplier_ != 1)
            text += " * " + number(multiplier_);
        if (constant_ != 0)
            text += (constant_ < 0 ? " - " : " + ") + number(std::abs(constant_));
    }
    if (priority_ != LayoutPriority::required)
        text += " @" + number(priority_);
    return identifier_.empty() ? text : identifier_ + ": " + text;
}

void activate(std::initializer_list<std::shared_ptr<NSLayoutConstraint>> constraints)
{
    for (const auto& constraint : constraints)
        ConstraintKeeper::activate(constraint);
}

} // namespace platform
