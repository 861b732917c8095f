#pragma once

#include "Platform/UIKit/NSAttributedString.h"
#include "Platform/UIKit/NSRange.h"
#include "Platform/UIKit/TapCount.h"
#include "Platform/UIKit/TextEditor.h"
#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UITextInput.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class EditedLine;
class EditedText;
class RestingLine;
class UIGestureRecognizerDelegate;
class UITextField;

enum class UITextBorderStyle : unsigned char { none, line, bezel, roundedRect };

class UITextFieldDelegate {
public:
    virtual ~UITextFieldDelegate() = default;
    virtual bool textFieldShouldBeginEditing(UITextField& /*textField*/) { return true; }
    virtual void textFieldDidBeginEditing(UITextField& /*textField*/) { }
    virtual bool textFieldShouldEndEditing(UITextField& /*textField*/) { return true; } // not asked when it loses its window
    virtual void textFieldDidEndEditing(UITextField& /*textField*/) { }
    // Whether the return key is to have its effect: the event editingDidEndOnExit and, when somebody takes that, the end of
    // editing. Without such an action the field goes on being edited.
    virtual bool textFieldShouldReturn(UITextField& /*textField*/) { return true; }
    // Before the viewer's own changes: what of the text (bytes of its UTF-8) will be replaced, and by what.
    virtual bool textFieldShouldChangeCharacters(
        UITextField& /*textField*/, NSRange /*range*/, const std::string& /*replacement*/)
    {
        return true;
    }
};

// A single line of text that the viewer writes. It is edited while it is the first responder; leaving the window, being hidden or
// disabled ends that, and nobody is asked. A tap puts the caret under the finger, a second one selects the word, a third one all;
// a finger that stays takes the caret along, a mouse that is drawn selects. What was done since editing began can be taken back.
// At rest it shows the text's beginning. Lengths are points. Main thread.
class UITextField : public UIControl, private UITextInput {
public:
    explicit UITextField(const CGRect& frame = {});
    ~UITextField() override;

    // Empty for none. Valid UTF-8 in one line: line breaks and tabs become spaces, other control characters go, an invalid
    // sequence becomes U+FFFD. Setting it moves the caret to its end, ends a composition and sends no event.
    const std::string& text() const { return editor.text(); }
    void setText(const std::string& text);
    void setText(const std::optional<std::string>& text) { setText(text.value_or(std::string())); }
    void setText(const char* text) { setText(std::string(text)); }
    // Shown while there is no text. The plain one takes the field's font, in a faint colour.
    std::string placeholder() const { return placeholder_.string(); }
    void setPlaceholder(const std::string& placeholder);
    const NSAttributedString& attributedPlaceholder() const { return placeholder_; }
    void setAttributedPlaceholder(const NSAttributedString& placeholder);

    const UIFont& font() const { return font_; } // the system's in 17 points at first
    void setFont(const UIFont& font);
    const UIColor& textColor() const { return textColor_; } // the label colour at first; the caret has the tint's
    void setTextColor(const UIColor& color);
    // Natural and left follow the interface's direction.
    NSTextAlignment textAlignment() const { return textAlignment_; }
    void setTextAlignment(NSTextAlignment alignment);
    UITextBorderStyle borderStyle() const { return borderStyle_; } // none at first
    void setBorderStyle(UITextBorderStyle style);

    bool isEditing() const { return editing; }
    void setDelegate(std::weak_ptr<UITextFieldDelegate> newDelegate) { delegate = std::move(newDelegate); }
    UIReturnKeyType returnKeyType() const { return traits.returnKeyType; }
    void setReturnKeyType(UIReturnKeyType type) { traits.returnKeyType = type; }
    UITextAutocapitalizationType autocapitalizationType() const { return traits.autocapitalization; }
    void setAutocapitalizationType(UITextAutocapitalizationType type) { traits.autocapitalization = type; }

    // What of the text is selected, of length 0 where there is only a caret; bytes of its UTF-8.
    NSRange selectedRange() const { return editor.selection(); }
    void setSelectedRange(NSRange range);
    std::optional<NSRange> markedRange() const { return editor.markedRange(); } // what an input method is composing

    // Where text and caret lie in bounds of that size: inside the border at rest, the same while editing, and the same for the
    // placeholder, unless overridden.
    virtual CGRect textRect(const CGRect& bounds) const;
    virtual CGRect editingRect(const CGRect& bounds) const { return textRect(bounds); }
    virtual CGRect placeholderRect(const CGRect& bounds) const { return editing ? editingRect(bounds) : textRect(bounds); }

    // UIControl
    void setEnabled(bool enabled) override;
    // UIView
    void setHidden(bool hidden) override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;
    // UIResponder
    bool canBecomeFirstResponder() const override;
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    UITextInput* textInput() override { return this; }
    void insertText(const std::string& text) override; // a lone line break is the return key
    void deleteBackward() override;
    bool pressKey(UIKey key, UIKeyModifiers modifiers) override;

protected:
    // UIResponder
    void didBecomeFirstResponder() override;
    void didResignFirstResponder() override;
    // UIControl
    void endTracking(UITouch* touch) override;
    // UIView
    void willMoveToWindow(UIWindow* window) override;
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;

private:
    // UITextInput
    bool hasText() const override { return !editor.text().empty(); }
    std::string textBeforeCaret() const override { return editor.text().substr(0, editor.selection().location); }
    UITextInputTraits inputTraits() const override { return traits; }
    void setMarkedText(const std::string& text, std::size_t caret) override;
    void unmarkText() override;
    CGRect caretRect() const override;
    bool canPerform(UIEditAction action) const override;
    void perform(UIEditAction action) override;

    // How it looks.
    bool isRightToLeft() const;
    NSTextAlignment presentAlignment() const; // left, center or right
    CGRect presentTextRect() const;
    EditedText& laidOutText() const; // as the editor has it now
    void showBorder();
    void showPlaceholder();
    void showText();
    void contentChanged();
    void caretMoved();

    // Editing.
    bool mayChange(NSRange range, const std::string& replacement);
    void change(NSRange range, const std::string& replacement);
    void change(NSRange range, const std::string& replacement, const std::function<void()>& make);
    void remove(TextEditor::Way way, UIKeyModifiers modifiers);
    void moveSideways(bool toTheLeft, UIKeyModifiers modifiers);
    void moveToEnd(TextEditor::Way way, UIKeyModifiers modifiers);
    void pressReturn();

    // Fingers and mouse.
    class TouchRules;
    void watchTouches();
    void pressedByFinger(const UIGestureRecognizer& recognizer);
    void pressedByPointer(const UIGestureRecognizer& recognizer);
    bool beginEditingAt(CGPoint point);
    void select(int taps, CGFloat x);
    void extendSelection(CGFloat x);
    NSRange wordAt(CGFloat x) const;

    TextEditor editor;
    NSAttributedString placeholder_;
    UIFont font_;
    UIColor textColor_;
    UITextInputTraits traits;
    NSTextAlignment textAlignment_ = NSTextAlignment::natural;
    UITextBorderStyle borderStyle_ = UITextBorderStyle::none;
    bool editing = false;
    std::shared_ptr<CALayer> border;
    std::unique_ptr<RestingLine> placeholderLine, restingLine;
    std::unique_ptr<EditedLine> editedLine; // shown while it is edited
    TapCount fingerTaps { 0.35, 20 }; // seconds, points
    TapCount pointerClicks { 0.5, 4 };
    NSRange selectedFirst; // by the mouse's button coming down
    std::vector<std::shared_ptr<UIGestureRecognizerDelegate>> touchRules;
    std::weak_ptr<UITextFieldDelegate> delegate;
};

} // namespace platform
