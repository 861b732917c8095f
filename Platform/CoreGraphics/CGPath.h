#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <memory>
#include <vector>

namespace platform {

// A shape of lines and cubic curves, in points. Built once, then shared as `std::shared_ptr<const CGPath>`.
class CGPath {
public:
    enum class Verb : unsigned char { move, line, curve, close };
    struct Element {
        Verb verb;
        CGPoint points[3]; // move and line use the last one; a curve two controls and its end

        bool operator==(const Element&) const = default;
    };

    void moveTo(CGPoint p);
    void lineTo(CGPoint p);
    void quadTo(CGPoint control, CGPoint end);
    void curveTo(CGPoint control1, CGPoint control2, CGPoint end);
    void close();
    void addRect(const CGRect& rect);
    void addEllipse(const CGRect& box);
    // Corners are quarter circles; the radius is cut to half of the shorter side.
    void addRoundedRect(const CGRect& rect, CGFloat radius);
    // Angles in radians, 0 to the right, growing clockwise on the screen when clockwise is true.
    void addArc(CGPoint center, CGFloat radius, CGFloat startAngle, CGFloat endAngle, bool clockwise);
    void addPath(const CGPath& other, const CGAffineTransform& transform = {});

    static std::shared_ptr<const CGPath> rect(const CGRect& rect);
    static std::shared_ptr<const CGPath> roundedRect(const CGRect& rect, CGFloat radius);

    const std::vector<Element>& elements() const { return elements_; }
    bool isEmpty() const { return elements_.empty(); }
    CGRect boundingBox() const; // of all points, controls included; empty for an empty path
    bool contains(CGPoint p) const; // non-zero winding
    CGFloat length() const; // points, curves flattened
    // The piece between two fractions of the whole length (0 to 1), as stroke start and end cut it.
    CGPath trimmed(CGFloat from, CGFloat to) const;
    // The point at a fraction (0 to 1) of the length, as a keyframe animation's paced path needs it.
    CGPoint pointAt(CGFloat fraction) const;
    bool operator==(const CGPath&) const = default;

private:
    void addCorners(const CGRect& rect, CGFloat radiusX, CGFloat radiusY); // elliptical quarters joined by lines
    CGPoint currentPoint() const; // where the next element begins

    std::vector<Element> elements_;
};

} // namespace platform
