#pragma once

#include "Platform/UIKit/UIView.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIButton;
class UILabel;
class UIVisualEffectView;

// The strip above the pages of a stack: the title in its middle and the way back at its leading edge, over a blur.
class UINavigationBar final : public UIView {
public:
    static constexpr CGFloat height = 44; // points below the safe area's top

    UINavigationBar();

    // Without a way back that button is hidden.
    void setTitle(const std::string& title, bool hasWayBack);
    std::function<void()> onPressBack;

private:
    std::shared_ptr<UIVisualEffectView> backView;
    std::shared_ptr<UIView> hairline;
    std::shared_ptr<UILabel> titleLabel;
    std::shared_ptr<UIButton> backButton;
};

} // namespace platform
