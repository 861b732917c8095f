#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIStackView.h"
#include "Service/MVPlatform.h"

namespace mv {

// A row of equally wide text tabs over a hairline, with a bar under the selected one that slides to the tab that is pressed. The
// bar is a third of the row wide, so it fits a tab when there are three.
class MVButtonsTabView : public UIView {
public:
    explicit MVButtonsTabView(const CGRect& frame = {});

    // One tab per title in place of the former ones, the first selected without a call of onSelectTab. None hides the bar.
    void setButtons(const std::vector<std::string>& titles);
    // Told the index and the title of the tab at every press, also of the selected one.
    std::function<void(int index, const std::optional<std::string>& title)> onSelectTab;

private:
    void didPressTabButton(const std::shared_ptr<UIButton>& sender);
    std::vector<std::shared_ptr<UIButton>> tabs() const;
    void moveBar(const std::shared_ptr<UIButton>& selected); // under that tab, which takes the accent colour

    std::shared_ptr<UIStackView> containerStackView;
    std::shared_ptr<UIView> selectedButtonIndicatorView;
    std::shared_ptr<NSLayoutConstraint> selectedButtonCenterConstraint;
};

} // namespace mv
