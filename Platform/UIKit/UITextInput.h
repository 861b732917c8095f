#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstddef>
#include <string>

namespace platform {

enum class UIReturnKeyType : unsigned char { normal, go, next, done, send, join };
enum class UITextAutocapitalizationType : unsigned char { none, words, sentences };
enum class UIEditAction : unsigned char { cut, copy, paste, selectAll, undo, redo };

// How the on-screen keyboard is to look and to help.
struct UITextInputTraits {
    UIReturnKeyType returnKeyType = UIReturnKeyType::normal;
    UITextAutocapitalizationType autocapitalization = UITextAutocapitalizationType::sentences;
};

// What a responder offers that can be written in, besides insertText and deleteBackward: keyboards and input methods speak to the
// first responder through it. Main thread.
class UITextInput {
public:
    virtual ~UITextInput() = default;

    virtual bool hasText() const = 0;
    virtual std::string textBeforeCaret() const = 0; // UTF-8; before the selection when there is one
    virtual UITextInputTraits inputTraits() const { return {}; }

    // Text of an input method that is still being composed: stands underlined at the caret, in the place of what was composed
    // before; `caret` is a byte offset into it. An empty text takes it away. Confirmed text comes as insertText, which replaces
    // it too; unmarkText lets it stay as typed.
    virtual void setMarkedText(const std::string& text, std::size_t caret) = 0;
    virtual void unmarkText() = 0;
    virtual CGRect caretRect() const = 0; // points of the window, for the input method's candidates

    virtual bool canPerform(UIEditAction action) const = 0;
    virtual void perform(UIEditAction action) = 0; // nothing when it cannot
};

} // namespace platform
