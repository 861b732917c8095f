#pragma once

#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// A vertical gradient from its top edge to its bottom edge.
class GradientView : public UIView {
public:
    explicit GradientView(const CGRect& frame = {});

    // The stops from top to bottom; absent shows nothing. The first two lie at the edges, whatever their number: more take no
    // part.
    const std::optional<std::vector<UIColor>>& colors() const { return colors_; }
    void setColors(std::optional<std::vector<UIColor>> colors);
    // Fades to other colours within 0.25 s and stays there. `colors` keeps its value, and a later call takes this one's place.
    void animateColors(const std::vector<UIColor>& newColors);

protected:
    // UIView
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void updateLayer();
    std::vector<CGColor> resolved(const std::vector<UIColor>& colors) const;

    std::shared_ptr<CAGradientLayer> gradientLayer;
    std::optional<std::vector<UIColor>> colors_;
};

} // namespace mv
