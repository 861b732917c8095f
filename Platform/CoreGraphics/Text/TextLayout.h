#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/Text/CTFont.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

enum class NSTextAlignment : unsigned char { natural, left, center, right, justified };
enum class NSLineBreakMode : unsigned char {
    byWordWrapping,
    byCharWrapping,
    byClipping,
    byTruncatingHead,
    byTruncatingTail,
    byTruncatingMiddle
};
enum class TextDirection : unsigned char { leftToRight, rightToLeft };

// A stretch of text in one style.
struct TextRun {
    std::string text; // UTF-8; what is not shows as U+FFFD
    std::shared_ptr<const CTFont> font; // null takes the paragraph's
    std::optional<CGColor> color; // absent takes the paragraph's
    std::string link; // empty for none
    bool underline = false;
    bool operator==(const TextRun&) const = default;
};

struct TextShadow {
    CGColor color;
    CGFloat radius = 0; // points, the gaussian's sigma times two
    CGSize offset;
    bool operator==(const TextShadow&) const = default;
};

struct TextParagraph {
    std::vector<TextRun> runs;
    std::shared_ptr<const CTFont> font; // never null
    CGColor color { 0, 0, 0, 1 };
    NSTextAlignment alignment = NSTextAlignment::natural;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::byTruncatingTail;
    TextDirection direction = TextDirection::leftToRight; // of the paragraph when its text has no strong character
    int numberOfLines = 1; // 0: as many as are needed
    // For a line that is written in, with at most one run: it is never cut, the blanks at its ends count, the direction holds
    // whatever the text, and the layout knows its characters.
    bool isEdited = false;
    CGFloat lineSpacing = 0; // points between lines
    std::optional<TextShadow> shadow;
    bool operator==(const TextParagraph&) const = default;
};

// A paragraph broken into lines of at most `width` points and shaped. Lines are as high as the highest font asked for (the runs',
// or the paragraph's where they name none); fallback glyphs do not change that. Line breaks in the text begin new lines, a tab is
// four spaces, other control characters are left out. Equal paragraphs and widths share one result, so asking again is cheap.
// Main thread.
class TextLayout {
public:
    // `width`: points, infinity for no limit; a line holds one character at least. `maximumHeight`: further lines are dropped and
    // the last one truncated. `scale`: pixels a point; sizes round up to whole pixels.
    static std::shared_ptr<const TextLayout> make(
        const TextParagraph& paragraph, CGFloat width, CGFloat scale, CGFloat maximumHeight = 0 /* 0: no limit */);
    ~TextLayout();

    struct Line {
        CGRect rect; // points: where the glyphs' advance lies, as aligned
        CGFloat baseline; // points from the layout's top
        bool truncated;
    };
    CGSize size() const; // points
    const std::vector<Line>& lines() const;
    bool isTruncated() const; // some text is left out
    CGFloat firstBaseline() const;
    CGFloat lastBaseline() const;
    // Which of the paragraph's runs lies at a point; nothing beside the lines.
    std::optional<std::size_t> runAt(CGPoint point) const;
    // The run's link at a point, empty for none.
    std::string linkAt(CGPoint point) const;

    // Where a character stands: the cell that the caret goes around. Letters that share a glyph share its width.
    struct Character {
        std::size_t start = 0, end = 0; // bytes of the run's text
        CGFloat x = 0, width = 0; // points from the layout's left
        bool rightToLeft = false;
    };
    // Of an edited paragraph, from left to right; empty for others.
    const std::vector<Character>& characters() const;

    struct Impl; // the text engine's objects
    const Impl& implementation() const { return *impl; }

private:
    TextLayout();
    std::unique_ptr<Impl> impl;
};

// The direction of the first character that has one; `otherwise` when none has.
TextDirection naturalDirection(std::string_view text, TextDirection otherwise);

} // namespace platform
