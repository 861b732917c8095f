#pragma once

#include "Platform/UIKit/UIViewController.h"

#include <memory>
#include <vector>

namespace platform {

class UIStackView;

// Controllers side by side of which one is shown, with a bar of their titles below. Views of the others stay unloaded until they
// are first selected. Main thread.
class UITabBarController final : public UIViewController {
public:
    UITabBarController();
    ~UITabBarController() override;

    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return children(); }
    void setViewControllers(const std::vector<std::shared_ptr<UIViewController>>& controllers); // selects the first
    std::size_t selectedIndex() const { return selectedIndex_; } // 0 when there is none
    void setSelectedIndex(std::size_t index); // beyond the end changes nothing
    std::shared_ptr<UIViewController> selectedViewController() const; // null for none

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void titleDidChange(UIViewController& child) override;
    bool showsChild(const UIViewController& child) const override;

private:
    class PageView;

    void showSelected();
    void showTabs();

    std::shared_ptr<PageView> pageView;
    std::shared_ptr<UIView> tabBar;
    std::shared_ptr<UIStackView> tabs;
    std::size_t selectedIndex_ = 0;
};

} // namespace platform
