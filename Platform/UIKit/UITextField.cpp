// A text field's content and looks; UITextFieldEditing.cpp and UITextFieldPointing.cpp have what the viewer does with it.
#include "Platform/UIKit/UITextField.h"

#include "Platform/UIKit/EditedLine.h"
#include "Platform/UIKit/RestingLine.h"
#include "Platform/UIKit/TextPicture.h"
#include "Platform/UIKit/UIApplication.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

UIColor lightOrDark(const UIColor& light, const UIColor& dark)
{
    return UIColor::dynamic([=](const UITraitCollection& traits) { return traits.isDark() ? dark : light; });
}

const UIColor& placeholderColor() // the secondary label's, fainter
{
    static const auto& color = *new UIColor(
        lightOrDark(UIColor(60 / 255.0, 60 / 255.0, 67 / 255.0, 0.3), UIColor(235 / 255.0, 235 / 255.0, 245 / 255.0, 0.3)));
    return color;
}

const UIColor& roundedBackground()
{
    static const auto& color = *new UIColor(lightOrDark(UIColor::white(), UIColor::white(0.11)));
    return color;
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
    , placeholderLine(std::make_unique<RestingLine>(*layer()))
    , restingLine(std::make_unique<RestingLine>(*layer()))
    , editedLine(std::make_unique<EditedLine>(*layer()))
{
    watchTouches();
}

UITextField::~UITextField() = default;

void UITextField::setText(const std::string& text)
{
    editor.setText(text);
    contentChanged();
}

void UITextField::setPlaceholder(const std::string& placeholder) { setAttributedPlaceholder(NSAttributedString(placeholder)); }

void UITextField::setAttributedPlaceholder(const NSAttributedString& placeholder)
{
    if (placeholder_ == placeholder)
        return;
    placeholder_ = placeholder;
    contentChanged();
}

void UITextField::setFont(const UIFont& font)
{
    if (font_ == font)
        return;
    font_ = font;
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
    setNeedsLayout();
}

void UITextField::setBorderStyle(UITextBorderStyle style)
{
    if (borderStyle_ == style)
        return;
    borderStyle_ = style;
    contentChanged();
}

CGRect UITextField::textRect(const CGRect& bounds) const
{
    const UIEdgeInsets inside = insetsOf(borderStyle_);
    return { bounds.x + inside.left, bounds.y + inside.top, std::max(bounds.width - inside.horizontal(), 0.0),
        std::max(bounds.height - inside.vertical(), 0.0) };
}

CGSize UITextField::intrinsicContentSize() const { return sizeThatFits({}); }

CGSize UITextField::sizeThatFits(const CGSize& /*size*/) const
{
    const CGFloat scale = traitCollection().displayScale;
    const EditedText& text = laidOutText();
    CGSize content { text.width() > 0 ? std::ceil(text.width() * scale) / scale : 0, text.height() };
    if (!placeholder_.isEmpty()) {
        const auto layout = TextLayout::make(placeholder_.paragraph(font_, placeholderColor(), traitCollection()),
            std::numeric_limits<CGFloat>::infinity(), scale);
        content.width = std::max(content.width, linesRect(*layout, scale).width);
        content.height = std::max(content.height, layout->size().height);
    }
    const CGRect sample { 0, 0, 1000, 1000 };
    const CGRect inside = textRect(sample);
    const CGFloat caret = content.width > 0 ? BlinkingCaret::width : 0;
    return { content.width + caret + sample.width - inside.width, content.height + sample.height - inside.height };
}

void UITextField::layoutSubviews()
{
    UIControl::layoutSubviews();
    showBorder();
    showPlaceholder();
    showText();
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
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

CGFloat UITextField::firstBaselineOffset() const
{
    const CGRect rect = presentTextRect();
    const EditedText& text = laidOutText();
    return rect.y + (rect.height - text.height()) / 2 + text.baseline();
}

CGFloat UITextField::lastBaselineOffset() const { return bounds().height - firstBaselineOffset(); }

bool UITextField::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

NSTextAlignment UITextField::presentAlignment() const
{
    if (textAlignment_ == NSTextAlignment::center || textAlignment_ == NSTextAlignment::right)
        return textAlignment_;
    return isRightToLeft() ? NSTextAlignment::right : NSTextAlignment::left;
}

CGRect UITextField::presentTextRect() const { return editing ? editingRect(bounds()) : textRect(bounds()); }

EditedText& UITextField::laidOutText() const
{
    EditedText::Style style;
    style.font = font_.ctFont();
    style.color = textColor_.cgColor(traitCollection());
    style.direction = isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight;
    style.scale = traitCollection().displayScale;
    editedLine->text().update(editor.text(), style);
    return editedLine->text();
}

void UITextField::showBorder()
{
    if (borderStyle_ == UITextBorderStyle::none) {
        if (border)
            border->removeFromSuperlayer();
        border = nullptr;
        return;
    }
    if (!border) {
        border = make<CALayer>();
        layer()->insertSublayer(border, 0);
    }
    const UITraitCollection& present = traitCollection();
    const bool isRounded = borderStyle_ == UITextBorderStyle::roundedRect;
    border->setFrame(bounds());
    border->setCornerRadius(isRounded ? 5 : 0);
    border->setBorderWidth(isRounded ? 1 / present.displayScale : 1);
    border->setBorderColor((borderStyle_ == UITextBorderStyle::line ? UIColor::label()
            : isRounded                                             ? UIColor::separator()
                                                                    : UIColor::systemGray4())
                               .cgColor(present));
    border->setBackgroundColor(
        isRounded && !backgroundColor() ? std::optional(roundedBackground().cgColor(present)) : std::nullopt);
}

void UITextField::showPlaceholder()
{
    if (hasText() || placeholder_.isEmpty())
        return placeholderLine->hide();
    TextParagraph paragraph = placeholder_.paragraph(font_, placeholderColor(), traitCollection());
    paragraph.direction = isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight;
    paragraph.alignment = presentAlignment();
    placeholderLine->show(std::move(paragraph), std::nullopt, placeholderRect(bounds()), traitCollection().displayScale);
}

void UITextField::showText()
{
    const UITraitCollection& present = traitCollection();
    const CGColor color = textColor_.cgColor(present);
    if (editing) {
        restingLine->hide();
        laidOutText();
        const CGRect rect = presentTextRect();
        // Half a caret's width, where it would not be cut at the field's edge.
        const CGFloat lean
            = std::clamp(std::min(rect.minX() - bounds().minX(), bounds().maxX() - rect.maxX()), 0.0, EditedLine::overhang);
        editedLine->show(editor, { color, tintColor().cgColor(present), presentAlignment(), lean }, rect);
        return;
    }
    editedLine->hide();
    if (!hasText())
        return restingLine->hide();
    const bool isPlain = isPlainlyColored(editor.text());
    TextParagraph paragraph;
    paragraph.runs.push_back({ editor.text(), nullptr, std::nullopt, {}, false });
    paragraph.font = font_.ctFont();
    paragraph.color = isPlain ? CGColor { 0, 0, 0, 1 } : color; // one that is tinted shares its picture with other colours
    paragraph.direction = isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight;
    paragraph.alignment = presentAlignment();
    restingLine->show(
        std::move(paragraph), isPlain ? std::optional(color) : std::nullopt, presentTextRect(), present.displayScale);
}

void UITextField::contentChanged()
{
    invalidateIntrinsicContentSize();
    caretMoved();
}

void UITextField::caretMoved()
{
    setNeedsLayout();
    if (!editing)
        return;
    editedLine->restartBlinking();
    UIApplication::shared().textInputDidChange();
}

} // namespace platform
