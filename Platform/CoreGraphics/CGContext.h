#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/CGPath.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

class TextLayout;

enum class CGLineCap : unsigned char { butt, round, square };
enum class CGLineJoin : unsigned char { miter, round, bevel };

// Draws into a bitmap. Coordinates are points; the transform given at the start maps them to the bitmap's pixels.
class CGContext {
public:
    CGContext(Bitmap& target, const CGAffineTransform& toPixels);
    ~CGContext();
    CGContext(const CGContext&) = delete;
    CGContext& operator=(const CGContext&) = delete;

    void save();
    void restore();
    void concat(const CGAffineTransform& transform);
    CGAffineTransform transform() const; // points to pixels, at present
    void clip(const CGRect& rect);
    void clip(const CGPath& path);

    void setAlpha(double alpha); // multiplies everything drawn afterwards
    void clear(const CGRect& rect);
    void fill(const CGRect& rect, const CGColor& color);
    void fill(const CGPath& path, const CGColor& color, bool evenOdd = false);
    void stroke(const CGPath& path, const CGColor& color, CGFloat width, CGLineCap cap = CGLineCap::butt,
        CGLineJoin join = CGLineJoin::miter, const std::vector<CGFloat>& dashes = {}, CGFloat dashPhase = 0);
    // Scales the picture to the rectangle; with a tint its alpha is filled with that colour instead.
    void drawImage(const CGImage& image, const CGRect& rect, const std::optional<CGColor>& tint = {});
    void fillLinearGradient(const CGRect& rect, const std::vector<CGColor>& colors, const std::vector<CGFloat>& locations,
        CGPoint start, CGPoint end);
    void drawText(const TextLayout& text, CGPoint origin);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

} // namespace platform
