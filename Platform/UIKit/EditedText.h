#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/UIKit/NSRange.h"
#include "Platform/UIKit/TextPosition.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A text on one line as it is laid out for being written in: where its characters are. A long one is laid out in stretches, cut
// at blanks, of which a change touches one or two; a stretch is one step for the order of mixed directions. Points from the
// text's left end. Main thread.
class EditedText {
public:
    struct Style {
        std::shared_ptr<const CTFont> font; // never null
        CGColor color;
        TextDirection direction = TextDirection::leftToRight; // while the text has none
        CGFloat scale = 1; // pixels a point
        bool operator==(const Style&) const = default;
    };
    struct Stretch {
        std::uint64_t number = 0; // tells it from every other one
        std::size_t start = 0, length = 0; // bytes
        CGFloat x = 0, width = 0;
        bool plain = false; // laid out in black, to be tinted
        TextParagraph paragraph;
        std::shared_ptr<const TextLayout> layout;
    };
    struct Span {
        CGFloat x = 0, width = 0;
    };

    // A line as TextEditor has it.
    void update(std::string_view text, const Style& style);

    CGFloat scale() const { return style.scale; }
    CGFloat width() const { return width_; }
    CGFloat height() const; // of the line
    CGFloat baseline() const; // from its top
    bool isRightToLeft() const { return direction == TextDirection::rightToLeft; }
    CGFloat x(TextPosition position) const;
    TextPosition positionAt(CGFloat x) const; // the nearest
    // Past the character on that side; nothing at the end.
    std::optional<TextPosition> beside(TextPosition position, bool onTheLeft) const;
    // Where a part of the text lies, as far as it is between two distances; neighbours are one.
    std::vector<Span> spans(NSRange range, CGFloat from, CGFloat to) const;
    std::vector<const Stretch*> stretches(CGFloat from, CGFloat to) const;

private:
    struct Gap { // before that character of a stretch, counted from the left
        std::size_t stretch, index;
    };

    void divide(std::size_t from, std::size_t to, std::vector<Stretch>& into) const;
    Stretch laidOut(std::size_t start, std::size_t length) const;
    void place();
    std::size_t stretchWith(std::size_t byte) const;
    std::optional<Gap> gapAt(TextPosition position) const;
    CGFloat edge(const Gap& gap) const;

    std::string text;
    Style style;
    TextDirection direction = TextDirection::leftToRight;
    std::vector<Stretch> parts; // in the text's order; one at least, once there is a style
    CGFloat width_ = 0;
};

} // namespace platform
