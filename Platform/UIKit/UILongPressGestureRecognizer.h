#pragma once

#include "Platform/UIKit/UIGestureRecognizer.h"

namespace platform {

// One finger that comes down and stays: begins when it has been down for a while at about the same place, then follows it to its
// end, wherever it goes.
class UILongPressGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;

    double minimumPressDuration() const { return minimumPressDuration_; } // seconds
    void setMinimumPressDuration(double seconds) { minimumPressDuration_ = seconds; } // not more than 0: begins at once
    double allowableMovement() const { return allowableMovement_; } // points, until it begins
    void setAllowableMovement(double points) { allowableMovement_ = points; }

protected:
    // UIGestureRecognizer
    void touchesBegan(const UITouches& touches, const UIEvent& event) override;
    void touchesMoved(const UITouches& touches, const UIEvent& event) override;
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;
    void reset() override;

private:
    double minimumPressDuration_ = 0.5;
    double allowableMovement_ = 10;
    CGPoint start; // window coordinates
    unsigned press = 0; // counts, so that a wait that is over says nothing about the next press
};

} // namespace platform
