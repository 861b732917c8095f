#include "Platform/UIKit/Keyboard/KeyboardIcons.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/UIKit/Keyboard/KeyboardKey.h"

#include <initializer_list>

namespace platform {

namespace {

// Signs are drawn in a square of 24 units with lines of this width.
constexpr CGFloat unitSquare = 24;
constexpr CGFloat lineWidth = 1.8;

CGPath lines(std::initializer_list<CGPoint> points, bool closed = false)
{
    CGPath path;
    bool first = true;
    for (const CGPoint point : points) {
        if (first)
            path.moveTo(point);
        else
            path.lineTo(point);
        first = false;
    }
    if (closed)
        path.close();
    return path;
}

CGPath line(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2) { return lines({ { x1, y1 }, { x2, y2 } }); }

CGPath roundedRect(const CGRect& rect, CGFloat radius)
{
    CGPath path;
    path.addRoundedRect(rect, radius);
    return path;
}

CGPath ellipse(const CGRect& box)
{
    CGPath path;
    path.addEllipse(box);
    return path;
}

class Sign {
public:
    Sign(CGContext& context, const CGColor& color)
        : context(context)
        , color(color)
    {
    }

    void drawShift(bool on, bool locked)
    {
        const auto arrow
            = lines({ { 12, 3 }, { 21, 12 }, { 16.2, 12 }, { 16.2, 19 }, { 7.8, 19 }, { 7.8, 12 }, { 3, 12 } }, true);
        if (on)
            context.fill(arrow, color);
        stroke(arrow);
        if (locked)
            stroke(line(7.8, 22.4, 16.2, 22.4));
    }

    void drawErase()
    {
        stroke(lines({ { 21.5, 5 }, { 9, 5 }, { 2.5, 12 }, { 9, 19 }, { 21.5, 19 } }, true));
        stroke(line(12, 9.2, 17.6, 14.8));
        stroke(line(17.6, 9.2, 12, 14.8));
    }

    void drawGlobe()
    {
        stroke(ellipse({ 2, 2, 20, 20 }));
        stroke(ellipse({ 7.8, 2, 8.4, 20 }));
        stroke(line(2, 12, 22, 12));
        CGPath parallels;
        parallels.moveTo({ 3.6, 7.2 });
        parallels.quadTo({ 12, 9.6 }, { 20.4, 7.2 });
        parallels.moveTo({ 3.6, 16.8 });
        parallels.quadTo({ 12, 14.4 }, { 20.4, 16.8 });
        stroke(parallels);
    }

    void drawKeyboard(const CGRect& body)
    {
        stroke(roundedRect(body, 2.2));
        const CGFloat step = body.width / 5;
        for (int row = 0; row < 2; ++row)
            for (int column = 1; column < 5; ++column)
                context.fill(
                    ellipse({ body.x + column * step - 0.9, body.y + body.height * (0.27 + 0.25 * row) - 0.9, 1.8, 1.8 }), color);
        stroke(line(body.midX() - step, body.maxY() - body.height * 0.22, body.midX() + step, body.maxY() - body.height * 0.22));
    }

    void drawHide()
    {
        drawKeyboard({ 1.5, 2, 21, 14 });
        stroke(lines({ { 8.5, 19 }, { 12, 22.2 }, { 15.5, 19 } }));
    }

    // The screen with the keyboard in the place that it would go to.
    void drawDock(bool toEdge)
    {
        stroke(roundedRect({ 2, 3, 20, 18 }, 2.4));
        context.fill(roundedRect(toEdge ? CGRect { 4.6, 14.4, 14.8, 4 } : CGRect { 10.6, 10, 8.4, 6.6 }, 1.2), color);
    }

    void drawGrip() { context.fill(roundedRect({ -8, 10.5, 40, 3.6 }, 1.8), color); }

    void draw(UIEditAction action)
    {
        switch (action) {
        case UIEditAction::cut:
            stroke(ellipse({ 3, 3, 6, 6 }));
            stroke(ellipse({ 3, 15, 6, 6 }));
            stroke(line(8.2, 8.2, 20, 20));
            stroke(line(20, 4, 8.2, 15.8));
            return;
        case UIEditAction::copy:
            stroke(roundedRect({ 8.5, 8.5, 12.5, 12.5 }, 2.2));
            stroke(lines({ { 5.5, 15.5 }, { 3, 15.5 }, { 3, 3 }, { 15.5, 3 }, { 15.5, 5.5 } }));
            return;
        case UIEditAction::paste:
            stroke(lines({ { 8, 4 }, { 4.5, 4 }, { 4.5, 21.5 }, { 19.5, 21.5 }, { 19.5, 4 }, { 16, 4 } }));
            stroke(roundedRect({ 8, 2, 8, 4 }, 1.2));
            stroke(line(12, 10, 12, 17));
            stroke(lines({ { 8.8, 14 }, { 12, 17.2 }, { 15.2, 14 } }));
            return;
        case UIEditAction::selectAll:
            context.stroke(
                roundedRect({ 3, 3, 18, 18 }, 2.4), color, lineWidth, CGLineCap::butt, CGLineJoin::round, { 3.2, 2.4 });
            stroke(line(7.5, 9.5, 16.5, 9.5));
            stroke(line(7.5, 14.5, 13.5, 14.5));
            return;
        case UIEditAction::undo: // by hardware keyboards only
        case UIEditAction::redo:
            return;
        }
    }

private:
    void stroke(const CGPath& path) { context.stroke(path, color, lineWidth, CGLineCap::round, CGLineJoin::round); }

    CGContext& context;
    const CGColor& color;
};

} // namespace

void drawKeyboardIcon(CGContext& context, const KeyboardKey& key, CGPoint middle, CGFloat side, const CGColor& color)
{
    const CGFloat scale = side / unitSquare;
    context.save();
    context.concat({ scale, 0, 0, scale, middle.x - side / 2, middle.y - side / 2 });
    Sign sign(context, color);
    switch (key.role) {
    case KeyboardRole::shift:
        sign.drawShift(key.selected, key.locked);
        break;
    case KeyboardRole::erase:
        sign.drawErase();
        break;
    case KeyboardRole::globe:
        sign.drawGlobe();
        break;
    case KeyboardRole::hide:
        sign.drawHide();
        break;
    case KeyboardRole::dock:
        sign.drawDock(key.text == "dock keyboard");
        break;
    case KeyboardRole::grip:
        sign.drawGrip();
        break;
    case KeyboardRole::edit:
        sign.draw(key.action);
        break;
    case KeyboardRole::character:
    case KeyboardRole::emoji:
    case KeyboardRole::space:
    case KeyboardRole::enter:
    case KeyboardRole::page:
        break;
    }
    context.restore();
}

} // namespace platform
