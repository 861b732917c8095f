#include "Platform/UIKit/StackArrangement.h"

#include "Platform/UIKit/UILayoutGuide.h"

#include <algorithm>

namespace platform {

namespace {
using enum NSLayoutRelation;

constexpr UILayoutPriority centering = 149; // of equal centering: gives way to the least gaps and to the contents' sizes
constexpr UILayoutPriority proportional = 999; // gives way where the whole cannot be divided so
constexpr UILayoutPriority tightness = 50; // of a stack around its views, where nothing else says its size
constexpr UILayoutPriority startward = 40; // of views that nothing else places

bool isHorizontal(const UIStackView& stack) { return stack.axis() == NSLayoutConstraintAxis::horizontal; }
}

StackArrangement::StackArrangement(UIStackView& arranged, const std::vector<UIView*>& shown)
    : stack(arranged)
    , views(shown)
    , along(axisAlong(arranged))
    , across(axisAcross(arranged))
{
    if (views.empty()) {
        shrink(along.length);
        shrink(across.length);
        return;
    }
    arrangeAlong();
    arrangeAcross();
}

StackArrangement::Axis StackArrangement::axisAlong(const UIStackView& stack)
{
    using enum NSLayoutAttribute;
    return isHorizontal(stack) ? Axis { leading, trailing, centerX, width } : Axis { top, bottom, centerY, height };
}

StackArrangement::Axis StackArrangement::axisAcross(const UIStackView& stack)
{
    using enum NSLayoutAttribute;
    return isHorizontal(stack) ? Axis { top, bottom, centerY, height } : Axis { leading, trailing, centerX, width };
}

void StackArrangement::arrangeAlong()
{
    relate(*views.front(), along.start, equal, stack, along.start);
    relate(*views.back(), along.end, equal, stack, along.end);
    switch (stack.distribution()) {
    case UIStackViewDistribution::fill:
        chainViews();
        break;
    case UIStackViewDistribution::fillEqually:
        chainViews();
        makeLengthsEqual();
        break;
    case UIStackViewDistribution::fillProportionally:
        chainViews();
        makeLengthsProportional();
        break;
    case UIStackViewDistribution::equalSpacing:
        separateViews();
        makeGapsEqual(along.end, along.start, LayoutPriority::required);
        break;
    case UIStackViewDistribution::equalCentering:
        separateViews();
        makeGapsEqual(along.center, along.center, centering);
        break;
    }
}

void StackArrangement::chainViews()
{
    for (std::size_t i = 1; i < views.size(); ++i)
        relate(*views[i], along.start, equal, *views[i - 1], along.end, stack.customSpacing(*views[i - 1]));
}

void StackArrangement::separateViews()
{
    for (std::size_t i = 1; i < views.size(); ++i) {
        const CGFloat least = stack.customSpacing(*views[i - 1]);
        relate(*views[i], along.start, greaterThanOrEqual, *views[i - 1], along.end, least);
        relate(*views[i], along.start, equal, *views[i - 1], along.end, least, tightness);
    }
}

void StackArrangement::makeGapsEqual(NSLayoutAttribute from, NSLayoutAttribute to, UILayoutPriority priority)
{
    for (std::size_t i = 1; i < views.size(); ++i) {
        const auto gap = make<UILayoutGuide>();
        gaps.push_back(gap);
        relate(*gap, along.start, equal, *views[i - 1], from);
        relate(*gap, along.end, equal, *views[i], to);
        if (i > 1)
            relate(*gap, along.length, equal, *gaps.front(), along.length, 0, priority);
    }
}

void StackArrangement::makeLengthsEqual()
{
    for (std::size_t i = 1; i < views.size(); ++i)
        relate(*views[i], along.length, equal, *views.front(), along.length);
}

void StackArrangement::makeLengthsProportional()
{
    const auto natural = [this](const UIView* view) {
        const CGSize size = view->intrinsicContentSize();
        return std::max(isHorizontal(stack) ? size.width : size.height, 0.0);
    };
    UIView* const longest = *std::max_element(
        views.begin(), views.end(), [&](const UIView* a, const UIView* b) { return natural(a) < natural(b); });
    if (natural(longest) <= 0) {
        makeLengthsEqual();
        return;
    }
    for (UIView* view : views) {
        if (view != longest)
            relate(*view, along.length, equal, *longest, along.length, 0, proportional, natural(view) / natural(longest));
    }
}

void StackArrangement::arrangeAcross()
{
    using Alignment = UIStackViewAlignment;
    const Alignment alignment = stack.alignment();
    const bool fills = alignment == Alignment::fill;
    for (UIView* view : views) {
        const bool atStart = fills || alignment == Alignment::leading;
        const bool atEnd = fills || alignment == Alignment::trailing;
        relate(*view, across.start, atStart ? equal : greaterThanOrEqual, stack, across.start);
        relate(*view, across.end, atEnd ? equal : lessThanOrEqual, stack, across.end);
        if (alignment == Alignment::center)
            relate(*view, across.center, equal, stack, across.center);
    }
    if (alignment == Alignment::firstBaseline)
        alignBaselines(NSLayoutAttribute::firstBaseline);
    if (alignment == Alignment::lastBaseline)
        alignBaselines(NSLayoutAttribute::lastBaseline);
    if (!fills)
        shrink(across.length);
}

void StackArrangement::alignBaselines(NSLayoutAttribute baseline)
{
    for (UIView* view : views) {
        relate(*view, across.start, equal, stack, across.start, 0, startward);
        if (isHorizontal(stack) && view != views.front())
            relate(*view, baseline, equal, *views.front(), baseline);
    }
}

void StackArrangement::shrink(NSLayoutAttribute length)
{
    auto constraint = make<NSLayoutConstraint>(stack, length, equal, nullptr, NSLayoutAttribute::notAnAttribute, 1, 0);
    constraint->setPriority(tightness);
    constraints.push_back(std::move(constraint));
}

void StackArrangement::relate(UILayoutItem& first, NSLayoutAttribute firstAttribute, NSLayoutRelation relation,
    UILayoutItem& second, NSLayoutAttribute secondAttribute, CGFloat constant, UILayoutPriority priority, CGFloat multiplier)
{
    auto constraint = make<NSLayoutConstraint>(first, firstAttribute, relation, &second, secondAttribute, multiplier, constant);
    if (priority != LayoutPriority::required)
        constraint->setPriority(priority);
    constraints.push_back(std::move(constraint));
}

} // namespace platform
