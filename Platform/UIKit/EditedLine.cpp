#include "Platform/UIKit/EditedLine.h"

#include "Platform/Foundation/NSTimer.h"
#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/TextPicture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {
constexpr CGFloat unlimited = std::numeric_limits<CGFloat>::infinity();
constexpr CGFloat caretWidth = 2; // points
constexpr double blinkHalf = 0.5; // seconds that the caret is lit, and dark
}

EditedLine::EditedLine(CALayer& parent)
{
    window->setMasksToBounds(true);
    window->addSublayer(textLayer);
    window->addSublayer(caret);
    caret->setHidden(true);
    parent.insertSublayer(window, 0);
}

EditedLine::~EditedLine()
{
    stopBlinking();
    window->removeFromSuperlayer();
}

void EditedLine::show(const TextEditor& editor, const Look& newLook, const CGRect& rect, bool editing)
{
    look = newLook;
    window->setFrame(rect);
    shownText = editor.text();
    TextParagraph text = paragraph(shownText);
    const auto layout = TextLayout::make(text, editing ? unlimited : rect.width + 0.01, look.scale);
    const CGFloat width = widthOf(shownText);
    const CGFloat free = std::max(rect.width - width - (editing ? caretWidth : 0), 0.0);
    textX = look.alignment == NSTextAlignment::left ? 0 : look.alignment == NSTextAlignment::right ? free : free / 2;
    const CGFloat caretX = widthOf(shownText.substr(0, editor.caret()));
    if (editing && width + caretWidth > rect.width)
        textX = std::min(textX, rect.width - caretWidth - caretX);
    const CGFloat y = std::round((rect.height - layout->size().height) / 2 * look.scale) / look.scale;
    textX = std::round(textX * look.scale) / look.scale;
    const TextPicture picture = textPicture(layout, text, look.scale);
    textLayer->setFrame(picture.rect.offsetBy(textX, y));
    textLayer->setContents(shownText.empty() ? nullptr : picture.image);
    textLayer->setContentsTint(isPlainlyColored(shownText) ? std::optional(look.color) : std::nullopt);
    caret->setBackgroundColor(look.tint);
    caret->setFrame({ textX + std::round(caretX * look.scale) / look.scale, y, caretWidth, layout->size().height });
    if (!editing)
        stopBlinking();
    else if (!blinking)
        restartBlinking();
}

std::size_t EditedLine::offsetAt(CGFloat x) const
{
    const CGFloat wanted = x - window->frame().x - textX;
    std::size_t best = 0;
    CGFloat nearest = std::abs(wanted);
    for (std::size_t offset = 0; offset < shownText.size();) {
        offset = nextCharacterBoundary(shownText, offset);
        const CGFloat distance = std::abs(widthOf(shownText.substr(0, offset)) - wanted);
        if (distance < nearest) {
            nearest = distance;
            best = offset;
        }
    }
    return best;
}

void EditedLine::restartBlinking()
{
    stopBlinking();
    caret->setHidden(false);
    blinking = NSTimer::scheduledTimer(blinkHalf, Repeats::yes, [layer = std::weak_ptr(caret)](NSTimer&) {
        if (const auto lit = layer.lock())
            lit->setHidden(!lit->isHidden());
    });
}

TextParagraph EditedLine::paragraph(std::string text) const
{
    TextParagraph result;
    result.color = isPlainlyColored(text) ? CGColor { 0, 0, 0, 1 } : look.color;
    result.runs.push_back({ std::move(text), nullptr, std::nullopt, {}, false });
    result.font = look.font;
    result.direction = look.direction;
    return result;
}

CGFloat EditedLine::widthOf(std::string text) const
{
    return text.empty() ? 0 : linesRect(*TextLayout::make(paragraph(std::move(text)), unlimited, look.scale), look.scale).width;
}

void EditedLine::stopBlinking()
{
    if (blinking)
        blinking->invalidate();
    blinking = nullptr;
    caret->setHidden(true);
}

} // namespace platform
