#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace platform {

// One glyph, placed from its line's left end and baseline. Points, y downwards.
struct PlacedGlyph {
    std::uint32_t id;
    float x;
    float y;
};

// Glyphs of one font, style and direction, left to right.
struct GlyphRun {
    std::size_t start = 0, end = 0; // code points that it stands for
    std::shared_ptr<const CTFont::Face> face;
    double size = 0; // points
    std::size_t style = 0; // which of the paragraph's runs it came from
    unsigned char level = 0; // of the bidirectional algorithm; odd runs right to left
    double x = 0; // points, from the layout's left
    double width = 0;
    std::vector<PlacedGlyph> glyphs;
};

// A text without line breaks, shaped as a whole: what its parts measure, where it may be broken, and its glyphs.
class ShapedText {
public:
    struct Stretch {
        std::size_t end; // code points from the text's start
        std::shared_ptr<const CTFont> font;
        std::size_t style;
    };

    // The stretches cover the text in order. The direction holds when the text has no strong character, or in any case.
    ShapedText(std::u32string text, std::vector<Stretch> stretches, TextDirection direction, bool holdsDirection = false);
    ~ShapedText();

    std::size_t length() const { return text.size(); } // code points; so are all offsets below
    bool isRightToLeft() const { return baseLevel % 2; }
    double width(std::size_t from, std::size_t to) const { return ends[to] - ends[from]; } // points
    // False where a character is drawn by the glyph of the one before it.
    bool hasGlyph(std::size_t from, std::size_t to) const;
    bool isSpace(std::size_t at) const { return breaks[at].space; }
    bool isCharacterStart(std::size_t at) const { return breaks[at].character; } // the end counts as one
    bool mayBreakBefore(std::size_t at) const { return breaks[at].line; }
    // After a stroke, as in an address of the web: where a line ends only when there is no better place.
    bool isReluctantBreak(std::size_t at) const { return breaks[at].line && at > 0 && text[at - 1] == U'/'; }
    const Stretch& stretchAt(std::size_t at) const;

    // Appends the glyphs of a part, in logical order. `spaceExtra`: points more for each space.
    void appendRuns(std::vector<GlyphRun>& runs, std::size_t from, std::size_t to, double spaceExtra = 0) const;

private:
    struct Break {
        bool character, line, space;
    };
    struct ShapedGlyph {
        std::uint32_t id;
        std::uint32_t cluster; // the first code point it stands for
        float advance, dx, dy; // points
        bool joined; // its shape depends on what stands before it: a cut there needs shaping anew
    };
    struct Item {
        std::size_t start, end;
        unsigned char level;
        std::uint32_t script;
        std::shared_ptr<const CTFont::Face> face;
        std::size_t stretch;
        std::vector<ShapedGlyph> glyphs;
    };

    void findBreaks();
    std::vector<unsigned char> bidiLevels(TextDirection direction, bool holdsDirection);
    std::vector<std::uint32_t> scripts() const;
    void makeItems(const std::vector<unsigned char>& levels);
    std::vector<ShapedGlyph> shape(const Item& item, std::size_t from, std::size_t to) const;
    std::span<const ShapedGlyph> glyphsOf(const Item& item, std::size_t from, std::size_t to) const;
    bool isCleanCut(const Item& item, std::size_t at) const;

    std::u32string text;
    std::vector<Stretch> stretches;
    unsigned char baseLevel = 0;
    std::vector<Break> breaks; // one more than the text
    std::vector<Item> items;
    std::vector<double> ends; // points of all text up to an offset, in logical order
};

} // namespace platform
