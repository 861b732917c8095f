#include "Platform/UIKit/UILabel.h"

#include "Platform/UIKit/TextPicture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {
constexpr CGFloat unlimited = std::numeric_limits<CGFloat>::infinity();
constexpr CGFloat widthTolerance = 0.01; // points, so that a measured width holds its text after some arithmetic
constexpr CGFloat fontSizeStep = 0.25; // points between the sizes that a shrinking text tries
constexpr CGFloat smallestFontSize = 1; // points

std::shared_ptr<const CTFont> scaled(const UIFont& font, CGFloat factor)
{
    return factor < 1 ? font.withSize(font.pointSize() * factor).ctFont() : font.ctFont();
}
}

UILabel::UILabel(const CGRect& frame)
    : UIView(frame)
    , font_(UIFont::systemFont(UIFont::labelFontSize))
    , textColor_(UIColor::label())
{
    UIView::setUserInteractionEnabled(false);
}

UILabel::~UILabel() = default;

void UILabel::setText(std::string text)
{
    if (!attributedText_ && text == text_)
        return;
    attributedText_.reset();
    text_ = std::move(text);
    contentChanged();
}

void UILabel::setAttributedText(std::optional<NSAttributedString> text)
{
    if (attributedText_ == text && (text || text_.empty()))
        return;
    text_ = text ? text->string() : std::string();
    attributedText_ = std::move(text);
    contentChanged();
}

void UILabel::setFont(const UIFont& font)
{
    if (font_ == font)
        return;
    font_ = font;
    contentChanged();
}

void UILabel::setTextColor(const UIColor& color)
{
    if (textColor_ == color)
        return;
    textColor_ = color;
    setNeedsLayout();
}

void UILabel::setTextAlignment(NSTextAlignment alignment)
{
    if (textAlignment_ == alignment)
        return;
    textAlignment_ = alignment;
    setNeedsLayout();
}

void UILabel::setLineBreakMode(NSLineBreakMode mode)
{
    if (lineBreakMode_ == mode)
        return;
    lineBreakMode_ = mode;
    contentChanged();
}

void UILabel::setNumberOfLines(int count)
{
    count = std::max(count, 0);
    if (numberOfLines_ == count)
        return;
    numberOfLines_ = count;
    contentChanged();
}

void UILabel::setAdjustsFontSizeToFitWidth(bool adjusts)
{
    if (adjustsFontSize == adjusts)
        return;
    adjustsFontSize = adjusts;
    setNeedsLayout();
}

void UILabel::setMinimumScaleFactor(CGFloat factor)
{
    factor = std::clamp(factor, 0.0, 1.0);
    if (minimumScaleFactor_ == factor)
        return;
    minimumScaleFactor_ = factor;
    setNeedsLayout();
}

void UILabel::setPreferredMaxLayoutWidth(CGFloat width)
{
    if (preferredMaxLayoutWidth_ == width)
        return;
    preferredMaxLayoutWidth_ = width;
    contentChanged();
}

std::shared_ptr<const TextLayout> UILabel::displayedLayout() const
{
    const auto shown = shownText();
    return shown ? shown->layout : nullptr;
}

CGRect UILabel::textRect() const
{
    const auto shown = shownText();
    return shown ? linesRect(*shown->layout, traitCollection().displayScale).offsetBy(shown->origin.x, shown->origin.y)
                 : CGRect {};
}

CGSize UILabel::intrinsicContentSize() const
{
    return sizeThatFits({ preferredMaxLayoutWidth_ > 0 ? preferredMaxLayoutWidth_ : unlimited, 0 });
}

CGSize UILabel::sizeThatFits(const CGSize& size) const
{
    if (text_.empty())
        return {};
    // A single line is measured whole: a label that is too narrow cuts it, or makes it smaller, when it is shown.
    return measured(numberOfLines_ != 1 && size.width > 0 ? size.width : unlimited);
}

CGFloat UILabel::firstBaselineOffset() const
{
    return text_.empty() ? 0 : broken(bounds().width > 0 ? bounds().width : unlimited, 0).layout->firstBaseline();
}

CGFloat UILabel::lastBaselineOffset() const
{
    if (text_.empty())
        return 0;
    const auto layout = broken(bounds().width > 0 ? bounds().width : unlimited, 0).layout;
    return layout->size().height - layout->lastBaseline();
}

void UILabel::layoutSubviews()
{
    UIView::layoutSubviews();
    showText();
}

void UILabel::boundsDidChange(const CGRect& previous)
{
    UIView::boundsDidChange(previous);
    setNeedsLayout();
}

void UILabel::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    if (previous.displayScale != traitCollection().displayScale)
        invalidateIntrinsicContentSize();
    setNeedsLayout();
}

std::optional<CGFloat> UILabel::intrinsicHeight(CGFloat width) const
{
    if (numberOfLines_ == 1 || text_.empty() || preferredMaxLayoutWidth_ > 0)
        return std::nullopt;
    // The frame's edges will lie on pixels, which may cost the width part of one.
    const CGFloat scale = traitCollection().displayScale;
    return measured(std::floor((width + widthTolerance) * scale) / scale).height;
}

void UILabel::contentChanged()
{
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

TextParagraph UILabel::paragraph(CGFloat fontScale) const
{
    const UITraitCollection& present = traitCollection();
    TextParagraph result;
    if (attributedText_) {
        result = attributedText_->paragraph(font_, textColor_, present);
        if (fontScale < 1) {
            for (std::size_t i = 0; i < result.runs.size(); ++i)
                result.runs[i].font = scaled(attributedText_->runs()[i].attributes.font.value_or(font_), fontScale);
            result.font = result.runs.front().font;
        }
    } else {
        result.runs.push_back({ text_, nullptr, std::nullopt, {}, false });
        result.font = scaled(font_, fontScale);
        // A text that is tinted when shown is laid out in black, so that equal texts of other colours share its picture.
        result.color = isSingleColored() ? CGColor { 0, 0, 0, 1 } : textColor_.cgColor(present);
    }
    const bool rightToLeft = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    result.direction = rightToLeft ? TextDirection::rightToLeft : TextDirection::leftToRight;
    const bool followsDirection = textAlignment_ == NSTextAlignment::natural || textAlignment_ == NSTextAlignment::left;
    result.alignment = textAlignment_;
    if (followsDirection)
        result.alignment = rightToLeft ? NSTextAlignment::right : NSTextAlignment::left;
    result.lineBreakMode = lineBreakMode_;
    result.numberOfLines = numberOfLines_;
    return result;
}

UILabel::ShownText UILabel::broken(CGFloat width, CGFloat maximumHeight, CGFloat fontScale) const
{
    ShownText result { nullptr, paragraph(fontScale), {} };
    result.layout = TextLayout::make(result.paragraph, width + widthTolerance, traitCollection().displayScale, maximumHeight);
    return result;
}

UILabel::ShownText UILabel::shrunk(CGFloat width, CGFloat maximumHeight) const
{
    const CGFloat fullSize = font_.pointSize();
    const CGFloat smallest = std::max(fullSize * minimumScaleFactor_, smallestFontSize);
    const auto atStep = [&](int step) {
        const CGFloat size = std::max(fullSize - step * fontSizeStep, smallest);
        return broken(width, maximumHeight, size / fullSize);
    };
    int tooLarge = 0, fitting = int(std::ceil(std::max(fullSize - smallest, 0.0) / fontSizeStep));
    ShownText best = atStep(fitting);
    if (best.layout->isTruncated())
        return best; // the smallest size is cut too
    while (fitting - tooLarge > 1) {
        const int middle = (tooLarge + fitting) / 2;
        ShownText candidate = atStep(middle);
        if (candidate.layout->isTruncated()) {
            tooLarge = middle;
        } else {
            fitting = middle;
            best = std::move(candidate);
        }
    }
    return best;
}

std::optional<UILabel::ShownText> UILabel::shownText() const
{
    const CGRect box = bounds();
    if (text_.empty() || box.isEmpty())
        return std::nullopt;
    const CGFloat scale = traitCollection().displayScale;
    const CGFloat height = box.height + 1 / scale; // a height that was rounded to pixels still holds the lines that asked for it
    ShownText shown = broken(unlimited, 0);
    const CGFloat naturalWidth = linesRect(*shown.layout, scale).width;
    CGFloat x = box.x;
    if (naturalWidth > box.width + widthTolerance || shown.layout->size().height > height) {
        shown = broken(box.width, 0);
        if (shown.layout->size().height > height)
            shown = broken(box.width, height);
        if (adjustsFontSize && shown.layout->isTruncated())
            shown = shrunk(box.width, height);
    } else if (shown.paragraph.alignment == NSTextAlignment::center) {
        x += (box.width - naturalWidth)
            / 2; // lines that need no breaking are placed here, so that labels of any width share them
    } else if (shown.paragraph.alignment == NSTextAlignment::right) {
        x += box.width - naturalWidth;
    }
    shown.origin.x = std::round(x * scale) / scale;
    shown.origin.y = std::round((box.y + (box.height - shown.layout->size().height) / 2) * scale) / scale;
    return shown;
}

CGSize UILabel::measured(CGFloat width) const
{
    const auto layout = broken(width, 0).layout;
    return { linesRect(*layout, traitCollection().displayScale).width, layout->size().height };
}

bool UILabel::isSingleColored() const { return !attributedText_ && isPlainlyColored(text_); }

void UILabel::showText()
{
    const auto shown = shownText();
    if (!shown) {
        if (textLayer)
            textLayer->setContents(nullptr);
        return;
    }
    const UITraitCollection& present = traitCollection();
    const bool tinted = isSingleColored();
    const TextPicture picture = textPicture(shown->layout, shown->paragraph, present.displayScale);
    if (!textLayer) {
        textLayer = make<CALayer>();
        layer()->insertSublayer(textLayer, 0);
    }
    textLayer->setFrame(picture.rect.offsetBy(shown->origin.x, shown->origin.y));
    textLayer->setContents(picture.image);
    textLayer->setContentsTint(tinted ? std::optional(textColor_.cgColor(present)) : std::nullopt);
}

} // namespace platform
