#pragma once

#include "Platform/UIKit/UIVisualEffectView.h"
#include "UI/Common/SubViews/MVLoader.h"

namespace mv {

// The kit's busy indicator, ready to place: a spinner in the accent colour, 10 points inside its edges. It starts with the first
// layout and spins for ever; whoever shows it hides it as a whole, which ends its cost.
class MVMaterialLoader : public UIView {
public:
    explicit MVMaterialLoader(const CGRect& frame = {});

protected:
    // UIView
    void layoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    std::shared_ptr<MVLoader> loader;
    std::shared_ptr<UIVisualEffectView> backBlurView;
};

} // namespace mv
