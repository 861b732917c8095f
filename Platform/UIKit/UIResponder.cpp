#include "Platform/UIKit/UIResponder.h"

#include "Platform/UIKit/UIApplication.h"

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

UIResponder::~UIResponder() { UIApplication::shared().responderEnds(*this); }

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

bool UIResponder::becomeFirstResponder()
{
    if (!canBecomeFirstResponder())
        return false;
    auto& application = UIApplication::shared();
    const auto present = application.firstResponder();
    if (present.get() == this)
        return true;
    if (present && !present->resignFirstResponder())
        return false;
    const auto keep = weak(this).lock();
    application.setFirstResponder(this);
    didBecomeFirstResponder();
    return isFirstResponder();
}

bool UIResponder::resignFirstResponder()
{
    giveUpFirstResponder();
    return true;
}

void UIResponder::giveUpFirstResponder()
{
    if (!isFirstResponder())
        return;
    const auto keep = weak(this).lock();
    UIApplication::shared().setFirstResponder(nullptr);
    didResignFirstResponder();
}

bool UIResponder::isFirstResponder() const { return UIApplication::shared().firstResponder().get() == this; }

void UIResponder::insertText(const std::string& text)
{
    if (auto* next = nextResponder())
        next->insertText(text);
}

void UIResponder::deleteBackward()
{
    if (auto* next = nextResponder())
        next->deleteBackward();
}

bool UIResponder::pressKey(UIKey key, UIKeyModifiers modifiers)
{
    auto* next = nextResponder();
    return next && next->pressKey(key, modifiers);
}

} // namespace platform
