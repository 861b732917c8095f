#include "Platform/UIKit/UITextField.h"

#include "Platform/UIKit/EditedLine.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UITouch.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

UIColor placeholderColor()
{
    return UIColor::dynamic([](const UITraitCollection& traits) {
        return traits.isDark() ? UIColor(235 / 255.0, 235 / 255.0, 245 / 255.0, 0.3)
                               : UIColor(60 / 255.0, 60 / 255.0, 67 / 255.0, 0.3);
    });
}

UIEdgeInsets insetsOf(UITextBorderStyle style) // points between the field's edges and its text
{
    switch (style) {
    case UITextBorderStyle::line:
        return { 2, 2, 2, 2 };
    case UITextBorderStyle::bezel:
    case UITextBorderStyle::roundedRect:
        return { 6, 7, 6, 7 };
    case UITextBorderStyle::none:
        break;
    }
    return {};
}

} // namespace

UITextField::UITextField(const CGRect& frame)
    : UIControl(frame)
    , font_(UIFont::systemFont(UIFont::labelFontSize))
    , textColor_(UIColor::label())
    , line(std::make_unique<EditedLine>(*layer()))
    , placeholderLabel(make<UILabel>())
{
    placeholderLabel->setTextColor(placeholderColor());
    placeholderLabel->setFont(font_);
    addSubview(placeholderLabel);
}

UITextField::~UITextField() = default;

void UITextField::setText(const std::string& text)
{
    if (!editor.markedRange() && text == editor.text())
        return;
    editor.setText(text);
    contentChanged();
}

void UITextField::setPlaceholder(const std::string& placeholder) { setAttributedPlaceholder(NSAttributedString(placeholder)); }

void UITextField::setAttributedPlaceholder(const NSAttributedString& placeholder)
{
    placeholder_ = placeholder;
    placeholderLabel->setAttributedText(placeholder_);
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UITextField::setFont(const UIFont& font)
{
    if (font_ == font)
        return;
    font_ = font;
    placeholderLabel->setFont(font);
    contentChanged();
}

void UITextField::setTextColor(const UIColor& color)
{
    textColor_ = color;
    setNeedsLayout();
}

void UITextField::setTextAlignment(NSTextAlignment alignment)
{
    textAlignment_ = alignment;
    placeholderLabel->setTextAlignment(alignment);
    setNeedsLayout();
}

void UITextField::setBorderStyle(UITextBorderStyle style)
{
    borderStyle_ = style;
    contentChanged();
}

void UITextField::setSelectedRange(NSRange range)
{
    editor.select(range.location, range.end());
    caretMoved();
}

CGRect UITextField::textRect(const CGRect& bounds) const
{
    const UIEdgeInsets inside = insetsOf(borderStyle_);
    return { bounds.x + inside.left, bounds.y + inside.top, std::max(bounds.width - inside.left - inside.right, 0.0),
        std::max(bounds.height - inside.top - inside.bottom, 0.0) };
}

void UITextField::setEnabled(bool enabled)
{
    UIControl::setEnabled(enabled);
    if (!enabled)
        giveUpFirstResponder();
}

void UITextField::setHidden(bool hidden)
{
    UIControl::setHidden(hidden);
    if (hidden)
        giveUpFirstResponder();
}

CGSize UITextField::intrinsicContentSize() const { return sizeThatFits({}); }

CGSize UITextField::sizeThatFits(const CGSize& /*size*/) const
{
    UILabel measure;
    measure.setFont(font_);
    measure.setText(editor.text());
    const CGSize written = measure.intrinsicContentSize(), waiting = placeholderLabel->intrinsicContentSize();
    const CGRect sample { 0, 0, 1000, 1000 };
    const CGRect inside = textRect(sample);
    return { std::max(written.width, waiting.width) + sample.width - inside.width,
        std::ceil(std::max(font_.lineHeight(), waiting.height)) + sample.height - inside.height };
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

void UITextField::insertText(const std::string& text)
{
    if (text == "\n")
        return pressReturn();
    if (editing && !text.empty())
        change(editor.insertionRange(), text);
}

void UITextField::deleteBackward()
{
    if (editing)
        change(editor.deletionRange(TextEditor::Way::backward, TextEditor::Unit::character), {});
}

bool UITextField::pressKey(UIKey key)
{
    if (key != UIKey::enter || !editing)
        return UIControl::pressKey(key);
    pressReturn();
    return true;
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

bool UITextField::beginTracking(UITouch& /*touch*/) { return true; }

void UITextField::endTracking(UITouch* touch)
{
    if (!touch || !bounds().contains(touch->location(this)) || !becomeFirstResponder())
        return;
    layoutIfNeeded();
    editor.moveTo(line->offsetAt(touch->location(this).x));
    caretMoved();
}

void UITextField::willMoveToWindow(UIWindow* window)
{
    UIControl::willMoveToWindow(window);
    if (!window)
        giveUpFirstResponder();
}

void UITextField::layoutSubviews()
{
    UIControl::layoutSubviews();
    placeholderLabel->setFrame(placeholderRect(bounds()));
    placeholderLabel->setHidden(hasText());
    EditedLine::Look look;
    look.font = font_.ctFont();
    look.color = textColor_.cgColor(traitCollection());
    look.tint = tintColor().cgColor(traitCollection());
    look.direction = isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight;
    look.alignment = textAlignment_;
    if (textAlignment_ != NSTextAlignment::center && textAlignment_ != NSTextAlignment::right)
        look.alignment = isRightToLeft() ? NSTextAlignment::right : NSTextAlignment::left;
    look.scale = traitCollection().displayScale;
    line->show(editor, look, presentTextRect(), editing);
}

void UITextField::boundsDidChange(const CGRect& previous)
{
    UIControl::boundsDidChange(previous);
    setNeedsLayout();
}

void UITextField::tintColorDidChange() { setNeedsLayout(); }

void UITextField::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    contentChanged();
}

CGFloat UITextField::firstBaselineOffset() const
{
    const CGRect rect = presentTextRect();
    return rect.y + (rect.height - font_.lineHeight()) / 2 + font_.ascender();
}

CGFloat UITextField::lastBaselineOffset() const { return bounds().height - firstBaselineOffset(); }

void UITextField::setMarkedText(const std::string& text, std::size_t caret)
{
    const auto keep = weak(this).lock();
    if (!editing || !mayChange(editor.insertionRange(), text))
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

CGRect UITextField::caretRect() const { return convertTo(line->caretRect(), nullptr); }

bool UITextField::canPerform(UIEditAction action) const { return editing && action == UIEditAction::selectAll && hasText(); }

void UITextField::perform(UIEditAction action)
{
    if (!canPerform(action))
        return;
    editor.select(0, editor.text().size());
    caretMoved();
}

bool UITextField::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

CGRect UITextField::presentTextRect() const { return editing ? editingRect(bounds()) : textRect(bounds()); }

// False when nothing was changed, or the delegate refused.
bool UITextField::change(NSRange range, const std::string& replacement)
{
    const auto keep = weak(this).lock();
    if ((range.length == 0 && replacement.empty()) || !mayChange(range, replacement))
        return false;
    editor.replace(range, replacement);
    contentChanged();
    sendActions(UIControlEvent::editingChanged);
    return true;
}

bool UITextField::mayChange(NSRange range, const std::string& replacement)
{
    const auto asked = delegate.lock();
    return !asked || asked->textFieldShouldChangeCharacters(*this, range, replacement);
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

void UITextField::contentChanged()
{
    invalidateIntrinsicContentSize();
    caretMoved();
}

void UITextField::caretMoved()
{
    if (editing)
        line->restartBlinking();
    setNeedsLayout();
}

} // namespace platform
