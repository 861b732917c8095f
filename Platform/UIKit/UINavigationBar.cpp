#include "Platform/UIKit/UINavigationBar.h"

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIVisualEffectView.h"

namespace platform {

namespace {

constexpr CGFloat sideRoom = 52; // points for the button, kept free at both sides so that the title stays in the middle
constexpr CGFloat chevronSize = 34; // points of the font

} // namespace

UINavigationBar::UINavigationBar()
    : backView(make<UIVisualEffectView>(UIBlurEffect { UIBlurEffect::Style::systemMaterial }))
    , hairline(make<UIView>())
    , titleLabel(make<UILabel>())
    , backButton(make<UIButton>())
{
    setAccessibilityIdentifier("navigationBar");
    titleLabel->setAccessibilityIdentifier("titleLabel");
    titleLabel->setFont(UIFont::systemFont(17, UIFontWeight::semibold));
    titleLabel->setTextAlignment(NSTextAlignment::center);
    backButton->setAccessibilityIdentifier("backButton");
    backButton->titleLabel()->setFont(UIFont::systemFont(chevronSize));
    backButton->setTitleColor(UIColor::systemBlue());
    backButton->addAction(UIControlEvent::touchUpInside, [self = weak(this)] {
        const auto bar = self.lock();
        const auto callback = bar ? bar->onPressBack : nullptr;
        if (callback)
            callback();
    });
    hairline->setBackgroundColor(UIColor::separator());
    for (const std::shared_ptr<UIView>& part : { std::shared_ptr<UIView>(backView), hairline, std::shared_ptr<UIView>(titleLabel),
             std::shared_ptr<UIView>(backButton) }) {
        part->setTranslatesAutoresizingMaskIntoConstraints(false);
        addSubview(part);
    }
    activate({
        backView->topAnchor().equalTo(topAnchor()), backView->bottomAnchor().equalTo(bottomAnchor()),
        backView->leadingAnchor().equalTo(leadingAnchor()), backView->trailingAnchor().equalTo(trailingAnchor()),
        hairline->leadingAnchor().equalTo(leadingAnchor()), hairline->trailingAnchor().equalTo(trailingAnchor()),
        hairline->bottomAnchor().equalTo(bottomAnchor()), hairline->heightAnchor().equalToConstant(0.5),
        titleLabel->leadingAnchor().equalTo(safeAreaLayoutGuide()->leadingAnchor(), sideRoom),
        titleLabel->trailingAnchor().equalTo(safeAreaLayoutGuide()->trailingAnchor(), -sideRoom),
        titleLabel->bottomAnchor().equalTo(bottomAnchor()), titleLabel->heightAnchor().equalToConstant(height),
        backButton->leadingAnchor().equalTo(safeAreaLayoutGuide()->leadingAnchor()),
        backButton->widthAnchor().equalToConstant(height), backButton->heightAnchor().equalToConstant(height),
        backButton->bottomAnchor().equalTo(bottomAnchor(), -2), // the sign's own middle lies low
    });
}

void UINavigationBar::setTitle(const std::string& title, bool hasWayBack)
{
    titleLabel->setText(title);
    backButton->setHidden(!hasWayBack);
    const bool mirrored = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    backButton->setTitle(mirrored ? "\u203a" : "\u2039");
}

} // namespace platform
