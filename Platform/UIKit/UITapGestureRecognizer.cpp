#include "Platform/UIKit/UITapGestureRecognizer.h"

#include "Platform/UIKit/UITouch.h"

#include <cmath>

namespace platform {

namespace {

constexpr double slop = 10; // points that a finger may stray and still tap

} // namespace

void UITapGestureRecognizer::touchesBegan(const UITouches& touches, const UIEvent& /*event*/)
{
    if (numberOfTouches() > 1)
        setState(UIGestureRecognizerState::failed);
    start = touches.front()->location(nullptr);
}

void UITapGestureRecognizer::touchesMoved(const UITouches& touches, const UIEvent& /*event*/)
{
    const CGPoint now = touches.front()->location(nullptr);
    if (std::hypot(now.x - start.x, now.y - start.y) > slop)
        setState(UIGestureRecognizerState::failed);
}

void UITapGestureRecognizer::touchesEnded(const UITouches& /*touches*/, const UIEvent& /*event*/)
{
    setState(UIGestureRecognizerState::ended);
}

} // namespace platform
