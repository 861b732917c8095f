#pragma once

#include "Platform/UIKit/UIView.h"

#include <map>
#include <memory>
#include <vector>

namespace platform {

enum class UIStackViewDistribution : unsigned char { fill, fillEqually, fillProportionally, equalSpacing, equalCentering };
enum class UIStackViewAlignment : unsigned char {
    fill,
    leading,
    top = leading,
    firstBaseline, // of horizontal stacks
    center,
    trailing,
    bottom = trailing,
    lastBaseline, // of horizontal stacks
};

// Lays its arranged subviews out in a row or a column, by constraints of its own. A hidden one takes no part, nor do the
// constraints on its size; inside an animation block the others move to their new places and one
// that is shown again fades in.
class UIStackView : public UIView {
public:
    explicit UIStackView(const CGRect& frame = {});
    explicit UIStackView(const std::vector<std::shared_ptr<UIView>>& arrangedSubviews);
    ~UIStackView() override;

    // All of them are subviews too; a view that leaves the stack's tree leaves this list. In the order of layout.
    const std::vector<std::shared_ptr<UIView>>& arrangedSubviews() const { return arranged; }
    void addArrangedSubview(const std::shared_ptr<UIView>& view); // one that is arranged already moves to the end
    void insertArrangedSubview(const std::shared_ptr<UIView>& view, std::size_t index); // beyond the end counts as the end
    void removeArrangedSubview(const UIView& view); // it stays a subview

    NSLayoutConstraintAxis axis() const { return axis_; }
    void setAxis(NSLayoutConstraintAxis axis);
    UIStackViewDistribution distribution() const { return distribution_; }
    void setDistribution(UIStackViewDistribution distribution);
    UIStackViewAlignment alignment() const { return alignment_; }
    void setAlignment(UIStackViewAlignment alignment);
    CGFloat spacing() const { return spacing_; } // points between two neighbours; the least of it where gaps are made equal
    void setSpacing(CGFloat spacing);
    // Points after one view, when it is not the last shown; absent: the stack's spacing.
    void setCustomSpacing(std::optional<CGFloat> spacing, const UIView& after);
    CGFloat customSpacing(const UIView& after) const; // the stack's where none is set

protected:
    void updateConstraints() override;
    void willRemoveSubview(UIView& subview) override;
    void subviewContentSizeDidChange(UIView& subview) override;
    void subviewHiddenDidChange(UIView& subview) override;

private:
    std::vector<UIView*> shownViews() const;
    void arrangementChanged();
    void animateArrangement(UIView& changed);

    std::vector<std::shared_ptr<UIView>> arranged;
    std::map<const UIView*, CGFloat> customSpacings;
    CGFloat spacing_ = 0;
    NSLayoutConstraintAxis axis_ = NSLayoutConstraintAxis::horizontal;
    UIStackViewDistribution distribution_ = UIStackViewDistribution::fill;
    UIStackViewAlignment alignment_ = UIStackViewAlignment::fill;
    NSLayoutConstraints made; // its own constraints, active
    std::vector<std::shared_ptr<UILayoutGuide>> gaps; // that are kept equal
    bool arrangementIsStale = false;
};

} // namespace platform
