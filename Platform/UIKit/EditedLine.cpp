#include "Platform/UIKit/EditedLine.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr CGFloat tileWidth = 256; // points; a change draws the tiles of its stretch that are seen
constexpr double selectionAlpha = 0.3;

CGColor withAlpha(CGColor color, double share)
{
    color.alpha *= share;
    return color;
}

} // namespace

EditedLine::EditedLine(CALayer& parent)
{
    window->setMasksToBounds(true);
    window->setHidden(true);
    window->addSublayer(selection);
    window->addSublayer(letters);
    window->addSublayer(caret.layer());
    parent.addSublayer(window);
}

void EditedLine::show(const TextEditor& editor, const Look& look, const CGRect& newRect)
{
    rect = newRect;
    scale = text_.scale();
    // Scripts that are taller than the font are not cut: only the sides are.
    window->setFrame(rect.insetBy(-overhang, -text_.height()));
    window->setHidden(rect.isEmpty());
    textY = pixels((window->bounds().height - text_.height()) / 2);
    scroll(look, editor.caret());
    showTiles(look);
    showSpans(selected, editor.selection(), textY, text_.height(), withAlpha(look.tint, selectionAlpha));
    const CGFloat thickness = std::max(std::round(scale), 1.0) / scale;
    showSpans(underlines, editor.markedRange().value_or(NSRange {}), textY + pixels(text_.baseline()) + thickness, thickness,
        look.color);
    showCaret(editor, look);
    isShown = true;
}

void EditedLine::hide()
{
    isShown = false;
    window->setHidden(true);
    caret.stop();
}

CGRect EditedLine::caretRect() const { return caret.layer()->frame().offsetBy(window->frame().x, window->frame().y); }

TextPosition EditedLine::positionAt(CGFloat x) const { return text_.positionAt(x - window->frame().x - textX); }

// The line has room for the caret behind its last character, whichever side that is.
void EditedLine::scroll(const Look& look, TextPosition position)
{
    const bool rightToLeft = text_.isRightToLeft();
    const CGFloat before = rightToLeft ? BlinkingCaret::width : 0; // on the text's left
    const CGFloat free = rect.width - text_.width() - BlinkingCaret::width;
    CGFloat lineX = 0; // of text and caret in the rectangle
    if (free >= 0) {
        lineX = look.alignment == NSTextAlignment::left ? 0 : look.alignment == NSTextAlignment::right ? free : free / 2;
    } else {
        lineX = isShown ? textX - overhang - before : rightToLeft ? free : 0;
        const CGFloat caretX = text_.x(position);
        lineX = std::clamp(lineX, free, 0.0);
        lineX = std::clamp(lineX, -caretX, rect.width - BlinkingCaret::width - caretX);
    }
    textX = pixels(lineX + before + overhang);
}

void EditedLine::showTiles(const Look& look)
{
    const CGFloat from = -textX, to = window->bounds().width - textX;
    std::vector<Tile> seen;
    for (const EditedText::Stretch* stretch : text_.stretches(from - overhang, to + overhang)) {
        const CGFloat left = std::max(from - stretch->x, 0.0), right = std::min(to - stretch->x, stretch->width);
        for (int index = int(left / tileWidth); index == 0 || index * tileWidth < right; ++index) {
            const auto known
                = std::ranges::find_if(tiles, [&](const Tile& t) { return t.stretch == stretch->number && t.index == index; });
            if (known != tiles.end()) {
                seen.push_back(*known);
                tiles.erase(known);
            } else {
                seen.push_back({ stretch->number, index,
                    textPicturePart(stretch->layout, stretch->paragraph, scale, index * tileWidth, (index + 1) * tileWidth),
                    nullptr });
            }
            const CGFloat x = pixels(stretch->x);
            if (!seen.back().layer) { // one that another tile does not need any more
                const auto spare = std::ranges::find_if(tiles, [](const Tile& t) { return bool(t.layer); });
                seen.back().layer = spare == tiles.end() ? make<CALayer>() : std::exchange(spare->layer, nullptr);
                letters->addSublayer(seen.back().layer);
            }
            seen.back().layer->setFrame(seen.back().picture.rect.offsetBy(x, 0));
            seen.back().layer->setContents(seen.back().picture.image);
            seen.back().layer->setContentsTint(stretch->plain ? std::optional(look.color) : std::nullopt);
        }
    }
    for (const Tile& unused : tiles)
        if (unused.layer)
            unused.layer->removeFromSuperlayer();
    tiles = std::move(seen);
    letters->setFrame({ textX, textY, 0, 0 });
}

void EditedLine::showCaret(const TextEditor& editor, const Look& look)
{
    const CGFloat before = text_.isRightToLeft() ? BlinkingCaret::width - look.lean : look.lean;
    caret.layer()->setBackgroundColor(look.tint);
    caret.layer()->setFrame({ textX + pixels(text_.x(editor.caret()) - before), textY, BlinkingCaret::width, text_.height() });
    if (editor.selection().length > 0)
        caret.stop();
    else if (!caret.isBlinking())
        caret.restart();
}

void EditedLine::showSpans(
    std::vector<std::shared_ptr<CALayer>>& layers, NSRange range, CGFloat y, CGFloat height, const CGColor& color)
{
    const auto spans
        = range.length > 0 ? text_.spans(range, -textX, window->bounds().width - textX) : std::vector<EditedText::Span> {};
    while (layers.size() > spans.size()) {
        layers.back()->removeFromSuperlayer();
        layers.pop_back();
    }
    while (layers.size() < spans.size()) {
        layers.push_back(make<CALayer>());
        selection->addSublayer(layers.back());
    }
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const CGFloat left = pixels(textX + spans[i].x), right = pixels(textX + spans[i].x + spans[i].width);
        layers[i]->setFrame({ left, y, right - left, height });
        layers[i]->setBackgroundColor(color);
    }
}

CGFloat EditedLine::pixels(CGFloat points) const { return std::round(points * scale) / scale; }

} // namespace platform
