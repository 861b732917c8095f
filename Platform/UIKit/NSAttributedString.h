#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/UIKit/UIColor.h"
#include "Platform/UIKit/UIFont.h"

#include <optional>
#include <string>
#include <vector>

namespace platform {

struct NSShadow {
    UIColor color = UIColor::white(0, 1.0 / 3);
    CGFloat blurRadius = 0; // points
    CGSize offset;
    bool operator==(const NSShadow&) const = default;
};

// How a stretch of text looks. What is absent is the showing view's own.
struct NSAttributes {
    std::optional<UIFont> font;
    std::optional<UIColor> foregroundColor;
    std::optional<std::string> link; // where a tap leads; may be empty and is a link all the same
    bool underline = false;
    std::optional<NSShadow> shadow;
    bool operator==(const NSAttributes&) const = default;
};

// A text in stretches, each with its attributes: a value. Main thread.
class NSAttributedString {
public:
    struct Run {
        std::string text; // UTF-8, never empty
        NSAttributes attributes;
        bool operator==(const Run&) const = default;
    };

    NSAttributedString() = default;
    explicit NSAttributedString(std::string text, NSAttributes attributes = {});

    void append(const NSAttributedString& other); // neighbours of equal attributes become one run
    const std::vector<Run>& runs() const { return runs_; }
    std::string string() const; // the whole text
    bool isEmpty() const { return runs_.empty(); }
    bool operator==(const NSAttributedString&) const = default;

    // What the text engine lays out, with the colours as they are in these traits. Its lines are as high as the tallest font in
    // it. A paragraph has one shadow: that of the first run that has any.
    TextParagraph paragraph(const UIFont& font, const UIColor& color, const UITraitCollection& traits) const;

private:
    std::vector<Run> runs_;
};

} // namespace platform
