#pragma once

#include "Platform/UIKit/UIView.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace platform {

// Bits; normal is none of them.
enum class UIControlState : unsigned char { normal = 0, highlighted = 1, disabled = 2, selected = 4 };
constexpr UIControlState operator|(UIControlState a, UIControlState b)
{
    return static_cast<UIControlState>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(UIControlState state, UIControlState bits)
{
    return (static_cast<unsigned>(state) & static_cast<unsigned>(bits)) == static_cast<unsigned>(bits);
}

enum class UIControlEvent : unsigned char {
    touchDown,
    touchDragInside,
    touchDragOutside,
    touchDragEnter,
    touchDragExit,
    touchUpInside,
    touchUpOutside,
    touchCancel,
    valueChanged,
    editingDidBegin,
    editingChanged,
    editingDidEnd,
    editingDidEndOnExit, // the return key
};

enum class UIControlContentHorizontalAlignment : unsigned char { center, left, right, leading, trailing };
enum class UIControlContentVerticalAlignment : unsigned char { center, top, bottom };

// A view that turns touches into events. It follows one touch; a finger still counts as inside up to 70 points around it, as on
// the platform. Main thread.
class UIControl : public UIView {
public:
    using Action = std::function<void()>;
    using ActionToken = std::uint64_t; // never 0, never reused

    using UIView::UIView;

    // Several actions of one event run in the order of adding. An action may remove others, and may end the control itself.
    ActionToken addAction(UIControlEvent event, Action action);
    void removeAction(ActionToken token); // an unknown one changes nothing
    void removeActions(UIControlEvent event);
    void sendActions(UIControlEvent event);
    bool hasActions(UIControlEvent event) const;

    UIControlState state() const;
    bool isEnabled() const { return enabled; }
    // Disabling ends a press without an event; a disabled control takes touches and does nothing with them.
    virtual void setEnabled(bool enabled);
    bool isSelected() const { return selected; }
    void setSelected(bool selected);
    bool isHighlighted() const { return highlighted; } // while pressed, and the finger inside
    void setHighlighted(bool highlighted);
    bool isTracking() const { return bool(trackedTouch); }
    bool isTouchInside() const { return touchInside; }

    const std::string& accessibilityHint() const { return accessibilityHint_; } // what it does, for assistive tools
    void setAccessibilityHint(std::string hint) { accessibilityHint_ = std::move(hint); }

    UIControlContentHorizontalAlignment contentHorizontalAlignment() const { return horizontalAlignment; }
    void setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment);
    UIControlContentVerticalAlignment contentVerticalAlignment() const { return verticalAlignment; }
    void setContentVerticalAlignment(UIControlContentVerticalAlignment alignment);

    // UIView
    bool gestureRecognizerShouldBegin(UIGestureRecognizer& recognizer) override; // no tap but its own
    // UIResponder
    void touchesBegan(const UITouches& touches, const UIEvent& event) override;
    void touchesMoved(const UITouches& touches, const UIEvent& event) override;
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;
    void touchesCancelled(const UITouches& touches, const UIEvent& event) override;

protected:
    // Hooks of a control of its own kind. Answering false ends the tracking without a further event.
    virtual bool beginTracking(UITouch& /*touch*/) { return true; }
    virtual bool continueTracking(UITouch& /*touch*/) { return true; }
    virtual void endTracking(UITouch* /*touch: null when cancelled*/) { }
    // After any change of state() or of the content's alignment.
    virtual void stateDidChange() { }

private:
    struct Entry {
        ActionToken token;
        UIControlEvent event;
        Action action;
    };

    bool isNear(UITouch& touch) const;
    void stopTracking();

    std::vector<Entry> actions;
    std::string accessibilityHint_;
    std::shared_ptr<UITouch> trackedTouch;
    UIControlContentHorizontalAlignment horizontalAlignment = UIControlContentHorizontalAlignment::center;
    UIControlContentVerticalAlignment verticalAlignment = UIControlContentVerticalAlignment::center;
    bool enabled = true;
    bool selected = false;
    bool highlighted = false;
    bool touchInside = false;
};

} // namespace platform
