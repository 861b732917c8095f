#pragma once

#include "Platform/UIKit/UIViewController.h"
#include "Service/MVPlatform.h"

#include <functional>
#include <memory>

namespace platform {
class UIButton;
class UILabel;
}

namespace showroom {

using namespace platform;

// The shop's start page: its name, and a card that leads to the live shows.
class HomeViewController final : public UIViewController {
public:
    std::function<void()> onPressLiveShows;

protected:
    // UIViewController
    void viewDidLoad() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void setUpViews();
    void setUpViewsConstraints();
    void didPressLiveShowsButton();

    std::shared_ptr<UIView> titleStack, card, banner;
    std::shared_ptr<UIButton> liveShowsButton;
};

} // namespace showroom
