#pragma once

#include "Platform/UIKit/UILabel.h"
#include "Service/MVPlatform.h"
#include "UI/Extensions/GradientView.h"

namespace mv {

// What lies behind everything else on the live screen: the host's video, or a line of text while there is none, and over the
// lower part a shade that keeps the chat readable.
class MVStreamVideoContainerView final : public UIView {
public:
    explicit MVStreamVideoContainerView(const CGRect& frame = {});

    const std::shared_ptr<UIView>& getStreamView() const { return videoContainerView; } // for the service to render into
    // Shows the text in place of the video, or the video in place of the text.
    void showHideNoStreamLabel(bool show);
    void setGradientViewAlpha(CGFloat alpha); // 0 to 1, animated

private:
    void configureSubViewsProperties();
    void setUpViews();
    void setUpViewsConstraints();

    const std::shared_ptr<UIView> videoContainerView;
    const std::shared_ptr<GradientView> gradientView;
    const std::shared_ptr<UILabel> noStreamLabel;
};

} // namespace mv
