#include "Platform/UIKit/Keyboard/KeyboardPainter.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/Keyboard/KeyboardIcons.h"
#include "Platform/UIKit/UIFont.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr CGFloat capRadius = 5; // points
constexpr CGFloat capShadow = 1; // below a cap
constexpr CGFloat baselineBelowMiddle = 0.285; // of the font's size: small letters and capitals both look centred
constexpr CGFloat signSide = 24; // points
constexpr CGFloat editSignSide = 20;
constexpr CGFloat emojiSize = 24;
constexpr CGFloat disabledStrength = 0.3;
constexpr CGFloat textMargin = 2; // between a text and its cap's edge, at least
constexpr CGFloat arabicLetter = 0.85; // of the Latin letter's size: eleven keys share a row

constexpr CGFloat balloonSide = 12; // that a balloon's head is wider than its key on each side
constexpr CGFloat balloonRadius = 10;
constexpr CGFloat balloonLetter = 1.5; // of the key's letter
constexpr CGFloat balloonLift = 8; // between head and key, where its sides slope
constexpr CGFloat balloonMargin = 2; // between a head and the keyboard's edges: what lies beyond is the application's
constexpr CGFloat balloonFill = 0.95; // of the height that a head and the slope below it have, for a letter's font

constexpr CGColor grey(int white, double alpha = 1) { return { white / 255.0, white / 255.0, white / 255.0, alpha }; }
constexpr CGColor rgb(unsigned hex) { return { (hex >> 16) / 255.0, (hex >> 8 & 255) / 255.0, (hex & 255) / 255.0, 1 }; }

constexpr KeyboardColors lightColors { .background = rgb(0xd1d4da),
    .key = rgb(0xffffff),
    .functionKey = rgb(0xabb0ba),
    .shadow = rgb(0x898a8d),
    .prominent = rgb(0x007aff),
    .ink = rgb(0x000000),
    .prominentInk = rgb(0xffffff),
    .signInk = rgb(0x50555c),
    .divider = rgb(0xb0b3ba),
    .balloon = rgb(0xffffff),
    .highlight = grey(0, 0.1) };
constexpr KeyboardColors darkColors { .background = rgb(0x1f1f21),
    .key = rgb(0x5a5a5e),
    .functionKey = rgb(0x3a3a3e),
    .shadow = rgb(0x0c0c0d),
    .prominent = rgb(0x0a84ff),
    .ink = rgb(0xffffff),
    .prominentInk = rgb(0xffffff),
    .signInk = rgb(0xd0d2d6),
    .divider = rgb(0x46464a),
    .balloon = rgb(0x6c6c70),
    .highlight = grey(255, 0.16) };

std::shared_ptr<const TextLayout> lineOf(const std::string& text, CGFloat size, const CGColor& ink, CGFloat scale)
{
    TextParagraph paragraph;
    paragraph.runs.emplace_back().text = text;
    paragraph.font = UIFont::systemFont(size).ctFont();
    paragraph.color = ink;
    return TextLayout::make(paragraph, std::numeric_limits<CGFloat>::infinity(), scale);
}

bool isArabic(const std::string& text)
{
    const auto first = codePointAt(text, 0).value;
    return first >= 0x600 && first <= 0x6FF;
}

// A vowel sign sits on a bearer that is no letter.
std::string shownCharacter(const KeyboardKey& key)
{
    const auto first = codePointAt(key.text, 0).value;
    return first >= 0x64B && first <= 0x652 ? "\u0640" + key.text : key.text;
}

// The outline of a pressed key that has grown upwards into a head.
CGPath balloonPath(const CGRect& head, const CGRect& cap)
{
    // From a side of the head to the key's in a slope that is upright at both ends.
    const CGFloat slope = std::min(cap.height * 0.5, 22.0), bend = slope * 0.55;
    const CGFloat shoulder = head.maxY(), hip = shoulder + slope, foot = cap.maxY();
    CGPath path;
    path.moveTo({ head.x + balloonRadius, head.y });
    path.lineTo({ head.maxX() - balloonRadius, head.y });
    path.quadTo({ head.maxX(), head.y }, { head.maxX(), head.y + balloonRadius });
    path.lineTo({ head.maxX(), shoulder });
    path.curveTo({ head.maxX(), shoulder + bend }, { cap.maxX(), hip - bend }, { cap.maxX(), hip });
    path.lineTo({ cap.maxX(), foot - capRadius });
    path.quadTo({ cap.maxX(), foot }, { cap.maxX() - capRadius, foot });
    path.lineTo({ cap.x + capRadius, foot });
    path.quadTo({ cap.x, foot }, { cap.x, foot - capRadius });
    path.lineTo({ cap.x, hip });
    path.curveTo({ cap.x, hip - bend }, { head.x, shoulder + bend }, { head.x, shoulder });
    path.lineTo({ head.x, head.y + balloonRadius });
    path.quadTo({ head.x, head.y }, { head.x + balloonRadius, head.y });
    path.close();
    return path;
}

} // namespace

const KeyboardColors& KeyboardColors::of(bool dark) { return dark ? darkColors : lightColors; }

KeyboardPainter::KeyboardPainter(const KeyboardMetrics& chosen, bool dark, CGFloat pixelsAPoint)
    : metrics(chosen)
    , colors(KeyboardColors::of(dark))
    , scale(pixelsAPoint)
{
}

std::shared_ptr<const CGImage> KeyboardPainter::rows(const KeyboardKeys& keys) const
{
    return picture(rowsRect(), true, [&](CGContext& context) {
        for (const auto& key : keys)
            if (key.cap.y >= metrics.strip)
                drawKey(context, key);
    });
}

std::shared_ptr<const CGImage> KeyboardPainter::strip(const KeyboardKeys& keys) const
{
    return picture(stripRect(), true, [&](CGContext& context) {
        CGRect edits;
        for (const auto& key : keys) {
            if (key.cap.y >= metrics.strip)
                continue;
            drawKey(context, key);
            if (key.role == KeyboardRole::edit)
                edits = edits.unionWith(key.cap);
        }
        const bool mirrored = edits.midX() > metrics.size.width / 2;
        const CGFloat x = std::round((mirrored ? edits.x - 5 : edits.maxX() + 4) * scale) / scale;
        context.fill(CGRect { x, metrics.strip * 0.22, 1, metrics.strip * 0.56 }, colors.divider);
    });
}

KeyboardPainter::Press KeyboardPainter::press(const KeyboardKey& key) const
{
    if (key.role == KeyboardRole::character && metrics.form != KeyboardForm::tablet)
        return balloon(key);
    if (key.bare) {
        const CGFloat height = std::min(key.cap.height, metrics.strip) - 8;
        const CGRect frame = key.cap.insetBy(2, (key.cap.height - height) / 2);
        return { picture(
                     frame, false, [&](CGContext& context) { context.fill(*CGPath::roundedRect(frame, 8), colors.highlight); }),
            frame, nullptr };
    }
    const CGRect frame { key.cap.x, key.cap.y, key.cap.width, key.cap.height };
    return { picture(frame, false, [&](CGContext& context) { drawKey(context, key, true); }), frame, nullptr };
}

std::shared_ptr<const CGImage> KeyboardPainter::picture(const CGRect& frame, bool opaque, const Draw& draw) const
{
    const int width = int(std::lround(frame.width * scale)), height = int(std::lround(frame.height * scale));
    const auto bitmap = Bitmap::make(width, height, opaque ? PixelFormat::xrgb : PixelFormat::argb, !opaque);
    if (!bitmap)
        return nullptr;
    CGContext context(*bitmap, CGAffineTransform::translation(-frame.x, -frame.y).then(CGAffineTransform::scale(scale, scale)));
    if (opaque)
        context.fill(frame.insetBy(-1, -1), colors.background);
    draw(context);
    return CGImage::fromBitmap(bitmap);
}

void KeyboardPainter::drawKey(CGContext& context, const KeyboardKey& key, bool pressed) const
{
    const bool light = key.typesText() || (key.role == KeyboardRole::shift && key.selected);
    CGColor ink = key.bare ? colors.signInk : colors.ink;
    if (!key.enabled)
        ink.alpha = disabledStrength;
    if (!key.bare) {
        CGColor cap = light != pressed ? colors.key : colors.functionKey;
        if (key.prominent && !pressed) {
            cap = colors.prominent;
            ink = colors.prominentInk;
        }
        if (!pressed) // which its shadow, in the picture below, shows through
            context.fill(*CGPath::roundedRect(key.cap.offsetBy(0, capShadow), capRadius), colors.shadow);
        context.fill(*CGPath::roundedRect(key.cap, capRadius), cap);
    }
    drawFace(context, key, key.cap.center(), ink);
}

void KeyboardPainter::drawFace(CGContext& context, const KeyboardKey& key, CGPoint middle, const CGColor& ink) const
{
    switch (key.role) {
    case KeyboardRole::character:
        return drawFitting(context, shownCharacter(key), letterSize(key), key.cap.width, middle, ink);
    case KeyboardRole::emoji:
        return drawText(context, key.text, std::min(emojiSize, metrics.strip * 0.58), middle, ink);
    case KeyboardRole::space:
    case KeyboardRole::enter:
    case KeyboardRole::page:
        return drawFitting(context, key.text, metrics.wordSize, key.cap.width, middle, ink);
    case KeyboardRole::edit:
        return drawKeyboardIcon(context, key, middle, editSignSide, ink);
    case KeyboardRole::shift:
    case KeyboardRole::erase:
        return drawKeyboardIcon(context, key, middle, metrics.wordSize + 6, ink);
    case KeyboardRole::globe:
    case KeyboardRole::hide:
    case KeyboardRole::dock:
    case KeyboardRole::grip:
        return drawKeyboardIcon(context, key, middle, key.bare ? signSide : metrics.wordSize + 6, ink);
    }
}

CGFloat KeyboardPainter::letterSize(const KeyboardKey& key) const
{
    return metrics.letterSize * (isArabic(key.text) ? arabicLetter : 1);
}

void KeyboardPainter::drawFitting(
    CGContext& context, const std::string& text, CGFloat size, CGFloat width, CGPoint middle, const CGColor& ink) const
{
    const CGFloat needed = lineOf(text, size, ink, scale)->size().width + 2 * textMargin;
    drawText(context, text, size * std::min(1.0, width / needed), middle, ink);
}

void KeyboardPainter::drawText(
    CGContext& context, const std::string& text, CGFloat size, CGPoint middle, const CGColor& ink) const
{
    const auto layout = lineOf(text, size, ink, scale);
    const CGFloat baseline = std::round((middle.y + size * baselineBelowMiddle) * scale) / scale;
    context.drawText(*layout, { middle.x - layout->size().width / 2, baseline - layout->firstBaseline() });
}

KeyboardPainter::Press KeyboardPainter::balloon(const KeyboardKey& key) const
{
    const CGRect& cap = key.cap;
    const CGFloat width = cap.width + 2 * balloonSide, end = metrics.size.width - balloonMargin;
    const CGFloat x = std::max(std::min(cap.midX() - width / 2, end - width), balloonMargin);
    const CGFloat shoulder = cap.y - balloonLift, headTop = std::max(shoulder - cap.height, balloonMargin);
    const CGRect head { std::min(x, cap.x), headTop, width, shoulder - headTop };
    const CGRect around = head.unionWith(cap);
    const CGFloat left = std::floor(around.x), top = std::floor(around.y);
    const CGRect frame { left, top, std::ceil(around.maxX()) - left, std::ceil(around.maxY()) - top };
    const auto outline = balloonPath(head, cap);
    auto shadow = std::make_shared<CGPath>();
    shadow->addPath(outline, CGAffineTransform::translation(-frame.x, -frame.y));
    const CGFloat letter = std::min(letterSize(key) * balloonLetter, (head.height + balloonLift) * balloonFill);
    const auto draw = [&](CGContext& context) {
        context.fill(outline, colors.balloon);
        drawText(context, shownCharacter(key), letter, { head.midX(), head.midY() + balloonLift / 2 }, colors.ink);
    };
    return { picture(frame, false, draw), frame, shadow };
}

} // namespace platform
