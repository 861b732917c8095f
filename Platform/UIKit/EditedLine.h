#pragma once

#include "Platform/UIKit/BlinkingCaret.h"
#include "Platform/UIKit/EditedText.h"
#include "Platform/UIKit/TextEditor.h"
#include "Platform/UIKit/TextPicture.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace platform {

// How a line looks that is being written in: text, selection, the underline of a composition and a caret that blinks. What does
// not fit into its rectangle moves along under the caret; only what is seen is drawn. Layers, points in the parent's coordinates.
// Main thread.
class EditedLine {
public:
    // Points beside the rectangle that still show, for glyphs that reach over their advance.
    static constexpr CGFloat overhang = 1;

    struct Look {
        CGColor color; // of the text
        CGColor tint; // of caret and selection
        NSTextAlignment alignment = NSTextAlignment::left; // left, center or right
        CGFloat lean = 0; // points up to the overhang, by which the caret stands away from the letter behind it
    };

    explicit EditedLine(CALayer& parent);
    ~EditedLine() { window->removeFromSuperlayer(); }
    EditedLine(const EditedLine&) = delete;
    EditedLine& operator=(const EditedLine&) = delete;

    // The text as it was laid out last, moved so far that the caret is inside the rectangle.
    void show(const TextEditor& editor, const Look& look, const CGRect& rect);
    void hide(); // and begin with the text's beginning next time
    void restartBlinking() { caret.restart(); } // lit from now on for a while

    EditedText& text() { return text_; }
    CGRect caretRect() const;
    TextPosition positionAt(CGFloat x) const;

private:
    struct Tile { // a part of a stretch that is seen
        std::uint64_t stretch = 0;
        int index = 0; // from the stretch's left
        TextPicture picture;
        std::shared_ptr<CALayer> layer;
    };

    void scroll(const Look& look, TextPosition caret);
    void showTiles(const Look& look);
    void showCaret(const TextEditor& editor, const Look& look);
    void showSpans(std::vector<std::shared_ptr<CALayer>>& layers, NSRange range, CGFloat y, CGFloat height, const CGColor& color);
    CGFloat pixels(CGFloat points) const; // to the nearest whole one

    const std::shared_ptr<CALayer> window = make<CALayer>(); // clips what lies beside the rectangle
    const std::shared_ptr<CALayer> selection = make<CALayer>(); // hold what is in them, back to front
    const std::shared_ptr<CALayer> letters = make<CALayer>();
    BlinkingCaret caret;
    std::vector<std::shared_ptr<CALayer>> selected, underlines;
    std::vector<Tile> tiles;

    EditedText text_;
    CGRect rect;
    CGFloat scale = 1; // pixels a point
    CGFloat textX = 0, textY = 0; // of the text in the window
    bool isShown = false;
};

} // namespace platform
