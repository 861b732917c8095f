#pragma once

#include "Platform/UIKit/UIView.h"

namespace platform {

// How a blurred backing looks: how far it blurs what lies behind it and what colour it lays over that.
struct UIBlurEffect {
    // Styles with a light or dark name keep it in both appearances, the others follow the appearance.
    enum class Style : unsigned char { light, dark, regular, systemThinMaterial, systemMaterial, systemMaterialDark };

    Style style = Style::regular;

    bool operator==(const UIBlurEffect&) const = default;
};

// Shows what lies behind it blurred, under the effect's colour, and its content view on top. Own subviews belong into the content
// view. Rounding and clipping the view cuts the blur too. Main thread.
class UIVisualEffectView : public UIView {
public:
    explicit UIVisualEffectView(std::optional<UIBlurEffect> effect = {});

    const std::optional<UIBlurEffect>& effect() const { return effect_; }
    void setEffect(std::optional<UIBlurEffect> effect); // absent: neither blur nor colour
    const std::shared_ptr<UIView>& contentView() const { return contentView_; } // fills this view

private:
    std::optional<UIBlurEffect> effect_;
    std::shared_ptr<UIView> tintView;
    std::shared_ptr<UIView> contentView_;
};

} // namespace platform
