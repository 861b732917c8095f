#include "UI/Common/SubViews/MVButtonsTabView.h"

#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

namespace mv {

namespace {

constexpr int firstTag = 3000;
constexpr double slideDuration = 0.33; // seconds

} // namespace

MVButtonsTabView::MVButtonsTabView(const CGRect& frame)
    : UIView(frame)
    , containerStackView(make<UIStackView>())
    , selectedButtonIndicatorView(make<UIView>())
{
    setBackgroundColor(UIColor::clear());
    containerStackView | mv::setAxis(NSLayoutConstraintAxis::horizontal)
        | mv::setDistributionMode(UIStackViewDistribution::fillEqually) | mv::setAlignmentMode(UIStackViewAlignment::fill)
        | mv::setSpacing(0) | mv::setBackgroundColor(UIColor::clear()) | mv::addBottomBorder(MVColor::seperatorColor(), 0.5);
    selectedButtonIndicatorView | mv::setBackgroundColor(MVColor::accentColor()) | mv::setLayerCornerRadius(2)
        | mv::setLayerMaskToBound(true);
    containerStackView->setAccessibilityIdentifier("containerStackView");
    selectedButtonIndicatorView->setAccessibilityIdentifier("selectedButtonIndicatorView");
    selectedButtonIndicatorView->setTranslatesAutoresizingMaskIntoConstraints(false);
    selectedButtonIndicatorView->setUserInteractionEnabled(false);
    selectedButtonIndicatorView->setHidden(true);

    addSubview(containerStackView);
    containerStackView->addSubview(selectedButtonIndicatorView);
    pinEdges(*containerStackView, *this);
    activate({
        selectedButtonIndicatorView->heightAnchor().equalToConstant(4),
        selectedButtonIndicatorView->bottomAnchor().equalTo(containerStackView->bottomAnchor()),
        selectedButtonIndicatorView->widthAnchor().equalToMultiple(containerStackView->widthAnchor(), 1.0 / 3),
    });
}

void MVButtonsTabView::setButtons(const std::vector<std::string>& titles)
{
    for (const auto& former : tabs())
        former->removeFromSuperview();
    int tag = firstTag;
    for (const auto& title : titles) {
        const auto button = make<UIButton>() | mv::setBackgroundColor(UIColor::clear())
            | mv::setFont(MVFont::normalSizeSemiBoldFont()) | mv::updateTitleColor(MVColor::primaryTextColor())
            | mv::updateTitle(title);
        button->setTag(tag++);
        button->addAction(UIControlEvent::touchUpInside, [self = weak(this), pressed = weak(button)] {
            const auto view = self.lock();
            const auto sender = pressed.lock();
            if (view && sender)
                view->didPressTabButton(sender);
        });
        containerStackView->addArrangedSubview(button);
    }
    containerStackView->bringSubviewToFront(*selectedButtonIndicatorView);
    const auto all = tabs();
    selectedButtonIndicatorView->setHidden(all.empty());
    if (!all.empty())
        moveBar(all.front());
}

void MVButtonsTabView::didPressTabButton(const std::shared_ptr<UIButton>& sender)
{
    const auto self = weak(this).lock();
    if (const auto callback = onSelectTab)
        callback(sender->tag() - firstTag, sender->currentTitle());
    if (sender->superview() != containerStackView.get())
        return; // the callback has put other tabs in its place
    UIView::animate(slideDuration, [&] {
        for (const auto& tab : tabs())
            tab->setTitleColor(MVColor::primaryTextColor());
        moveBar(sender);
        layoutIfNeeded();
    });
}

std::vector<std::shared_ptr<UIButton>> MVButtonsTabView::tabs() const
{
    std::vector<std::shared_ptr<UIButton>> buttons;
    for (const auto& view : containerStackView->arrangedSubviews())
        if (auto button = std::dynamic_pointer_cast<UIButton>(view))
            buttons.push_back(std::move(button));
    return buttons;
}

void MVButtonsTabView::moveBar(const std::shared_ptr<UIButton>& selected)
{
    if (selectedButtonCenterConstraint)
        selectedButtonCenterConstraint->setActive(false);
    selectedButtonCenterConstraint = selectedButtonIndicatorView->centerXAnchor().equalTo(selected->centerXAnchor());
    selectedButtonCenterConstraint->setActive(true);
    selected->setTitleColor(MVColor::accentColor());
}

} // namespace mv
