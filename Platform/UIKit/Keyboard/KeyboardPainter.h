#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"
#include "Platform/UIKit/Keyboard/KeyboardKey.h"
#include "Platform/UIKit/Keyboard/KeyboardMetrics.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class CGContext;

struct KeyboardColors {
    CGColor background, key, functionKey, shadow, prominent, ink, prominentInk, signInk, divider, balloon, highlight;
    static const KeyboardColors& of(bool dark);
};

// Draws a keyboard's keys as pictures. Points of the keyboard.
class KeyboardPainter {
public:
    KeyboardPainter(const KeyboardMetrics& metrics, bool dark, CGFloat scale);

    // All rows as one opaque picture, and the strip above them as another, since its keys change with every selection.
    std::shared_ptr<const CGImage> rows(const KeyboardKeys& keys) const;
    std::shared_ptr<const CGImage> strip(const KeyboardKeys& keys) const;
    CGRect rowsRect() const { return { 0, metrics.strip, metrics.size.width, metrics.size.height - metrics.strip }; }
    CGRect stripRect() const { return { 0, 0, metrics.size.width, metrics.strip }; }

    // How one key looks under a finger: lies over the rows.
    struct Press {
        std::shared_ptr<const CGImage> picture;
        CGRect frame;
        std::shared_ptr<const CGPath> shadow; // of a balloon, in the frame's points; null for none
    };
    Press press(const KeyboardKey& key) const;

private:
    using Draw = std::function<void(CGContext&)>;
    std::shared_ptr<const CGImage> picture(const CGRect& frame, bool opaque, const Draw& draw) const;
    void drawKey(CGContext& context, const KeyboardKey& key, bool pressed = false) const;
    void drawFace(CGContext& context, const KeyboardKey& key, CGPoint middle, const CGColor& ink) const;
    CGFloat letterSize(const KeyboardKey& key) const;
    void drawFitting(
        CGContext& context, const std::string& text, CGFloat size, CGFloat width, CGPoint middle, const CGColor& ink) const;
    void drawText(CGContext& context, const std::string& text, CGFloat size, CGPoint middle, const CGColor& ink) const;
    Press balloon(const KeyboardKey& key) const;

    KeyboardMetrics metrics;
    const KeyboardColors& colors;
    CGFloat scale;
};

} // namespace platform
