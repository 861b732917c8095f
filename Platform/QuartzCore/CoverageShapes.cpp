#include "Platform/QuartzCore/Coverage.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace platform {

namespace {

constexpr double hair = 1.0 / 64; // pixels; finer differences do not show
constexpr double farthest = 1e8; // pixels; what lies beyond is as good as there
constexpr long largestPicture = 2l << 20; // pixels of a nine-part bitmap; a circle as wide as a phone has 1.4 million

double snapped(double v)
{
    v = std::clamp(v, -farthest, farthest);
    const double whole = std::round(v);
    return std::abs(v - whole) <= hair ? whole : std::round(v * 64) / 64;
}

// A nine-part picture's measures: how many pixels at each side do not stretch, and where the shape's edges lie in the picture.
struct Parts {
    PixelRect outer;
    int left, top, right, bottom;
    int width, height; // of the small picture
    UprightRect small; // the shape as it lies in it

    // `extra` pixels of blur on both sides of an edge do not stretch either.
    Parts(const UprightRect& r, double insideX, double insideY, int extra)
    {
        const PixelRect touched = r.outer();
        outer = { touched.x - extra, touched.y - extra, touched.width + 2 * extra, touched.height + 2 * extra };
        const double fromLeft = r.left - outer.x, fromTop = r.top - outer.y;
        const double fromRight = outer.maxX() - r.right, fromBottom = outer.maxY() - r.bottom;
        left = int(std::ceil(fromLeft + insideX)) + extra;
        right = int(std::ceil(fromRight + insideX)) + extra;
        top = int(std::ceil(fromTop + insideY)) + extra;
        bottom = int(std::ceil(fromBottom + insideY)) + extra;
        if (left + 1 + right > outer.width) {
            left = outer.width;
            right = 0;
        }
        if (top + 1 + bottom > outer.height) {
            top = outer.height;
            bottom = 0;
        }
        width = std::min(outer.width, left + 1 + right);
        height = std::min(outer.height, top + 1 + bottom);
        small = r;
        small.left = fromLeft;
        small.top = fromTop;
        small.right = width - fromRight;
        small.bottom = height - fromBottom;
    }

    bool isTooLarge() const { return long(width) * height > largestPicture; }

    void addTo(PixelKey& key) const
    {
        key.add(std::uint64_t(width)).add(std::uint64_t(height)).add(std::uint64_t(small.corners));
        key.add(small.left).add(small.top).add(small.right).add(small.bottom).add(small.radiusX).add(small.radiusY);
    }
};

// Corner coverage wants circles, so the space of an upright shape is scaled to have them.
rows::RoundedRect circularShape(const UprightRect& r)
{
    rows::RoundedRect shape;
    const double stretch = r.radiusY > 0 ? r.radiusX / r.radiusY : 1;
    shape.toLocal = CGAffineTransform::scale(1, stretch);
    shape.rect = { r.left, r.top * stretch, r.right - r.left, (r.bottom - r.top) * stretch };
    shape.radius = r.radiusX;
    shape.corners = r.corners;
    return shape;
}

std::shared_ptr<Bitmap> drawn(const UprightRect& r, int width, int height)
{
    auto bitmap = Bitmap::make(width, height, PixelFormat::alpha);
    const auto shape = circularShape(r);
    for (int y = 0; bitmap && y < height; ++y)
        rows::coverRow(bitmap->alphaRow(y), shape, 0, y, width);
    return bitmap;
}

UprightRect inset(const UprightRect& r, double x, double y)
{
    return { r.left + x, r.top + y, r.right - x, r.bottom - y, std::max(r.radiusX - x, 0.0), std::max(r.radiusY - y, 0.0),
        r.corners };
}

std::shared_ptr<Bitmap> drawnRing(const UprightRect& r, int width, int height, double ringX, double ringY)
{
    auto bitmap = drawn(r, width, height);
    const UprightRect hole = inset(r, ringX, ringY);
    if (!bitmap || hole.right <= hole.left || hole.bottom <= hole.top)
        return bitmap;
    const auto inner = drawn(hole, width, height);
    for (int y = 0; inner && y < height; ++y) {
        for (int x = 0; x < width; ++x)
            bitmap->alphaRow(y)[x] = std::uint8_t(std::max(bitmap->alphaRow(y)[x] - inner->alphaRow(y)[x], 0));
    }
    return bitmap;
}

// The gaussian's integral up to x sigmas.
double upTo(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

// Rows of equal extent of a rounded rectangle: the corners in slices, then what lies between them.
struct Slice {
    double top, bottom, left, right;
};
std::vector<Slice> slicesOf(const UprightRect& r)
{
    std::vector<Slice> slices;
    const int count = r.radiusY > 0 ? std::max(4, int(std::ceil(r.radiusY))) : 0; // a corner; a pixel high at most
    const auto rounds = [&](unsigned corner, double inset) { return r.corners & corner ? inset : 0; };
    for (int i = 0; i < count; ++i) {
        const double from = r.radiusY * i / count, to = r.radiusY * (i + 1) / count;
        const double up = 1 - (from + to) / 2 / r.radiusY;
        const double in = r.radiusX * (1 - std::sqrt(std::max(1 - up * up, 0.0)));
        slices.push_back({ r.top + from, r.top + to, r.left + rounds(1, in), r.right - rounds(2, in) });
        slices.push_back({ r.bottom - to, r.bottom - from, r.left + rounds(4, in), r.right - rounds(8, in) });
    }
    slices.push_back({ r.top + r.radiusY, r.bottom - r.radiusY, r.left, r.right });
    return slices;
}

// Exact in both directions: each slice is a box, and a box blurs to a product of two differences of the gaussian's integral.
std::shared_ptr<Bitmap> drawnShadow(const UprightRect& r, int width, int height, double sigmaX, double sigmaY)
{
    auto bitmap = Bitmap::make(width, height, PixelFormat::alpha);
    if (!bitmap)
        return nullptr;
    std::vector<float> sums(std::size_t(width) * std::size_t(height));
    std::vector<float> profile(static_cast<std::size_t>(width));
    for (const Slice& s : slicesOf(r)) {
        for (int x = 0; x < width; ++x)
            profile[std::size_t(x)] = float(upTo((s.right - x - 0.5) / sigmaX) - upTo((s.left - x - 0.5) / sigmaX));
        for (int y = 0; y < height; ++y) {
            const auto weight = float(upTo((s.bottom - y - 0.5) / sigmaY) - upTo((s.top - y - 0.5) / sigmaY));
            if (weight > 1e-5f)
                rows::accumulate(sums.data() + std::size_t(y) * std::size_t(width), profile.data(), weight, width);
        }
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float v = sums[std::size_t(y) * std::size_t(width) + std::size_t(x)];
            bitmap->alphaRow(y)[x] = std::uint8_t(std::clamp(v, 0.f, 1.f) * 255 + 0.5f);
        }
    }
    return bitmap;
}

std::shared_ptr<rows::RoundedRect> slantedShape(
    const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners)
{
    return std::make_shared<rows::RoundedRect>(rows::RoundedRect {
        transform.inverted(), rect, std::clamp(radius, 0.0, std::min(rect.width, rect.height) / 2), corners });
}

} // namespace

std::optional<UprightRect> UprightRect::make(const CGAffineTransform& t, const CGRect& rect, double radius, unsigned corners)
{
    if (std::abs(t.b * rect.width) > hair || std::abs(t.c * rect.height) > hair)
        return {};
    const CGRect device = t.apply(rect);
    const double r = std::clamp(radius, 0.0, std::min(rect.width, rect.height) / 2);
    UprightRect u { snapped(device.x), snapped(device.y), snapped(device.maxX()), snapped(device.maxY()),
        snapped(r * std::abs(t.a)), snapped(r * std::abs(t.d)), corners & 15 };
    u.radiusX = std::min(u.radiusX, (u.right - u.left) / 2);
    u.radiusY = std::min(u.radiusY, (u.bottom - u.top) / 2);
    if (u.radiusX <= 0 || u.radiusY <= 0 || u.corners == 0) {
        u.radiusX = u.radiusY = 0;
        u.corners = 0;
    }
    // A mirrored space has its corners on the other side of the screen.
    if (t.a < 0)
        u.corners = (u.corners & 5) << 1 | (u.corners & 10) >> 1;
    if (t.d < 0)
        u.corners = (u.corners & 3) << 2 | (u.corners & 12) >> 2;
    return u;
}

PixelRect UprightRect::outer() const
{
    const int x = int(std::floor(left)), y = int(std::floor(top));
    return { x, y, int(std::ceil(right)) - x, int(std::ceil(bottom)) - y };
}

bool UprightRect::isWhole() const
{
    return left == std::floor(left) && top == std::floor(top) && right == std::floor(right) && bottom == std::floor(bottom);
}

PixelRect UprightRect::inside() const
{
    const auto whole = [](double x0, double y0, double x1, double y1) {
        const int x = int(std::ceil(x0)), y = int(std::ceil(y0));
        return PixelRect { x, y, int(std::floor(x1)) - x, int(std::floor(y1)) - y };
    };
    const PixelRect wide = whole(left, top + radiusY, right, bottom - radiusY);
    const PixelRect high = whole(left + radiusX, top, right - radiusX, bottom);
    return wide.area() >= high.area() ? wide : high;
}

Coverage Coverage::roundedRect(
    const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners, PixelCache& cache)
{
    Coverage c;
    const auto upright = UprightRect::make(transform, rect, radius, corners);
    if (!upright) {
        c.outer = PixelRect::around(transform.apply(rect).insetBy(-1, -1));
        c.slanted = slantedShape(transform, rect, radius, corners);
        return c;
    }
    c.outer = upright->outer();
    if (c.outer.isEmpty() || (upright->isWhole() && upright->radiusX == 0))
        return c;
    const Parts parts(*upright, upright->radiusX, upright->radiusY, 0);
    if (upright->radiusX == 0 && parts.width <= 3 && parts.height <= 3) {
        // An edge between pixels, as a moving picture has it each frame anew, needs no bitmap.
        const auto shape = circularShape(parts.small);
        for (int y = 0; y < parts.height; ++y)
            rows::coverRow(c.edges.data() + y * 3, shape, 0, y, parts.width);
        c.setParts(parts.left, parts.top, parts.right, parts.bottom, parts.width, parts.height);
        return c;
    }
    if (parts.isTooLarge()) {
        c.slanted = slantedShape(transform, rect, radius, corners);
        return c;
    }
    PixelKey key(PixelKey::corners);
    parts.addTo(key);
    c.mask = cache.findOrMake(key, [&] { return drawn(parts.small, parts.width, parts.height); });
    if (c.mask)
        c.setParts(parts.left, parts.top, parts.right, parts.bottom, parts.width, parts.height);
    return c;
}

Coverage Coverage::ring(
    const CGAffineTransform& transform, const CGRect& rect, double radius, unsigned corners, double width, PixelCache& cache)
{
    Coverage c;
    const auto computed = [&] {
        c.outer = PixelRect::around(transform.apply(rect).insetBy(-1, -1));
        c.slanted = slantedShape(transform, rect, radius, corners);
        const CGRect inside = rect.insetBy(width, width);
        if (!inside.isEmpty())
            c.hole = slantedShape(transform, inside, std::max(radius - width, 0.0), corners);
        return c;
    };
    const auto upright = UprightRect::make(transform, rect, radius, corners);
    if (!upright)
        return computed();
    const double ringX = snapped(width * std::abs(transform.a)), ringY = snapped(width * std::abs(transform.d));
    c.outer = upright->outer();
    if (c.outer.isEmpty())
        return c;
    const Parts parts(*upright, std::max(upright->radiusX, ringX), std::max(upright->radiusY, ringY), 0);
    if (parts.isTooLarge())
        return computed();
    PixelKey key(PixelKey::ring);
    parts.addTo(key);
    key.add(ringX).add(ringY);
    c.mask = cache.findOrMake(key, [&] { return drawnRing(parts.small, parts.width, parts.height, ringX, ringY); });
    if (c.mask)
        c.setParts(parts.left, parts.top, parts.right, parts.bottom, parts.width, parts.height);
    return c;
}

std::optional<Coverage> Coverage::shadow(const UprightRect& rect, double sigmaX, double sigmaY, PixelCache& cache)
{
    Coverage c;
    const int reach = int(std::ceil(3 * std::max(sigmaX, sigmaY)));
    const Parts parts(rect, rect.radiusX, rect.radiusY, reach);
    c.outer = parts.outer;
    if (parts.isTooLarge())
        return {};
    PixelKey key(PixelKey::shadow);
    parts.addTo(key);
    key.add(sigmaX).add(sigmaY);
    c.mask = cache.findOrMake(key, [&] { return drawnShadow(parts.small, parts.width, parts.height, sigmaX, sigmaY); });
    if (c.mask)
        c.setParts(parts.left, parts.top, parts.right, parts.bottom, parts.width, parts.height);
    return c;
}

} // namespace platform
