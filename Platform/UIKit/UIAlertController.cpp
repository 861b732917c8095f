#include "Platform/UIKit/UIAlertController.h"

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIPresentationController.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UIVisualEffectView.h"

#include <algorithm>

namespace platform {

namespace {

constexpr CGFloat cardWidth = 270; // points
constexpr CGFloat cornerRadius = 14;
constexpr CGFloat sideMargin = 16; // of the texts
constexpr CGFloat verticalMargin = 20;
constexpr CGFloat textSpacing = 5;
constexpr CGFloat buttonHeight = 44;
constexpr CGFloat buttonSideRoom = 8;
constexpr CGFloat screenMargin = 24; // kept free above and below
constexpr CGFloat hairline = 0.5;
constexpr CGFloat overshoot = 1.15; // times its size, that it comes from

UIColor byAppearance(const UIColor& light, const UIColor& dark)
{
    return UIColor::dynamic([light, dark](const UITraitCollection& traits) {
        return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? dark : light;
    });
}

std::shared_ptr<UIView> makeHairline()
{
    const auto line = make<UIView>();
    line->setBackgroundColor(UIColor::separator());
    line->setTranslatesAutoresizingMaskIntoConstraints(false);
    return line;
}

std::shared_ptr<UILabel> makeText(const std::string& text, const UIFont& font, const std::string& name)
{
    const auto label = make<UILabel>();
    label->setAccessibilityIdentifier(name);
    label->setText(text);
    label->setFont(font);
    label->setTextColor(UIColor::label());
    label->setTextAlignment(NSTextAlignment::center);
    label->setNumberOfLines(0);
    label->setHidden(text.empty());
    return label;
}

// As high as its content where there is room, else it scrolls.
std::shared_ptr<UIScrollView> makeScroller(const std::shared_ptr<UIView>& content, const UIEdgeInsets& margins, double priority)
{
    const auto scroller = make<UIScrollView>();
    scroller->setTranslatesAutoresizingMaskIntoConstraints(false);
    scroller->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::never);
    content->setTranslatesAutoresizingMaskIntoConstraints(false);
    scroller->addSubview(content);
    const auto natural = scroller->heightAnchor().equalTo(content->heightAnchor(), margins.vertical());
    natural->setPriority(priority);
    activate({
        content->topAnchor().equalTo(scroller->topAnchor(), margins.top),
        content->bottomAnchor().equalTo(scroller->bottomAnchor(), -margins.bottom),
        content->leadingAnchor().equalTo(scroller->leadingAnchor(), margins.left),
        content->trailingAnchor().equalTo(scroller->trailingAnchor(), -margins.right),
        content->widthAnchor().equalTo(scroller->widthAnchor(), -margins.horizontal()),
        natural,
    });
    return scroller;
}

// The card in the middle, everything else under a shade.
class AlertPresentation final : public UIPresentationController {
public:
    using UIPresentationController::UIPresentationController;

protected:
    double transitionDuration(bool presenting) const override { return presenting ? 0.25 : 0.2; }

    void placePresentedView() override
    {
        const auto& container = containerView();
        shade->setFrame(container->bounds());
        shade->setAutoresizingMask(flexibleWidth | flexibleHeight);
        shade->setAccessibilityIdentifier("shade");
        shade->setBackgroundColor(byAppearance(UIColor::white(0, 0.2), UIColor::white(0, 0.48)));
        container->addSubview(shade);
        const auto& card = presentedViewController()->view();
        card->setTranslatesAutoresizingMaskIntoConstraints(false);
        container->addSubview(card);
        const auto safe = container->safeAreaLayoutGuide();
        activate({
            card->centerXAnchor().equalTo(container->centerXAnchor()),
            card->centerYAnchor().equalTo(container->centerYAnchor()),
            card->widthAnchor().equalToConstant(cardWidth),
            card->topAnchor().greaterThanOrEqualTo(safe->topAnchor(), screenMargin),
            card->bottomAnchor().lessThanOrEqualTo(safe->bottomAnchor(), -screenMargin),
        });
    }

    void showAway(bool leaving) override
    {
        shade->setAlpha(0);
        presentedViewController()->view()->setAlpha(0);
        if (!leaving)
            presentedViewController()->view()->setTransform(CGAffineTransform::scale(overshoot, overshoot));
    }

    void showHere() override
    {
        shade->setAlpha(1);
        UIPresentationController::showHere();
    }

    bool coversPresenter() const override { return false; }

private:
    std::shared_ptr<UIView> shade = make<UIView>();
};

} // namespace

class UIAlertController::ActionButton final : public UIButton {
public:
    ActionButton(const UIAlertAction& action, bool bold)
    {
        setAccessibilityIdentifier("actionButton");
        setTitle(action.title);
        setTitleColor(action.style == UIAlertActionStyle::destructive ? UIColor::systemRed() : UIColor::systemBlue());
        titleLabel()->setFont(UIFont::systemFont(17, bold ? UIFontWeight::semibold : UIFontWeight::regular));
        titleLabel()->setLineBreakMode(NSLineBreakMode::byTruncatingTail);
        setContentEdgeInsets({ 0, buttonSideRoom, 0, buttonSideRoom });
        heightAnchor().equalToConstant(buttonHeight)->setActive(true);
    }

    void setFocused(bool nowFocused)
    {
        focused = nowFocused;
        stateDidChange();
    }

protected:
    void stateDidChange() override
    {
        UIButton::stateDidChange();
        if (isHighlighted())
            setBackgroundColor(byAppearance(UIColor::white(0, 0.1), UIColor::white(1, 0.14)));
        else if (focused)
            setBackgroundColor(UIColor::systemBlue().withAlphaComponent(0.16));
        else
            setBackgroundColor({});
    }

private:
    bool focused = false;
};

UIAlertController::UIAlertController(std::string title, std::string message)
    : message_(std::move(message))
{
    setTitle(std::move(title));
}

UIAlertController::~UIAlertController() = default;

void UIAlertController::addAction(UIAlertAction action)
{
    if (isViewLoaded())
        return;
    actions_.push_back(std::move(action));
}

void UIAlertController::setPreferredAction(std::size_t index)
{
    if (index < actions_.size())
        preferred = index;
}

bool UIAlertController::pressKey(UIKey key, UIKeyModifiers modifiers)
{
    const auto keep = weak(this).lock();
    switch (key) {
    case UIKey::tab:
        moveFocus(!contains(modifiers, UIKeyModifiers::shift));
        break;
    case UIKey::enter:
        if (const auto index = defaultIndex())
            choose(*index);
        break;
    case UIKey::escape:
        if (const auto index = cancelIndex())
            choose(*index);
        break;
    default:
        break;
    }
    return true; // nothing below hears of keys while the question stands
}

void UIAlertController::loadView()
{
    const auto card = make<UIVisualEffectView>(UIBlurEffect { UIBlurEffect::Style::systemMaterial });
    card->setAccessibilityIdentifier("alert");
    card->layer()->setCornerRadius(cornerRadius);
    card->setClipsToBounds(true);
    setView(card);
}

void UIAlertController::viewDidLoad()
{
    const auto content = static_cast<UIVisualEffectView&>(*view()).contentView();
    const auto texts = makeScroller(makeTextStack(), { verticalMargin, sideMargin, verticalMargin, sideMargin }, 740);
    const auto line = makeHairline();
    makeButtons();
    const auto rows = make<UIStackView>();
    const bool sideBySide = buttonsFitSideBySide();
    rows->setAxis(sideBySide ? NSLayoutConstraintAxis::horizontal : NSLayoutConstraintAxis::vertical);
    std::vector<std::shared_ptr<ActionButton>> order;
    for (std::size_t index = 0; index < buttons.size(); ++index) {
        const bool cancels = index == cancelIndex() && actions_.size() > 1;
        order.insert(cancels && sideBySide ? order.begin() : order.end(), buttons[index]);
    }
    for (const auto& button : order) {
        if (button != order.front()) {
            const auto between = makeHairline();
            (sideBySide ? between->widthAnchor() : between->heightAnchor()).equalToConstant(hairline)->setActive(true);
            rows->addArrangedSubview(between);
            if (sideBySide)
                button->widthAnchor().equalTo(order.front()->widthAnchor())->setActive(true);
        }
        rows->addArrangedSubview(button);
    }
    const auto choices = makeScroller(rows, {}, 745);
    for (const std::shared_ptr<UIView>& part : { std::shared_ptr<UIView>(texts), line, std::shared_ptr<UIView>(choices) }) {
        content->addSubview(part);
        activate({
            part->leadingAnchor().equalTo(content->leadingAnchor()),
            part->trailingAnchor().equalTo(content->trailingAnchor()),
        });
    }
    activate({
        texts->topAnchor().equalTo(content->topAnchor()),
        texts->heightAnchor().greaterThanOrEqualToConstant(buttonHeight),
        line->topAnchor().equalTo(texts->bottomAnchor()),
        line->heightAnchor().equalToConstant(actions_.empty() ? 0 : hairline),
        choices->topAnchor().equalTo(line->bottomAnchor()),
        choices->bottomAnchor().equalTo(content->bottomAnchor()),
        choices->heightAnchor().greaterThanOrEqualToConstant(actions_.empty() ? 0 : buttonHeight),
        content->topAnchor().equalTo(view()->topAnchor()),
        content->bottomAnchor().equalTo(view()->bottomAnchor()),
        content->leadingAnchor().equalTo(view()->leadingAnchor()),
        content->trailingAnchor().equalTo(view()->trailingAnchor()),
    });
}

void UIAlertController::viewWillAppear(bool /*animated*/) { chosen = false; }

std::shared_ptr<UIPresentationController> UIAlertController::makePresentationController(UIViewController& presenter)
{
    return make<AlertPresentation>(presenter, weak(this).lock());
}

std::shared_ptr<UIStackView> UIAlertController::makeTextStack() const
{
    const auto stack = make<UIStackView>();
    stack->setAxis(NSLayoutConstraintAxis::vertical);
    stack->setSpacing(textSpacing);
    stack->addArrangedSubview(makeText(title(), UIFont::systemFont(17, UIFontWeight::semibold), "titleLabel"));
    stack->addArrangedSubview(makeText(message_, UIFont::systemFont(13), "messageLabel"));
    return stack;
}

void UIAlertController::makeButtons()
{
    for (std::size_t index = 0; index < actions_.size(); ++index) {
        const bool bold = preferred ? preferred == index : actions_[index].style == UIAlertActionStyle::cancel;
        const auto button = make<ActionButton>(actions_[index], bold);
        button->addAction(UIControlEvent::touchUpInside, [self = weak(this), index] {
            if (const auto alert = self.lock())
                alert->choose(index);
        });
        buttons.push_back(button);
    }
}

bool UIAlertController::buttonsFitSideBySide() const
{
    return buttons.size() == 2
        && std::ranges::all_of(buttons, [](const auto& button) { return button->intrinsicContentSize().width <= cardWidth / 2; });
}

void UIAlertController::moveFocus(bool forwards)
{
    if (buttons.empty())
        return;
    if (focused)
        buttons[*focused]->setFocused(false);
    const std::size_t count = buttons.size();
    focused = focused ? (*focused + (forwards ? 1 : count - 1)) % count : forwards ? 0 : count - 1;
    buttons[*focused]->setFocused(true);
}

std::optional<std::size_t> UIAlertController::defaultIndex() const
{
    if (focused || preferred)
        return focused ? focused : preferred;
    for (std::size_t index = actions_.size(); index-- > 0;)
        if (actions_[index].style != UIAlertActionStyle::cancel)
            return index;
    return actions_.empty() ? std::nullopt : std::optional<std::size_t>(0);
}

std::optional<std::size_t> UIAlertController::cancelIndex() const
{
    if (actions_.size() == 1)
        return 0;
    const auto found = std::ranges::find(actions_, UIAlertActionStyle::cancel, &UIAlertAction::style);
    return found == actions_.end() ? std::nullopt : std::optional<std::size_t>(found - actions_.begin());
}

void UIAlertController::choose(std::size_t index)
{
    if (std::exchange(chosen, true))
        return;
    dismiss(true, actions_[index].handler);
}

} // namespace platform
