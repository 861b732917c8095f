#include "Platform/QuartzCore/ShapeKernels.h"

#include "Platform/CoreGraphics/ProcessorClones.h"

#include <algorithm>
#include <cmath>

namespace platform::rows {

// Functions of their own name, as one compiler wants every declaration of a clone marked.
namespace loops {

MIVORA_CLONES void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count)
{
    const CGAffineTransform& m = shape.toLocal;
    // Device pixels for a step across each pair of sides.
    const double acrossX = 1 / std::max(std::hypot(m.a, m.c), 1e-9), acrossY = 1 / std::max(std::hypot(m.b, m.d), 1e-9);
    const auto clamped = [](double v) { return v < 0 ? 0.0 : v > 1 ? 1.0 : v; };
    const CGRect& r = shape.rect;
    const double radius = shape.radius;
    for (int i = 0; i < count; ++i) {
        const double px = x + i + 0.5, py = y + 0.5;
        const double lx = m.a * px + m.c * py + m.tx, ly = m.b * px + m.d * py + m.ty;
        const double left = lx - r.x, right = r.x + r.width - lx, top = ly - r.y, bottom = r.y + r.height - ly;
        const double spanX = clamped(0.5 + left * acrossX) + clamped(0.5 + right * acrossX) - 1;
        const double spanY = clamped(0.5 + top * acrossY) + clamped(0.5 + bottom * acrossY) - 1;
        double cover = clamped(spanX) * clamped(spanY);
        const double nearX = std::min(left, right), nearY = std::min(top, bottom);
        const unsigned corner = (left <= right ? 1u : 2u) << (top <= bottom ? 0 : 2);
        if (nearX < radius && nearY < radius && (shape.corners & corner)) {
            // Distance from the corner's circle: its implicit function over the gradient in device pixels.
            const double u = (radius - nearX) / radius, v = (radius - nearY) / radius;
            const double length = std::sqrt(u * u + v * v);
            const double su = left <= right ? u : -u, sv = top <= bottom ? v : -v;
            const double gradientX = m.a * su + m.b * sv, gradientY = m.c * su + m.d * sv;
            const double slope = std::sqrt(gradientX * gradientX + gradientY * gradientY) / radius;
            cover = std::min(cover, slope > 0 ? clamped(0.5 - length * (length - 1) / slope) : 1.0);
        }
        to[i] = std::uint8_t(cover * 255 + 0.5);
    }
}

MIVORA_CLONES void accumulate(float* __restrict row, const float* __restrict other, float weight, int count)
{
    for (int i = 0; i < count; ++i)
        row[i] += weight * other[i];
}

} // namespace loops

void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count) { loops::coverRow(to, shape, x, y, count); }
void accumulate(float* row, const float* other, float weight, int count) { loops::accumulate(row, other, weight, count); }

} // namespace platform::rows
