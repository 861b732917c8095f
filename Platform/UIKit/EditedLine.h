#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/QuartzCore/CALayer.h"
#include "Platform/UIKit/TextEditor.h"

#include <memory>

namespace platform {

class NSTimer;

// What is seen of a line that is written in: its text, cut with an ellipsis at rest, and while it is edited the caret, which
// blinks. All of it lies in layers, in the coordinates of the layer that is handed in. Lengths are points. Main thread.
class EditedLine {
public:
    struct Look {
        std::shared_ptr<const CTFont> font; // never null once it is shown
        CGColor color, tint;
        NSTextAlignment alignment = NSTextAlignment::left; // left, center or right
        TextDirection direction = TextDirection::leftToRight;
        CGFloat scale = 1; // pixels a point
        bool operator==(const Look&) const = default;
    };

    explicit EditedLine(CALayer& parent);
    ~EditedLine();

    void show(const TextEditor& editor, const Look& look, const CGRect& rect, bool editing);
    CGRect caretRect() const { return caret->frame().offsetBy(window->frame().x, window->frame().y); }
    std::size_t offsetAt(CGFloat x) const; // the nearest border between characters
    void restartBlinking(); // lit for a while from now on

private:
    TextParagraph paragraph(std::string text) const;
    CGFloat widthOf(std::string text) const;
    void stopBlinking();

    std::shared_ptr<CALayer> window = make<CALayer>(); // clips the others
    std::shared_ptr<CALayer> textLayer = make<CALayer>();
    std::shared_ptr<CALayer> caret = make<CALayer>();
    std::shared_ptr<NSTimer> blinking;
    Look look;
    std::string shownText;
    CGFloat textX = 0; // where the line begins in the window
};

} // namespace platform
