#pragma once

#include "Platform/UIKit/NSAttributedString.h"
#include "Platform/UIKit/UIView.h"

#include <memory>
#include <optional>
#include <string>

namespace platform {

// Shows a text of one or more lines, centred vertically in its bounds. Touches pass through it. What it shows lies in a layer as
// large as the text, not as the label, so that little is damaged when it changes.
class UILabel : public UIView {
public:
    explicit UILabel(const CGRect& frame = {});
    ~UILabel() override;

    // An attributed text's whole string; empty for none. Setting what is there already costs nothing.
    const std::string& text() const { return text_; }
    void setText(std::string text);
    void setText(const std::optional<std::string>& text) { setText(text.value_or(std::string())); }
    void setText(const char* text) { setText(std::string(text)); }
    // Its runs' attributes win over the label's. Nothing while the text is plain.
    const std::optional<NSAttributedString>& attributedText() const { return attributedText_; }
    void setAttributedText(std::optional<NSAttributedString> text);

    const UIFont& font() const { return font_; } // the system's in 17 points at first
    void setFont(const UIFont& font);
    const UIColor& textColor() const { return textColor_; } // the label colour at first
    void setTextColor(const UIColor& color);
    // Natural and left follow the interface's direction.
    NSTextAlignment textAlignment() const { return textAlignment_; }
    void setTextAlignment(NSTextAlignment alignment);
    NSLineBreakMode lineBreakMode() const { return lineBreakMode_; } // where text is cut that finds no room
    void setLineBreakMode(NSLineBreakMode mode);
    int numberOfLines() const { return numberOfLines_; } // at most so many; 0: as many as are needed
    void setNumberOfLines(int count);
    // Text that finds no room in its lines becomes smaller, in quarters of a point, down to so much of its size (0 to 1), before
    // it is cut.
    bool adjustsFontSizeToFitWidth() const { return adjustsFontSize; }
    void setAdjustsFontSizeToFitWidth(bool adjusts);
    CGFloat minimumScaleFactor() const { return minimumScaleFactor_; }
    void setMinimumScaleFactor(CGFloat factor);
    // The width (points) at which lines break for the intrinsic size; 0 leaves that to the layout.
    CGFloat preferredMaxLayoutWidth() const { return preferredMaxLayoutWidth_; }
    void setPreferredMaxLayoutWidth(CGFloat width);

    // What is drawn in the present bounds, null for an empty text; and where its lines lie, points.
    std::shared_ptr<const TextLayout> displayedLayout() const;
    CGRect textRect() const;

    // UIView
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;

protected:
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    std::optional<CGFloat> intrinsicHeight(CGFloat width) const override;

private:
    struct ShownText {
        std::shared_ptr<const TextLayout> layout;
        TextParagraph paragraph; // what it was made from
        CGPoint origin; // of the layout, points
    };

    void contentChanged();
    TextParagraph paragraph(CGFloat fontScale = 1) const;
    ShownText broken(CGFloat width, CGFloat maximumHeight, CGFloat fontScale = 1) const;
    ShownText shrunk(CGFloat width, CGFloat maximumHeight) const;
    std::optional<ShownText> shownText() const; // nothing for an empty text or label
    CGSize measured(CGFloat width) const;
    bool isSingleColored() const;
    void showText();

    std::string text_;
    std::optional<NSAttributedString> attributedText_;
    UIFont font_;
    UIColor textColor_;
    CGFloat minimumScaleFactor_ = 0;
    CGFloat preferredMaxLayoutWidth_ = 0;
    int numberOfLines_ = 1;
    NSTextAlignment textAlignment_ = NSTextAlignment::natural;
    NSLineBreakMode lineBreakMode_ = NSLineBreakMode::byTruncatingTail;
    bool adjustsFontSize = false;
    std::shared_ptr<CALayer> textLayer;
};

} // namespace platform
