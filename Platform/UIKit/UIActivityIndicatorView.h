#pragma once

#include "Platform/UIKit/UIView.h"

namespace platform {

enum class UIActivityIndicatorViewStyle : unsigned char {
    medium, // 20 by 20 points, eight spokes
    large, // 37 by 37 points, eight spokes
    gray, // 20 by 20 points, twelve thin spokes: the look of earlier platform versions
};

// A ring of spokes that turns in steps while something is under way. Its intrinsic size is the style's. Out of sight it costs
// nothing. Main thread.
class UIActivityIndicatorView final : public UIView {
public:
    explicit UIActivityIndicatorView(UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::medium);

    UIActivityIndicatorViewStyle style() const { return style_; }
    const UIColor& color() const { return color_; } // of the strongest spoke; a grey at first
    void setColor(const UIColor& color);
    bool hidesWhenStopped() const { return hidesWhenStopped_; } // true at first
    void setHidesWhenStopped(bool hides);
    void startAnimating();
    void stopAnimating();
    bool isAnimating() const { return animating; }

    // UIView
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;

protected:
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void showColor();

    const UIActivityIndicatorViewStyle style_;
    UIColor color_;
    bool hidesWhenStopped_ = true;
    bool animating = false;
};

} // namespace platform
