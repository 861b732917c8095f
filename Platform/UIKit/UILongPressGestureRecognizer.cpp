#include "Platform/UIKit/UILongPressGestureRecognizer.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UITouch.h"

#include <cmath>

namespace platform {

using State = UIGestureRecognizerState;

void UILongPressGestureRecognizer::touchesBegan(const UITouches& touches, const UIEvent& /*event*/)
{
    if (numberOfTouches() > 1) {
        setState(state() == State::possible ? State::failed : State::cancelled);
        return;
    }
    start = touches.front()->location(nullptr);
    if (!(minimumPressDuration_ > 0)) {
        setState(State::began);
        return;
    }
    MainQueue::shared().asyncAfter(minimumPressDuration_, [weakSelf = weak(this), waited = press] {
        const auto self = weakSelf.lock();
        if (self && self->press == waited && self->state() == State::possible)
            self->setState(State::began);
    });
}

void UILongPressGestureRecognizer::touchesMoved(const UITouches& touches, const UIEvent& /*event*/)
{
    const CGPoint now = touches.front()->location(nullptr);
    if (state() != State::possible)
        setState(State::changed);
    else if (std::hypot(now.x - start.x, now.y - start.y) > allowableMovement_)
        setState(State::failed);
}

void UILongPressGestureRecognizer::touchesEnded(const UITouches& /*touches*/, const UIEvent& /*event*/)
{
    setState(state() == State::possible ? State::failed : State::ended);
}

void UILongPressGestureRecognizer::reset() { ++press; }

} // namespace platform
