#include "Platform/UIKit/UIStackView.h"

#include "Platform/UIKit/StackArrangement.h"

#include <algorithm>

namespace platform {

namespace {

// Ends what moves and sizes the view and what is in it: they have been somewhere else only while nobody saw them.
void stayPut(const UIView& view)
{
    for (const char* key : { "position", "bounds", "cornerRadius" })
        view.layer()->removeAnimation(key);
    for (const auto& subview : view.subviews())
        stayPut(*subview);
}

} // namespace

UIStackView::UIStackView(const CGRect& frame)
    : UIView(frame)
{
    arrangementChanged();
}

UIStackView::UIStackView(const std::vector<std::shared_ptr<UIView>>& arrangedSubviews)
    : UIStackView(CGRect {})
{
    for (const auto& view : arrangedSubviews)
        addArrangedSubview(view);
}

UIStackView::~UIStackView() = default;

void UIStackView::addArrangedSubview(const std::shared_ptr<UIView>& view) { insertArrangedSubview(view, arranged.size()); }

void UIStackView::insertArrangedSubview(const std::shared_ptr<UIView>& view, std::size_t index)
{
    if (!view)
        return;
    std::erase(arranged, view);
    if (view->superview() != this) {
        addSubview(view);
        if (view->superview() != this)
            return; // refused: it would hold itself
    }
    arranged.insert(arranged.begin() + std::ptrdiff_t(std::min(index, arranged.size())), view);
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    view->setExcludedFromLayout(view->isHidden());
    arrangementChanged();
}

void UIStackView::removeArrangedSubview(const UIView& view)
{
    const auto entry = std::find_if(arranged.begin(), arranged.end(), [&](const auto& member) { return member.get() == &view; });
    if (entry == arranged.end())
        return;
    const auto removed = *entry;
    arranged.erase(entry);
    customSpacings.erase(&view);
    removed->setExcludedFromLayout(false);
    arrangementChanged();
}

void UIStackView::setAxis(NSLayoutConstraintAxis axis)
{
    if (axis_ == axis)
        return;
    axis_ = axis;
    arrangementChanged();
}

void UIStackView::setDistribution(UIStackViewDistribution distribution)
{
    if (distribution_ == distribution)
        return;
    distribution_ = distribution;
    arrangementChanged();
}

void UIStackView::setAlignment(UIStackViewAlignment alignment)
{
    if (alignment_ == alignment)
        return;
    alignment_ = alignment;
    arrangementChanged();
}

void UIStackView::setSpacing(CGFloat spacing)
{
    if (spacing_ == spacing)
        return;
    spacing_ = spacing;
    arrangementChanged();
}

void UIStackView::setCustomSpacing(std::optional<CGFloat> spacing, const UIView& after)
{
    if (spacing)
        customSpacings.insert_or_assign(&after, *spacing);
    else
        customSpacings.erase(&after);
    arrangementChanged();
}

CGFloat UIStackView::customSpacing(const UIView& after) const
{
    const auto entry = customSpacings.find(&after);
    return entry == customSpacings.end() ? spacing_ : entry->second;
}

void UIStackView::updateConstraints()
{
    UIView::updateConstraints();
    if (!arrangementIsStale)
        return;
    arrangementIsStale = false;
    NSLayoutConstraint::deactivate(made);
    for (const auto& gap : gaps)
        removeLayoutGuide(*gap);
    StackArrangement arrangement(*this, shownViews());
    made = std::move(arrangement.constraints);
    gaps = std::move(arrangement.gaps);
    for (const auto& gap : gaps)
        addLayoutGuide(gap);
    NSLayoutConstraint::activate(made);
}

void UIStackView::willRemoveSubview(UIView& subview)
{
    removeArrangedSubview(subview);
    UIView::willRemoveSubview(subview);
}

void UIStackView::subviewContentSizeDidChange(UIView& subview)
{
    UIView::subviewContentSizeDidChange(subview);
    if (distribution_ == UIStackViewDistribution::fillProportionally)
        arrangementChanged();
}

void UIStackView::subviewHiddenDidChange(UIView& subview)
{
    UIView::subviewHiddenDidChange(subview);
    if (std::none_of(arranged.begin(), arranged.end(), [&](const auto& view) { return view.get() == &subview; }))
        return;
    subview.setExcludedFromLayout(subview.isHidden());
    arrangementChanged();
    if (inheritedAnimationDuration() > 0)
        animateArrangement(subview);
}

// Inside an animation block the others move to their new places, and one that comes fades in at its own.
void UIStackView::animateArrangement(UIView& changed)
{
    layoutIfNeeded();
    if (changed.isHidden())
        return;
    stayPut(changed);
    const CGFloat alpha = changed.alpha();
    performWithoutAnimation([&] { changed.setAlpha(0); });
    changed.setAlpha(alpha);
}

std::vector<UIView*> UIStackView::shownViews() const
{
    std::vector<UIView*> shown;
    for (const auto& view : arranged) {
        if (!view->isHidden())
            shown.push_back(view.get());
    }
    return shown;
}

void UIStackView::arrangementChanged()
{
    arrangementIsStale = true;
    setNeedsUpdateConstraints();
}

} // namespace platform
