#pragma once

#include "Platform/UIKit/UIGestureRecognizer.h"

namespace platform {

// One finger that comes down and goes up again at about the same place.
class UITapGestureRecognizer final : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;

protected:
    // UIGestureRecognizer
    void touchesBegan(const UITouches& touches, const UIEvent& event) override;
    void touchesMoved(const UITouches& touches, const UIEvent& event) override;
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;

private:
    CGPoint start; // window coordinates
};

} // namespace platform
