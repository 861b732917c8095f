#pragma once

#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Service/MVBroadcast.h"
#include "UI/Common/SubViews/MVBlurButton.h"

namespace mv {

// Stands where a variant of the broadcast screen is still to be built: the broadcast's title, a line that says so, and a way out.
class MVUnbuiltScreenViewController : public UIViewController {
public:
    std::function<void()> onPressCloseButton;

    void setBroadcast(std::shared_ptr<MVBroadcast> broadcast); // null shows no title
    const std::shared_ptr<MVBroadcast>& broadcast() const { return broadcast_; }

protected:
    explicit MVUnbuiltScreenViewController(const std::string& notice);

    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void showTitle();
    void didPressCloseScreenButton();

    std::shared_ptr<UIStackView> textStackView = make<UIStackView>();
    std::shared_ptr<UILabel> titleLabel = make<UILabel>();
    std::shared_ptr<UILabel> noticeLabel = make<UILabel>();
    std::shared_ptr<MVBlurButton> closeScreenButton = make<MVBlurButton>();
    std::shared_ptr<MVBroadcast> broadcast_;
};

} // namespace mv
