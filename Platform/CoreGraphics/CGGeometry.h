#pragma once

#include <algorithm>
#include <cmath>

namespace platform {

// Lengths are points unless a name says pixels; y grows downwards.
using CGFloat = double;

struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(const CGSize&) const = default;
    bool isEmpty() const { return width <= 0 || height <= 0; }
};

struct CGRect {
    CGFloat x = 0;
    CGFloat y = 0;
    CGFloat width = 0;
    CGFloat height = 0;

    bool operator==(const CGRect&) const = default;
    CGPoint origin() const { return { x, y }; }
    CGSize size() const { return { width, height }; }
    CGFloat minX() const { return x; }
    CGFloat midX() const { return x + width / 2; }
    CGFloat maxX() const { return x + width; }
    CGFloat minY() const { return y; }
    CGFloat midY() const { return y + height / 2; }
    CGFloat maxY() const { return y + height; }
    CGPoint center() const { return { midX(), midY() }; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    bool contains(CGPoint p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
    bool contains(const CGRect& r) const { return r.x >= x && r.maxX() <= maxX() && r.y >= y && r.maxY() <= maxY(); }
    bool intersects(const CGRect& r) const { return x < r.maxX() && r.x < maxX() && y < r.maxY() && r.y < maxY(); }
    // The common part, empty at the origin when there is none.
    CGRect intersection(const CGRect& r) const
    {
        const CGFloat left = std::max(x, r.x), top = std::max(y, r.y);
        const CGFloat right = std::min(maxX(), r.maxX()), bottom = std::min(maxY(), r.maxY());
        return right > left && bottom > top ? CGRect { left, top, right - left, bottom - top } : CGRect {};
    }
    // The smallest rectangle around both; an empty one adds nothing.
    CGRect unionWith(const CGRect& r) const
    {
        if (isEmpty())
            return r;
        if (r.isEmpty())
            return *this;
        const CGFloat left = std::min(x, r.x), top = std::min(y, r.y);
        return { left, top, std::max(maxX(), r.maxX()) - left, std::max(maxY(), r.maxY()) - top };
    }
    // Shrunk by dx and dy on both sides; negative values grow it.
    CGRect insetBy(CGFloat dx, CGFloat dy) const { return { x + dx, y + dy, width - 2 * dx, height - 2 * dy }; }
    CGRect offsetBy(CGFloat dx, CGFloat dy) const { return { x + dx, y + dy, width, height }; }
};

// x' = a x + c y + tx, y' = b x + d y + ty.
struct CGAffineTransform {
    CGFloat a = 1;
    CGFloat b = 0;
    CGFloat c = 0;
    CGFloat d = 1;
    CGFloat tx = 0;
    CGFloat ty = 0;

    bool operator==(const CGAffineTransform&) const = default;
    static CGAffineTransform translation(CGFloat x, CGFloat y) { return { 1, 0, 0, 1, x, y }; }
    static CGAffineTransform scale(CGFloat x, CGFloat y) { return { x, 0, 0, y, 0, 0 }; }
    // Radians, clockwise on the screen.
    static CGAffineTransform rotation(CGFloat angle)
    {
        const CGFloat s = std::sin(angle), k = std::cos(angle);
        return { k, s, -s, k, 0, 0 };
    }

    bool isIdentity() const { return *this == CGAffineTransform {}; }
    bool isTranslation() const { return a == 1 && b == 0 && c == 0 && d == 1; }
    // Rectangles stay rectangles with upright sides.
    bool isUpright() const { return b == 0 && c == 0; }
    CGFloat determinant() const { return a * d - b * c; }
    CGPoint apply(CGPoint p) const { return { a * p.x + c * p.y + tx, b * p.x + d * p.y + ty }; }
    // The bounding box of the transformed rectangle.
    CGRect apply(const CGRect& r) const
    {
        const CGPoint p = apply(r.origin());
        const CGFloat ux = a * r.width, uy = b * r.width, vx = c * r.height, vy = d * r.height;
        const CGFloat left = p.x + std::min(ux, 0.0) + std::min(vx, 0.0), top = p.y + std::min(uy, 0.0) + std::min(vy, 0.0);
        return { left, top, std::abs(ux) + std::abs(vx), std::abs(uy) + std::abs(vy) };
    }
    // First this, then the other.
    CGAffineTransform then(const CGAffineTransform& o) const
    {
        return { a * o.a + b * o.c, a * o.b + b * o.d, c * o.a + d * o.c, c * o.b + d * o.d, tx * o.a + ty * o.c + o.tx,
            tx * o.b + ty * o.d + o.ty };
    }
    // The way back; identity when there is none (determinant 0).
    CGAffineTransform inverted() const
    {
        const CGFloat det = determinant();
        if (det == 0 || !std::isfinite(det))
            return {};
        return { d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det };
    }
};

// A rectangle of whole device pixels.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;
    bool isEmpty() const { return width <= 0 || height <= 0; }
    int maxX() const { return x + width; }
    int maxY() const { return y + height; }
    long area() const { return isEmpty() ? 0 : long(width) * height; }
    bool contains(const PixelRect& r) const { return r.x >= x && r.maxX() <= maxX() && r.y >= y && r.maxY() <= maxY(); }
    bool intersects(const PixelRect& r) const { return x < r.maxX() && r.x < maxX() && y < r.maxY() && r.y < maxY(); }
    PixelRect intersection(const PixelRect& r) const
    {
        const int left = std::max(x, r.x), top = std::max(y, r.y);
        const int right = std::min(maxX(), r.maxX()), bottom = std::min(maxY(), r.maxY());
        return right > left && bottom > top ? PixelRect { left, top, right - left, bottom - top } : PixelRect {};
    }
    PixelRect unionWith(const PixelRect& r) const
    {
        if (isEmpty())
            return r;
        if (r.isEmpty())
            return *this;
        const int left = std::min(x, r.x), top = std::min(y, r.y);
        return { left, top, std::max(maxX(), r.maxX()) - left, std::max(maxY(), r.maxY()) - top };
    }
    PixelRect offsetBy(int dx, int dy) const { return { x + dx, y + dy, width, height }; }
    // The whole pixels that a rectangle in pixel units touches; a hair (1/64 pixel) over an edge does not count.
    static PixelRect around(const CGRect& r)
    {
        if (r.isEmpty())
            return {};
        constexpr double hair = 1.0 / 64;
        const auto bounded = [](double v) { return std::clamp(v, -1e8, 1e8); };
        const int left = int(std::floor(bounded(r.x) + hair)), top = int(std::floor(bounded(r.y) + hair));
        const int right = int(std::ceil(bounded(r.maxX()) - hair)), bottom = int(std::ceil(bounded(r.maxY()) - hair));
        return { left, top, std::max(right - left, 0), std::max(bottom - top, 0) };
    }
};

} // namespace platform
