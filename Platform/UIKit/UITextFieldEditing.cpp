// What is written in a text field: by keyboard and through an input method.
#include "Platform/UIKit/EditedLine.h"
#include "Platform/UIKit/UIPasteboard.h"
#include "Platform/UIKit/UITextField.h"

namespace platform {

namespace {

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
    editor.forgetHistory();
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

void UITextField::setMarkedText(const std::string& text, std::size_t caret)
{
    if (editing && (!text.empty() || editor.markedRange()))
        change(editor.insertionRange(), text, [&] { editor.setMarkedText(text, caret); });
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
    case UIEditAction::undo:
        return editor.undoable();
    case UIEditAction::redo:
        return editor.redoable();
    }
    return false;
}

void UITextField::perform(UIEditAction action)
{
    if (!canPerform(action))
        return;
    switch (action) {
    case UIEditAction::copy:
        return UIPasteboard::general().setString(std::string(editor.selectedText()));
    case UIEditAction::cut:
        UIPasteboard::general().setString(std::string(editor.selectedText()));
        return change(editor.selection(), {});
    case UIEditAction::paste:
        if (const auto text = UIPasteboard::general().string(); !text.empty()) // an image, say, replaces nothing
            change(editor.insertionRange(), text);
        return;
    case UIEditAction::selectAll:
        return setSelectedRange({ 0, editor.text().size() });
    case UIEditAction::undo: {
        const TextChange step = *editor.undoable();
        return change({ step.location, step.inserted.size() }, step.removed, [this] { editor.undo(); });
    }
    case UIEditAction::redo: {
        const TextChange step = *editor.redoable();
        return change({ step.location, step.removed.size() }, step.inserted, [this] { editor.redo(); });
    }
    }
}

bool UITextField::mayChange(NSRange range, const std::string& replacement)
{
    const auto asked = delegate.lock();
    return !asked || asked->textFieldShouldChangeCharacters(*this, range, replacement);
}

void UITextField::change(NSRange range, const std::string& replacement)
{
    change(range, replacement, [&] { editor.replace(range, replacement); });
}

void UITextField::change(NSRange range, const std::string& replacement, const std::function<void()>& make)
{
    const auto keep = weak(this).lock();
    if ((range.length == 0 && replacement.empty()) || !mayChange(range, replacement))
        return;
    make();
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

} // namespace platform
