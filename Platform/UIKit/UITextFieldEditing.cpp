// What the viewer does with a text field: by finger, by keyboard and through an input method.
#include "Platform/UIKit/EditedLine.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "Platform/UIKit/UIPasteboard.h"
#include "Platform/UIKit/UITextField.h"
#include "Platform/UIKit/UITouch.h"

#include <cmath>

namespace platform {

namespace {

constexpr double doubleTapInterval = 0.35; // seconds between two taps that belong together
constexpr CGFloat doubleTapSlop = 20; // points between them

TextEditor::Unit unitOf(UIKeyModifiers modifiers)
{
    return contains(modifiers, UIKeyModifiers::control) ? TextEditor::Unit::word : TextEditor::Unit::character;
}

} // namespace

void UITextField::setSelectedRange(NSRange range)
{
    editor.select(range.location, range.end());
    caretMoved();
}

void UITextField::setEnabled(bool enabled)
{
    const auto keep = weak(this).lock();
    UIControl::setEnabled(enabled);
    if (!enabled)
        giveUpFirstResponder();
}

void UITextField::setHidden(bool hidden)
{
    const auto keep = weak(this).lock();
    UIControl::setHidden(hidden);
    if (hidden)
        giveUpFirstResponder();
}

bool UITextField::canBecomeFirstResponder() const { return isEnabled() && window() && !isHidden(); }

bool UITextField::becomeFirstResponder()
{
    if (isFirstResponder())
        return true;
    const auto keep = weak(this).lock();
    if (!canBecomeFirstResponder())
        return false;
    if (const auto asked = delegate.lock(); asked && !asked->textFieldShouldBeginEditing(*this))
        return false;
    return UIControl::becomeFirstResponder();
}

bool UITextField::resignFirstResponder()
{
    if (!isFirstResponder())
        return true;
    const auto keep = weak(this).lock();
    if (const auto asked = delegate.lock(); asked && !asked->textFieldShouldEndEditing(*this))
        return false;
    return UIControl::resignFirstResponder();
}

void UITextField::didBecomeFirstResponder()
{
    editing = true;
    caretMoved();
    if (const auto told = delegate.lock())
        told->textFieldDidBeginEditing(*this);
    sendActions(UIControlEvent::editingDidBegin);
}

void UITextField::didResignFirstResponder()
{
    editing = false;
    editor.unmark();
    setNeedsLayout();
    if (const auto told = delegate.lock())
        told->textFieldDidEndEditing(*this);
    sendActions(UIControlEvent::editingDidEnd);
}

void UITextField::willMoveToWindow(UIWindow* window)
{
    UIControl::willMoveToWindow(window);
    if (!window)
        giveUpFirstResponder();
}

void UITextField::insertText(const std::string& text)
{
    if (text == "\n")
        return pressReturn();
    if (editing && !text.empty())
        change(editor.insertionRange(), text);
}

void UITextField::deleteBackward() { remove(TextEditor::Way::backward, UIKeyModifiers::none); }

bool UITextField::pressKey(UIKey key, UIKeyModifiers modifiers)
{
    if (!editing)
        return UIControl::pressKey(key, modifiers);
    switch (key) {
    case UIKey::enter:
        pressReturn();
        return true;
    case UIKey::left:
    case UIKey::right:
        moveSideways(key == UIKey::left, modifiers);
        return true;
    case UIKey::up:
    case UIKey::home:
        moveToEnd(TextEditor::Way::backward, modifiers);
        return true;
    case UIKey::down:
    case UIKey::end:
        moveToEnd(TextEditor::Way::forward, modifiers);
        return true;
    case UIKey::deleteBackward:
        remove(TextEditor::Way::backward, modifiers);
        return true;
    case UIKey::deleteForward:
        remove(TextEditor::Way::forward, modifiers);
        return true;
    case UIKey::tab:
        return true; // no character of a single line
    case UIKey::escape:
        break;
    }
    return UIControl::pressKey(key, modifiers);
}

void UITextField::endTracking(UITouch* touch)
{
    if (!touch || !bounds().contains(touch->location(this)))
        return;
    const CGPoint point = touch->location(this);
    const double time = touch->timestamp();
    const bool isSecond = editing && lastTapTime >= 0 && time - lastTapTime <= doubleTapInterval
        && std::hypot(point.x - lastTap.x, point.y - lastTap.y) <= doubleTapSlop;
    lastTap = point;
    lastTapTime = isSecond ? -1 : time;
    if (!beginEditingAt(point) || !isSecond)
        return;
    const TextPosition hit = editedLine->positionAt(point.x);
    editor.selectWord(hit.leansForward || hit.offset == 0 ? hit.offset : hit.offset - 1); // the character under the finger
    caretMoved();
}

void UITextField::setMarkedText(const std::string& text, std::size_t caret)
{
    const auto keep = weak(this).lock();
    if (!editing || (text.empty() && !editor.markedRange()) || !mayChange(editor.insertionRange(), text))
        return;
    editor.setMarkedText(text, caret);
    contentChanged();
    sendActions(UIControlEvent::editingChanged);
}

void UITextField::unmarkText()
{
    editor.unmark();
    setNeedsLayout();
}

CGRect UITextField::caretRect() const { return convertTo(editedLine->caretRect(), nullptr); }

bool UITextField::canPerform(UIEditAction action) const
{
    if (!editing)
        return false;
    switch (action) {
    case UIEditAction::cut:
    case UIEditAction::copy:
        return editor.selection().length > 0;
    case UIEditAction::paste:
        return UIPasteboard::general().hasStrings();
    case UIEditAction::selectAll:
        return hasText();
    }
    return false;
}

void UITextField::perform(UIEditAction action)
{
    if (!canPerform(action))
        return;
    if (action == UIEditAction::selectAll)
        return setSelectedRange({ 0, editor.text().size() });
    if (action == UIEditAction::paste)
        return change(editor.insertionRange(), UIPasteboard::general().string());
    UIPasteboard::general().setString(std::string(editor.selectedText()));
    if (action == UIEditAction::cut)
        change(editor.selection(), {});
}

bool UITextField::mayChange(NSRange range, const std::string& replacement)
{
    const auto asked = delegate.lock();
    return !asked || asked->textFieldShouldChangeCharacters(*this, range, replacement);
}

void UITextField::change(NSRange range, const std::string& replacement)
{
    const auto keep = weak(this).lock();
    if ((range.length == 0 && replacement.empty()) || !mayChange(range, replacement))
        return;
    editor.replace(range, replacement);
    contentChanged();
    sendActions(UIControlEvent::editingChanged);
}

void UITextField::remove(TextEditor::Way way, UIKeyModifiers modifiers)
{
    if (editing)
        change(editor.deletionRange(way, unitOf(modifiers)), {});
}

// The arrow keys go where they point; a selection without shift ends on that side.
void UITextField::moveSideways(bool toTheLeft, UIKeyModifiers modifiers)
{
    const bool extends = contains(modifiers, UIKeyModifiers::shift);
    const EditedText& text = laidOutText();
    const NSRange selected = editor.selection();
    if (unitOf(modifiers) == TextEditor::Unit::word) {
        const auto way = toTheLeft == text.isRightToLeft() ? TextEditor::Way::forward : TextEditor::Way::backward;
        editor.moveTo({ editor.border(editor.caret().offset, way, TextEditor::Unit::word) }, extends);
    } else if (selected.length > 0 && !extends) {
        const TextPosition first { selected.location }, last { selected.end() };
        const bool firstIsLeft = text.x(first) < text.x(last);
        editor.moveTo(firstIsLeft == toTheLeft ? first : last);
    } else if (const auto beside = text.beside(editor.caret(), toTheLeft)) {
        editor.moveTo(*beside, extends);
    }
    caretMoved();
}

void UITextField::moveToEnd(TextEditor::Way way, UIKeyModifiers modifiers)
{
    editor.moveTo({ editor.border(0, way, TextEditor::Unit::all) }, contains(modifiers, UIKeyModifiers::shift));
    caretMoved();
}

void UITextField::pressReturn()
{
    if (!editing)
        return;
    const auto keep = weak(this).lock();
    if (const auto asked = delegate.lock(); asked && !asked->textFieldShouldReturn(*this))
        return;
    if (!hasActions(UIControlEvent::editingDidEndOnExit))
        return;
    sendActions(UIControlEvent::editingDidEndOnExit);
    resignFirstResponder();
}

// With the caret at the nearest place. What is edited anew shows the text's beginning, as it was seen when the finger came.
bool UITextField::beginEditingAt(CGPoint point)
{
    if (!editing) {
        const TextPosition before = editor.caret();
        editor.moveTo({ 0 });
        if (!becomeFirstResponder()) {
            editor.moveTo(before);
            return false;
        }
    }
    layoutIfNeeded();
    editor.moveTo(editedLine->positionAt(point.x));
    caretMoved();
    return true;
}

// A finger that stays takes the caret along.
void UITextField::pressed(const UILongPressGestureRecognizer& recognizer)
{
    using enum UIGestureRecognizerState;
    if (recognizer.state() == began || (recognizer.state() == changed && editing))
        beginEditingAt(recognizer.location(this));
}

} // namespace platform
