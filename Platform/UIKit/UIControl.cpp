#include "Platform/UIKit/UIControl.h"

#include "Platform/UIKit/UITapGestureRecognizer.h"
#include "Platform/UIKit/UITouch.h"

#include <algorithm>

namespace platform {

namespace {
constexpr CGFloat touchSlack = 70; // points that a finger may stray; the platform's
}

UIControl::ActionToken UIControl::addAction(UIControlEvent event, Action action)
{
    static ActionToken lastToken = 0;
    if (!action)
        return 0;
    actions.push_back({ ++lastToken, event, std::move(action) });
    return lastToken;
}

void UIControl::removeAction(ActionToken token)
{
    std::erase_if(actions, [token](const Entry& entry) { return entry.token == token; });
}

void UIControl::removeActions(UIControlEvent event)
{
    std::erase_if(actions, [event](const Entry& entry) { return entry.event == event; });
}

void UIControl::sendActions(UIControlEvent event)
{
    std::vector<ActionToken> due;
    for (const Entry& entry : actions) {
        if (entry.event == event)
            due.push_back(entry.token);
    }
    const auto weakSelf = weak(this);
    for (const ActionToken token : due) {
        const auto self = weakSelf.lock();
        if (!self)
            return;
        // Looked up anew each time, because an action may have removed this one.
        const auto entry = std::find_if(actions.begin(), actions.end(), [token](const Entry& e) { return e.token == token; });
        if (entry == actions.end())
            continue;
        const Action action = entry->action;
        action();
    }
}

bool UIControl::hasActions(UIControlEvent event) const
{
    return std::ranges::any_of(actions, [event](const Entry& entry) { return entry.event == event; });
}

UIControlState UIControl::state() const
{
    auto state = UIControlState::normal;
    if (highlighted)
        state = state | UIControlState::highlighted;
    if (!enabled)
        state = state | UIControlState::disabled;
    if (selected)
        state = state | UIControlState::selected;
    return state;
}

void UIControl::setEnabled(bool isOn)
{
    if (enabled == isOn)
        return;
    enabled = isOn;
    if (!enabled) {
        stopTracking();
        highlighted = false;
    }
    stateDidChange();
}

void UIControl::setSelected(bool isOn)
{
    if (selected == isOn)
        return;
    selected = isOn;
    stateDidChange();
}

void UIControl::setHighlighted(bool isOn)
{
    if (highlighted == isOn)
        return;
    highlighted = isOn;
    stateDidChange();
}

void UIControl::setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment)
{
    if (horizontalAlignment == alignment)
        return;
    horizontalAlignment = alignment;
    stateDidChange();
}

void UIControl::setContentVerticalAlignment(UIControlContentVerticalAlignment alignment)
{
    if (verticalAlignment == alignment)
        return;
    verticalAlignment = alignment;
    stateDidChange();
}

bool UIControl::gestureRecognizerShouldBegin(UIGestureRecognizer& recognizer)
{
    return recognizer.view() == this || !dynamic_cast<UITapGestureRecognizer*>(&recognizer);
}

void UIControl::touchesBegan(const UITouches& touches, const UIEvent& /*event*/)
{
    if (!enabled || trackedTouch)
        return;
    const auto self = weak(this).lock();
    trackedTouch = touches.front();
    touchInside = true;
    setHighlighted(true);
    if (!beginTracking(*touches.front())) {
        stopTracking();
        return;
    }
    sendActions(UIControlEvent::touchDown);
}

void UIControl::touchesMoved(const UITouches& touches, const UIEvent& /*event*/)
{
    const auto touch = trackedTouch;
    if (!touch || std::find(touches.begin(), touches.end(), touch) == touches.end())
        return;
    const auto self = weak(this).lock();
    const bool wasInside = touchInside;
    touchInside = isNear(*touch);
    setHighlighted(touchInside);
    if (!continueTracking(*touch)) {
        stopTracking();
        return;
    }
    if (wasInside != touchInside)
        sendActions(touchInside ? UIControlEvent::touchDragEnter : UIControlEvent::touchDragExit);
    if (trackedTouch == touch)
        sendActions(touchInside ? UIControlEvent::touchDragInside : UIControlEvent::touchDragOutside);
}

void UIControl::touchesEnded(const UITouches& touches, const UIEvent& /*event*/)
{
    const auto touch = trackedTouch;
    if (!touch || std::find(touches.begin(), touches.end(), touch) == touches.end())
        return;
    const auto self = weak(this).lock();
    const bool inside = isNear(*touch);
    stopTracking();
    endTracking(touch.get());
    sendActions(inside ? UIControlEvent::touchUpInside : UIControlEvent::touchUpOutside);
}

void UIControl::touchesCancelled(const UITouches& touches, const UIEvent& /*event*/)
{
    if (!trackedTouch || std::find(touches.begin(), touches.end(), trackedTouch) == touches.end())
        return;
    const auto self = weak(this).lock();
    stopTracking();
    endTracking(nullptr);
    sendActions(UIControlEvent::touchCancel);
}

bool UIControl::isNear(UITouch& touch) const { return bounds().insetBy(-touchSlack, -touchSlack).contains(touch.location(this)); }

void UIControl::stopTracking()
{
    trackedTouch = nullptr;
    touchInside = false;
    setHighlighted(false);
}

} // namespace platform
