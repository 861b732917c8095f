#pragma once

#include "Platform/UIKit/UIGestureRecognizer.h"

#include <vector>

namespace platform {

// A finger that wanders: begins once it has left its place by 10 points and follows the first touch to its end.
class UIPanGestureRecognizer : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;

    // Points from where it began (not from where the finger came down), in that view's axes; null: the window's.
    CGPoint translation(const UIView* view) const;
    void setTranslation(CGPoint translation, const UIView* view);
    // Points a second over the last tenth of a second; 0 for a finger that has come to rest before it left.
    CGPoint velocity(const UIView* view) const;

protected:
    // Asked when the finger has wandered far enough, with the way from where it came down (window axes): no makes it fail.
    virtual bool mayBegin(CGPoint /*way*/) const { return true; }

    void touchesBegan(const UITouches& touches, const UIEvent& event) override;
    void touchesMoved(const UITouches& touches, const UIEvent& event) override;
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;
    void reset() override;

private:
    struct Sample {
        double time;
        CGPoint point; // window coordinates
    };

    void record(UITouch& touch);
    static CGPoint inAxesOf(const UIView* view, CGPoint vector);

    std::vector<Sample> samples; // of the last tenth of a second, the newest last
    CGPoint down, origin, now; // window coordinates
    double lastTime = 0;
    std::weak_ptr<UITouch> followed;
};

} // namespace platform
