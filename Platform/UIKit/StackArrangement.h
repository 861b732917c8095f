#pragma once

#include "Platform/UIKit/UIStackView.h"

#include <memory>
#include <vector>

namespace platform {

// Writes a stack view's rules as constraints between it, its shown views and guides in its gaps. Internal to the stack view.
class StackArrangement {
public:
    // In the order of layout, hidden ones left out.
    StackArrangement(UIStackView& stack, const std::vector<UIView*>& shown);

    NSLayoutConstraints constraints; // not yet active
    std::vector<std::shared_ptr<UILayoutGuide>> gaps; // not yet added to the stack

private:
    // The attributes of one axis, by their part in it.
    struct Axis {
        NSLayoutAttribute start, end, center, length;
    };
    static Axis axisAlong(const UIStackView& stack);
    static Axis axisAcross(const UIStackView& stack);

    void arrangeAlong();
    void chainViews();
    void separateViews();
    void makeGapsEqual(NSLayoutAttribute from, NSLayoutAttribute to, UILayoutPriority priority);
    void makeLengthsEqual();
    void makeLengthsProportional();
    void arrangeAcross();
    void alignBaselines(NSLayoutAttribute baseline);
    void shrink(NSLayoutAttribute length);
    void relate(UILayoutItem& first, NSLayoutAttribute firstAttribute, NSLayoutRelation relation, UILayoutItem& second,
        NSLayoutAttribute secondAttribute, CGFloat constant = 0, UILayoutPriority priority = LayoutPriority::required,
        CGFloat multiplier = 1);

    UIStackView& stack;
    const std::vector<UIView*>& views;
    const Axis along, across;
};

} // namespace platform
