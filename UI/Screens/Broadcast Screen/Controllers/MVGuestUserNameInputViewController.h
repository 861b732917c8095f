#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIVisualEffectView.h"
#include "UI/Common/SubViews/MVTextField.h"

#include <functional>
#include <memory>
#include <string>

namespace mv {

// Asks who has not logged in for a name before the first comment, on a card just above the middle of a dimmed screen. Cancelling
// closes it; after a join its owner does. Main thread.
class MVGuestUserNameInputViewController final : public UIViewController {
public:
    std::function<void(const std::string& name)> onPressJoinButton; // as typed, never empty

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void setUpActions();
    void separateButtons();
    void didPressJoinButton();
    void didPressCancelButton();
    void textFieldDidChange();

    const std::shared_ptr<UIVisualEffectView> containerView = make<UIVisualEffectView>();
    const std::shared_ptr<UILabel> headerLabel = make<UILabel>();
    const std::shared_ptr<MVTextField> inputTextField = make<MVTextField>();
    const std::shared_ptr<UIStackView> buttonsStackView = make<UIStackView>();
    const std::shared_ptr<UIButton> joinButton = make<UIButton>();
    const std::shared_ptr<UIButton> cancelButton = make<UIButton>();
};

} // namespace mv
