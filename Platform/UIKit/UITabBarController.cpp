#include "Platform/UIKit/UITabBarController.h"

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UIVisualEffectView.h"

namespace platform {

namespace {

constexpr CGFloat tabBarHeight = 49; // points above the safe area's bottom

} // namespace

// Keeps the page clear of the bar.
class UITabBarController::PageView final : public UIView {
protected:
    UIEdgeInsets safeAreaInsetsForSubviews() const override
    {
        UIEdgeInsets insets = safeAreaInsets();
        insets.bottom += tabBarHeight;
        return insets;
    }
};

UITabBarController::UITabBarController()
    : pageView(make<PageView>())
    , tabBar(make<UIView>())
    , tabs(make<UIStackView>())
{
    tabBar->setAccessibilityIdentifier("tabBar");
    tabs->setDistribution(UIStackViewDistribution::fillEqually);
}

UITabBarController::~UITabBarController() = default;

void UITabBarController::setViewControllers(const std::vector<std::shared_ptr<UIViewController>>& controllers)
{
    const auto former = children();
    for (const auto& controller : former) {
        controller->willMoveToParent(nullptr);
        if (controller->isViewLoaded())
            controller->view()->removeFromSuperview();
        controller->removeFromParent();
    }
    selectedIndex_ = 0;
    for (const auto& controller : controllers) {
        addChild(controller);
        controller->didMoveToParent(this);
    }
    if (isViewLoaded()) {
        showTabs();
        showSelected();
    }
}

void UITabBarController::setSelectedIndex(std::size_t index)
{
    if (index >= children().size() || index == selectedIndex_)
        return;
    const auto former = selectedViewController();
    selectedIndex_ = index;
    if (!isViewLoaded())
        return;
    // They come and go, but neither joins nor leaves the bar.
    former->beginAppearanceTransition(false, false);
    former->view()->removeFromSuperview();
    former->endAppearanceTransition();
    const auto next = selectedViewController();
    if (isShown())
        next->beginAppearanceTransition(true, false);
    showSelected();
    next->endAppearanceTransition();
}

std::shared_ptr<UIViewController> UITabBarController::selectedViewController() const
{
    return selectedIndex_ < children().size() ? children()[selectedIndex_] : nullptr;
}

void UITabBarController::viewDidLoad()
{
    const auto& root = view();
    pageView->setFrame(root->bounds());
    pageView->setAutoresizingMask(flexibleWidth | flexibleHeight);
    root->addSubview(pageView);
    root->addSubview(tabBar);
    const auto back = make<UIVisualEffectView>(UIBlurEffect { UIBlurEffect::Style::systemMaterial });
    for (const std::shared_ptr<UIView>& part : { std::shared_ptr<UIView>(back), std::shared_ptr<UIView>(tabs) }) {
        part->setAutoresizingMask(flexibleWidth | flexibleHeight);
        tabBar->addSubview(part);
    }
    showTabs();
    showSelected();
}

void UITabBarController::viewDidLayoutSubviews()
{
    const CGSize size = view()->bounds().size();
    const CGFloat height = tabBarHeight + view()->safeAreaInsets().bottom;
    tabBar->setFrame({ 0, size.height - height, size.width, height });
    tabs->setFrame({ 0, 0, size.width, tabBarHeight });
}

void UITabBarController::titleDidChange(UIViewController& /*child*/)
{
    if (isViewLoaded())
        showTabs();
}

bool UITabBarController::showsChild(const UIViewController& child) const { return &child == selectedViewController().get(); }

void UITabBarController::showSelected()
{
    if (const auto selected = selectedViewController()) {
        const auto& content = selected->view();
        content->setFrame(pageView->bounds());
        content->setAutoresizingMask(flexibleWidth | flexibleHeight);
        pageView->addSubview(content);
    }
    const auto& buttons = tabs->arrangedSubviews();
    for (std::size_t index = 0; index < buttons.size(); ++index)
        static_cast<UIButton&>(*buttons[index])
            .setTitleColor(index == selectedIndex_ ? UIColor::systemBlue() : UIColor::secondaryLabel());
}

void UITabBarController::showTabs()
{
    const auto former = tabs->arrangedSubviews();
    for (const auto& button : former)
        button->removeFromSuperview();
    for (std::size_t index = 0; index < children().size(); ++index) {
        const auto button = make<UIButton>();
        button->setTitle(children()[index]->title());
        button->titleLabel()->setFont(UIFont::systemFont(14, UIFontWeight::medium));
        button->setTitleColor(index == selectedIndex_ ? UIColor::systemBlue() : UIColor::secondaryLabel());
        button->addAction(UIControlEvent::touchUpInside, [self = weak(this), index] {
            if (const auto controller = self.lock())
                controller->setSelectedIndex(index);
        });
        tabs->addArrangedSubview(button);
    }
}

} // namespace platform
