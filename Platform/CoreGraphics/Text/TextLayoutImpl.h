#pragma once

#include "Platform/CoreGraphics/Text/ShapedText.h"

namespace platform {

// What drawing needs to know of a layout.
struct TextLayout::Impl {
    struct Style {
        CGColor color;
        std::string link;
        bool underline;
    };

    std::vector<Style> styles; // of the paragraph's runs
    std::optional<TextShadow> shadow;
    std::vector<Line> lines;
    std::vector<std::vector<GlyphRun>> runs; // of each line, left to right
    std::vector<Character> characters; // of an edited line, left to right
    std::optional<double> clipWidth; // points: what lies beyond is not drawn
    double lineHeight = 0; // points, without the spacing
    CGSize size;
    bool truncated = false;
};

} // namespace platform
