#include "Platform/UIKit/UIResponder.h"

namespace platform {

namespace {

// Hands the call to the next responder, which stays alive during it.
void pass(UIResponder& from, void (UIResponder::*operation)(const UITouches&, const UIEvent&), const UITouches& touches,
    const UIEvent& event)
{
    UIResponder* next = from.nextResponder();
    const auto keep = weak(next).lock();
    if (next)
        (next->*operation)(touches, event);
}

} // namespace

void UIResponder::touchesBegan(const UITouches& touches, const UIEvent& event)
{
    pass(*this, &UIResponder::touchesBegan, touches, event);
}

void UIResponder::touchesMoved(const UITouches& touches, const UIEvent& event)
{
    pass(*this, &UIResponder::touchesMoved, touches, event);
}

void UIResponder::touchesEnded(const UITouches& touches, const UIEvent& event)
{
    pass(*this, &UIResponder::touchesEnded, touches, event);
}

void UIResponder::touchesCancelled(const UITouches& touches, const UIEvent& event)
{
    pass(*this, &UIResponder::touchesCancelled, touches, event);
}

} // namespace platform
