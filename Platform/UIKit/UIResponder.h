#pragma once

#include "Platform/Foundation/NSObject.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIEvent;
class UITextInput;
class UITouch;

// The touches that one call is about; never empty.
using UITouches = std::vector<std::shared_ptr<UITouch>>;

// Keys that do something other than typing a character.
enum class UIKey : unsigned char { enter, escape, tab, left, right, up, down, home, end, deleteBackward, deleteForward };

// What is held while a key is pressed; bits.
enum class UIKeyModifiers : unsigned char { none = 0, shift = 1, control = 2 };
constexpr UIKeyModifiers operator|(UIKeyModifiers a, UIKeyModifiers b)
{
    return static_cast<UIKeyModifiers>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(UIKeyModifiers held, UIKeyModifiers bits)
{
    return (static_cast<unsigned>(held) & static_cast<unsigned>(bits)) == static_cast<unsigned>(bits);
}

// Something in the chain along which touches travel: a view, its controller, the superview ..., the window, the application. What
// a responder does not handle goes to the next one.
class UIResponder : public NSObject {
public:
    ~UIResponder() override;
    virtual UIResponder* nextResponder() const { return nullptr; }

    virtual void touchesBegan(const UITouches& touches, const UIEvent& event);
    virtual void touchesMoved(const UITouches& touches, const UIEvent& event);
    virtual void touchesEnded(const UITouches& touches, const UIEvent& event);
    virtual void touchesCancelled(const UITouches& touches, const UIEvent& event);

    // The first responder takes what is typed. There is one at most; it loses its role when it ends.
    virtual bool canBecomeFirstResponder() const { return false; }
    virtual bool becomeFirstResponder(); // false when it cannot, or the present one does not let go
    virtual bool resignFirstResponder(); // true when it is not the first responder any more
    bool isFirstResponder() const;
    // The same, but nobody is asked: what resignFirstResponder would refuse happens too.
    void giveUpFirstResponder();
    // Null unless one can write in it; keyboards appear for one that has it.
    virtual UITextInput* textInput() { return nullptr; }
    // Typed text, UTF-8, and the key that takes the last character back. What is not handled goes along the chain.
    virtual void insertText(const std::string& text);
    virtual void deleteBackward();
    // False when nothing along the chain does anything with that key.
    virtual bool pressKey(UIKey key, UIKeyModifiers modifiers);

protected:
    // Hooks, empty: it has just got the role, or lost it. They may end the responder.
    virtual void didBecomeFirstResponder() { }
    virtual void didResignFirstResponder() { }
};

} // namespace platform
