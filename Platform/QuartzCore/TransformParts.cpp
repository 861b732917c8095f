#include "Platform/QuartzCore/TransformParts.h"

namespace platform {

// The way of CSS Transforms Level 1, "Decomposing a 2D matrix": a mirroring becomes a negative scale of the axis that points
// backwards, so that it does not turn into half a rotation.
TransformParts TransformParts::of(const CGAffineTransform& t)
{
    TransformParts parts;
    parts.translationX = t.tx;
    parts.translationY = t.ty;
    if (t.b == 0 && t.c == 0 && (t.a >= 0 || t.d >= 0)) { // by far the most frequent, and exact
        parts.scaleX = t.a;
        parts.scaleY = t.d;
        return parts;
    }
    const double determinant = t.determinant();
    double scaleX = std::hypot(t.a, t.b);
    if (scaleX == 0) { // the x axis vanishes: the y axis alone says how it is turned
        parts.scaleX = 0;
        parts.scaleY = std::hypot(t.c, t.d);
        parts.rotation = std::atan2(-t.c, t.d);
        return parts;
    }
    if (determinant < 0 && t.a < t.d)
        scaleX = -scaleX;
    const double k = t.a / scaleX, s = t.b / scaleX;
    parts.rotation = std::atan2(s, k);
    parts.scaleX = scaleX;
    parts.scaleY = determinant / scaleX;
    parts.skew = k * t.c + s * t.d;
    return parts;
}

CGAffineTransform TransformParts::compose() const
{
    if (rotation == 0)
        return { scaleX, 0, skew, scaleY, translationX, translationY };
    const double s = std::sin(rotation), k = std::cos(rotation);
    return { scaleX * k, scaleX * s, skew * k - scaleY * s, skew * s + scaleY * k, translationX, translationY };
}

} // namespace platform
