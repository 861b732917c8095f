#include "Platform/QuartzCore/PathPictures.h"

#include "Platform/CoreGraphics/CoverageBlur.h"
#include "Platform/QuartzCore/PixelCache.h"
#include "Platform/QuartzCore/PixelKernels.h"

#include <cmath>

namespace platform {

namespace {

// The transform and the rectangle relative to the whole pixel that the space's origin lies in.
void addPlace(PixelKey& key, const CGAffineTransform& t, const PixelRect& area)
{
    const double x = std::floor(t.tx), y = std::floor(t.ty);
    const auto finely = [](double v) { return std::round(v * 64); }; // 1/64 pixel does not show
    key.add(t.a).add(t.b).add(t.c).add(t.d).add(finely(t.tx - x)).add(finely(t.ty - y));
    key.add(area.x - x).add(area.y - y).add(std::uint64_t(area.width)).add(std::uint64_t(area.height));
}

void addColor(PixelKey& key, const std::optional<CGColor>& color)
{
    key.add(std::uint64_t(color.has_value()));
    if (color)
        key.add(*color);
}

std::shared_ptr<Bitmap> drawnShape(const RenderItem& item, const RenderShape& shape)
{
    const PixelRect& area = item.bounds;
    auto bitmap = Bitmap::make(area.width, area.height, PixelFormat::argb, true);
    if (!bitmap)
        return nullptr;
    CGContext context(*bitmap, item.transform.then(CGAffineTransform::translation(-area.x, -area.y)));
    if (shape.fill)
        context.fill(*shape.path, *shape.fill);
    if (shape.stroke && shape.strokeEnd > shape.strokeStart) {
        const bool isWhole = shape.strokeStart <= 0 && shape.strokeEnd >= 1;
        const CGPath& path = isWhole ? *shape.path : shape.path->trimmed(shape.strokeStart, shape.strokeEnd);
        context.stroke(path, *shape.stroke, shape.lineWidth, shape.cap, shape.join);
    }
    return bitmap;
}

std::shared_ptr<Bitmap> drawnBlurred(const CGPath& path, const CGAffineTransform& transform, double sigma, const PixelRect& area)
{
    const auto filled = Bitmap::make(area.width, area.height, PixelFormat::argb, true);
    auto alpha = Bitmap::make(area.width, area.height, PixelFormat::alpha);
    if (!filled || !alpha)
        return nullptr;
    {
        CGContext context(*filled, transform.then(CGAffineTransform::translation(-area.x, -area.y)));
        context.fill(path, CGColor { 0, 0, 0, 1 });
    }
    for (int y = 0; y < area.height; ++y)
        rows::alphaOf(alpha->alphaRow(y), filled->row(y), area.width);
    pixels::blurCoverage(*alpha, sigma);
    return alpha;
}

} // namespace

std::shared_ptr<const Bitmap> shapePicture(const RenderItem& item, const RenderShape& shape, PixelCache& cache)
{
    if (!shape.path || shape.path->isEmpty() || (!shape.fill && !shape.stroke))
        return nullptr;
    PixelKey key(PixelKey::shape);
    key.add(*shape.path).add(shape.lineWidth).add(shape.strokeStart).add(shape.strokeEnd);
    key.add(std::uint64_t(shape.cap)).add(std::uint64_t(shape.join));
    addColor(key, shape.fill);
    addColor(key, shape.stroke);
    addPlace(key, item.transform, item.bounds);
    return cache.findOrMake(key, [&] { return drawnShape(item, shape); });
}

PlacedCoverage blurredPath(
    const CGPath& path, const CGAffineTransform& transform, double sigma, const PixelRect& bounds, PixelCache& cache)
{
    const int reach = int(std::ceil(3 * sigma)) + 1;
    const auto grown = [reach](const PixelRect& r) {
        return PixelRect { r.x - reach, r.y - reach, r.width + 2 * reach, r.height + 2 * reach };
    };
    // Half of a large shape that lies outside the screen still throws its shadow from as far as the blur reaches.
    const PixelRect area = grown(PixelRect::around(transform.apply(path.boundingBox()))).intersection(grown(bounds));
    if (area.isEmpty())
        return {};
    PixelKey key(PixelKey::pathShadow);
    key.add(path).add(sigma);
    addPlace(key, transform, area);
    return { cache.findOrMake(key, [&] { return drawnBlurred(path, transform, sigma, area); }), area.x, area.y };
}

} // namespace platform
