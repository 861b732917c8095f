#pragma once

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Service/MVPlatform.h"

#include <functional>
#include <memory>
#include <string>

namespace mv {

// The row of reactions of the popover over the comment bar: one button for each entry of the kit's table, in its order. Goes when
// one is chosen, and when the device is turned.
class ReactionsPopOverController final : public UIViewController {
public:
    std::function<void(const std::string& reactionType)> onPressReaction; // called before it goes

    // Points that show the table's entries as it is now; the row is a little wider than that, and scrolls.
    static CGSize contentSizeOfTable();

    void didPressReactionButton(const UIButton& sender); // one without a key does nothing
    void rotated();

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void addReactionButton(const std::string& reactionType, std::shared_ptr<const UIImage> image);

    std::shared_ptr<UIScrollView> reactionsScrollView = make<UIScrollView>();
    std::shared_ptr<UIStackView> reactionsStackView = make<UIStackView>();
    bool startsAtLeadingEnd = true; // until it has been laid out once
    NotificationToken orientationToken;
};

} // namespace mv
