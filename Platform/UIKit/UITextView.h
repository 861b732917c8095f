#pragma once

#include "Platform/UIKit/NSAttributedString.h"
#include "Platform/UIKit/NSRange.h"
#include "Platform/UIKit/UIScrollView.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

class UILongPressGestureRecognizer;
class UITextView;
class UITouch;

enum class UIDataDetectorTypes : unsigned char { none, link };
enum class UITextItemInteraction : unsigned char { invokeDefaultAction }; // a tap

class UITextViewDelegate : public UIScrollViewDelegate {
public:
    // A link was tapped; what it leads to may be empty. False keeps it from being opened.
    virtual bool textViewShouldInteractWith(
        UITextView& /*textView*/, const std::string& /*link*/, NSRange /*characterRange*/, UITextItemInteraction /*interaction*/)
    {
        return true;
    }
};

// Shows a text of any length for reading: from its upper edge, lines broken at its width, stretches that carry a link in the tint
// colour. A tap on such a stretch opens it in the host, if it is an address of the web (http or https). While it does not scroll
// it asks for the size of its text, and is not clipped, so that the text's shadow may reach over the edges.
class UITextView : public UIScrollView {
public:
    // What its recogniser of taps on links is called.
    static constexpr const char* linkTapName = "UITextInteractionNameLinkTap";

    explicit UITextView(const CGRect& frame = {});
    ~UITextView() override;

    // An attributed text's whole string; empty for none. Setting what is there already costs nothing.
    const std::string& text() const { return text_; }
    void setText(std::string text);
    void setText(const std::optional<std::string>& text) { setText(text.value_or(std::string())); }
    void setText(const char* text) { setText(std::string(text)); }
    // Its runs' attributes win over the view's. Nothing while the text is plain.
    const std::optional<NSAttributedString>& attributedText() const { return attributedText_; }
    void setAttributedText(std::optional<NSAttributedString> text);
    // The text as it is shown: with the links that were found in it, and links in the tint colour.
    const NSAttributedString& displayedText() const;

    const UIFont& font() const { return font_; } // the system's in 17 points at first
    void setFont(const UIFont& font);
    const UIColor& textColor() const { return textColor_; } // the label colour at first
    void setTextColor(const UIColor& color);
    const UIEdgeInsets& textContainerInset() const { return textContainerInset_; } // points around the text; 8 above and below
    void setTextContainerInset(const UIEdgeInsets& inset);
    CGFloat lineFragmentPadding() const { return lineFragmentPadding_; } // points before and after every line; 5 at first
    void setLineFragmentPadding(CGFloat padding);
    UIDataDetectorTypes dataDetectorTypes() const { return dataDetectorTypes_; } // what is made a link by itself; none at first
    void setDataDetectorTypes(UIDataDetectorTypes types);
    bool isSelectable() const { return selectable; } // links lead somewhere only while it is; text itself cannot be selected
    void setSelectable(bool newSelectable) { selectable = newSelectable; }
    void setDelegate(const std::weak_ptr<UITextViewDelegate>& delegate);

    // What the stretch at a point of the content leads to; nothing beside all links.
    std::optional<std::string> linkAt(CGPoint point) const;

    // UIScrollView
    void setScrollEnabled(bool enabled) override;
    // UIView
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;

protected:
    // UIView
    void layoutSubviews() override;
    void boundsDidChange(const CGRect& previous) override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    std::optional<CGFloat> intrinsicHeight(CGFloat width) const override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;

private:
    class PressRules;
    struct Link {
        std::string target;
        NSRange range;
        bool operator==(const Link&) const = default;
    };
    struct PlacedLayout {
        std::shared_ptr<const TextLayout> layout;
        CGPoint origin; // in the content
    };

    void contentChanged();
    void looksChanged();
    const TextParagraph& paragraph() const;
    const std::shared_ptr<const TextLayout>& layoutFor(CGFloat width) const;
    std::optional<PlacedLayout> placedLayout() const; // nothing without text or room
    CGSize measured(CGFloat width) const;
    CGFloat room(CGFloat width) const;
    void showText();
    std::optional<Link> findLink(CGPoint point) const;
    bool mayPress(const UITouch& touch) const;
    void pressed(const UILongPressGestureRecognizer& recognizer);
    void follow(const Link& link);

    std::string text_;
    std::optional<NSAttributedString> attributedText_;
    UIFont font_;
    UIColor textColor_;
    UIEdgeInsets textContainerInset_ { 8, 0, 8, 0 };
    CGFloat lineFragmentPadding_ = 5;
    UIDataDetectorTypes dataDetectorTypes_ = UIDataDetectorTypes::none;
    bool selectable = true;
    std::weak_ptr<UITextViewDelegate> textDelegate;
    std::vector<std::shared_ptr<CALayer>> textLayers; // from the top; one but for texts of many screens
    std::shared_ptr<UILongPressGestureRecognizer> linkPress;
    std::shared_ptr<PressRules> pressRules;
    std::optional<Link> pressedLink;
    CGPoint pressedAt; // window coordinates

    // Made when they are asked for.
    mutable std::optional<NSAttributedString> displayedText_;
    mutable std::optional<TextParagraph> paragraph_;
    mutable std::shared_ptr<const TextLayout> natural; // in lines that nothing breaks
    mutable std::shared_ptr<const TextLayout> broken; // at that width
    mutable CGFloat brokenWidth = 0; // points
};

} // namespace platform
