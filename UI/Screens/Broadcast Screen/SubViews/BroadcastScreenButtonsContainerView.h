#pragma once

#include "Platform/UIKit/UIStackView.h"
#include "Service/MVPlatform.h"
#include "UI/Common/SubViews/MVBlurButton.h"
#include "UI/Utils/MVSystemNotificationHandler.h"

#include <functional>
#include <string>

namespace mv {

// The column of round buttons over a broadcast: close, chat on/off and products on/off. In landscape only close has a size.
class BroadcastScreenButtonsContainerView final : public UIView, public MVSystemNotificationHandlerDelegate {
public:
    explicit BroadcastScreenButtonsContainerView(const CGRect& frame = {});

    std::function<void()> onPressCloseScreenButton;
    std::function<void(bool isOn)> onPressShowHideChatButton; // after the press
    std::function<void(bool isOn)> onPressShowHideProductsButton;

    // Whether there is a chat and a product to toggle; animated. Neither shows before the first call.
    void setButtonsInitialState(bool showChatButton, bool showProductButton);
    bool isChatOn() const { return isChatOn_; }
    bool isProductsOn() const { return isProductsOn_; }
    void setChatToggleOnOff(bool isOn); // tells nobody
    void setProductToggleOnOff(bool isOn);

    // MVSystemNotificationHandlerDelegate
    void didDeviceOrientationChanged(UIDeviceOrientation newOrientation) override;

protected:
    // UIView
    void layoutSubviews() override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void setUpActions();
    void activateConstraints(UIDeviceOrientation orientation);
    void didPressCloseButton();
    void didPressChatToggleButton();
    void didPressProductsToggleButton();

    const std::shared_ptr<UIStackView> stackView;
    const std::shared_ptr<MVBlurButton> closeButton;
    const std::shared_ptr<MVBlurButton> chatToggleButton;
    const std::shared_ptr<MVBlurButton> productsToggleButton;
    NSLayoutConstraints commonConstraints;
    NSLayoutConstraints landscapeModeConstraints;
    NSLayoutConstraints portraitModeConstraints;
    const std::string uniqueIdentifier;
    const std::shared_ptr<char> registration = std::make_shared<char>(); // ends with this view
    bool isChatOn_ = false;
    bool isProductsOn_ = false;
};

} // namespace mv
