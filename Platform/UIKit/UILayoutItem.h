#pragma once

#include "Platform/UIKit/NSLayoutAnchor.h"

#include <string>
#include <vector>

namespace platform {

class UIView;

// What a constraint can name: a view or a layout guide.
class UILayoutItem {
public:
    UILayoutItem() = default;
    UILayoutItem(const UILayoutItem&) = delete;
    UILayoutItem& operator=(const UILayoutItem&) = delete;
    virtual ~UILayoutItem();

    NSLayoutXAxisAnchor leadingAnchor() const { return { *this, NSLayoutAttribute::leading }; }
    NSLayoutXAxisAnchor trailingAnchor() const { return { *this, NSLayoutAttribute::trailing }; }
    NSLayoutXAxisAnchor leftAnchor() const { return { *this, NSLayoutAttribute::left }; }
    NSLayoutXAxisAnchor rightAnchor() const { return { *this, NSLayoutAttribute::right }; }
    NSLayoutXAxisAnchor centerXAnchor() const { return { *this, NSLayoutAttribute::centerX }; }
    NSLayoutYAxisAnchor topAnchor() const { return { *this, NSLayoutAttribute::top }; }
    NSLayoutYAxisAnchor bottomAnchor() const { return { *this, NSLayoutAttribute::bottom }; }
    NSLayoutYAxisAnchor centerYAnchor() const { return { *this, NSLayoutAttribute::centerY }; }
    NSLayoutYAxisAnchor firstBaselineAnchor() const { return { *this, NSLayoutAttribute::firstBaseline }; }
    NSLayoutYAxisAnchor lastBaselineAnchor() const { return { *this, NSLayoutAttribute::lastBaseline }; }
    NSLayoutDimension widthAnchor() const { return { *this, NSLayoutAttribute::width }; }
    NSLayoutDimension heightAnchor() const { return { *this, NSLayoutAttribute::height }; }

    // The view itself, or the view that owns the guide; null for a guide without one.
    virtual UIView* layoutView() const = 0;
    // How console lines call it.
    virtual std::string layoutName() const = 0;

    // All constraints that name this item, active or not, in no particular order.
    const std::vector<NSLayoutConstraint*>& constraintsNaming() const { return naming; }

private:
    friend class ConstraintKeeper;

    std::vector<NSLayoutConstraint*> naming;
};

} // namespace platform
