#pragma once

#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Service/MVPlatform.h"

namespace mv {

// In place of an empty list: a picture and a message in the middle.
class MVNoBroadcastView : public UIView {
public:
    explicit MVNoBroadcastView(const CGRect& frame = {});

    void updateMessage(const std::string& message);

private:
    void configureSubviews();
    void setUpViews();
    void setUpViewsConstraints();

    const std::shared_ptr<UIView> containerView;
    const std::shared_ptr<UIImageView> noEventImageView;
    const std::shared_ptr<UILabel> noBroadcastLabel;
};

} // namespace mv
