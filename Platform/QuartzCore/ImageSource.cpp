#include "Platform/QuartzCore/PixelSource.h"

#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/CoreGraphics/Resampling.h"
#include "Platform/QuartzCore/PixelCache.h"
#include "Platform/QuartzCore/SampleKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace platform {

namespace {

using rows::Pixel;

class SolidSource final : public PixelSource {
public:
    explicit SolidSource(Pixel fill)
        : color(fill)
    {
    }
    SourceRow row(int, int, int, Pixel*, std::uint8_t*) override { return { nullptr, color, nullptr, color >> 24 == 255 }; }

private:
    Pixel color;
};

// Pixel by pixel, perhaps mirrored.
class BlitSource final : public PixelSource {
public:
    BlitSource(std::shared_ptr<const Bitmap> picture, int x, int y, bool flipX, bool flipY)
        : bitmap(std::move(picture))
        , x0(x)
        , y0(y)
        , mirrorX(flipX)
        , mirrorY(flipY)
    {
    }

    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t*) override
    {
        const Pixel* line = bitmap->row(rowAt(y));
        const bool opaque = bitmap->format() == PixelFormat::xrgb;
        if (!mirrorX)
            return { line + (x - x0), 0, nullptr, opaque };
        rows::copyReversed(room, line + bitmap->width() - (x - x0) - count, count);
        return { room, 0, nullptr, opaque };
    }
    void narrow(int y, int& x, int& count) const override
    {
        RowExtent inked = bitmap->extent(rowAt(y));
        if (mirrorX)
            inked = { bitmap->width() - inked.end, bitmap->width() - inked.first };
        const int from = std::clamp(x0 + inked.first, x, x + count), until = std::clamp(x0 + inked.end, from, x + count);
        x = from;
        count = until - from;
    }

private:
    int rowAt(int y) const { return mirrorY ? bitmap->height() - 1 - (y - y0) : y - y0; }

    std::shared_ptr<const Bitmap> bitmap;
    int x0, y0;
    bool mirrorX, mirrorY;
};

// Pixel by pixel, computed on the way.
class LazySource final : public PixelSource {
public:
    LazySource(std::shared_ptr<const LazyPixels> picture, int x, int y)
        : pixels(std::move(picture))
        , reader(pixels->reader())
        , x0(x)
        , y0(y)
    {
    }

    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t*) override
    {
        reader->read(room, x - x0, y - y0, count);
        return { room, 0, nullptr, true };
    }
    bool fillsRoom() const override { return true; }

private:
    std::shared_ptr<const LazyPixels> pixels;
    std::unique_ptr<LazyPixels::Reader> reader;
    int x0, y0;
};

std::int64_t fixed(double v) { return std::llround(v * 65536); }

// Bilinear on upright axes: two rows are mixed, then sampled along.
class ScaledSource final : public PixelSource {
public:
    // `across` and `down` are source pixels a device pixel, negative for a mirrored picture.
    ScaledSource(std::shared_ptr<const Bitmap> picture, const CGRect& device, double across, double down)
        : bitmap(std::move(picture))
        , mixed(static_cast<std::size_t>(bitmap->width()))
        , originX(int(std::floor(device.x)))
        , originY(int(std::floor(device.y)))
        , stepX(fixed(across))
        , stepY(fixed(down))
    {
        const double x = originX + 0.5 - (across < 0 ? device.maxX() : device.x);
        const double y = originY + 0.5 - (down < 0 ? device.maxY() : device.y);
        startX = fixed(x * across - 0.5);
        startY = fixed(y * down - 0.5);
    }

    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t*) override
    {
        const int lastX = bitmap->width() - 1, lastY = bitmap->height() - 1;
        const std::int64_t down = std::clamp<std::int64_t>(startY + (y - originY) * stepY, 0, std::int64_t(lastY) << 16);
        const std::int64_t from = startX + (x - originX) * stepX, to = from + (count - 1) * stepX;
        const auto column = [&](std::int64_t v) { return int(std::clamp<std::int64_t>(v >> 16, 0, lastX)); };
        const int first = column(std::min(from, to)), last = std::min(column(std::max(from, to)) + 1, lastX);
        const Pixel* line = mixedRow(int(down >> 16), unsigned(down >> 8) & 255, first, last);
        const bool opaque = bitmap->format() == PixelFormat::xrgb;
        if (startX % 65536 == 0 && stepX == 65536 && from >= 0 && to >> 16 <= lastX)
            return { line + (from >> 16), 0, nullptr, opaque };
        rows::sampleRow(room, line + first, last - first, from - (std::int64_t(first) << 16), stepX, count);
        return { room, 0, nullptr, opaque };
    }

private:
    // The row at a height between two of the picture's, at least from column `first` to `last`. Asked again it is still there.
    const Pixel* mixedRow(int top, unsigned weight, int first, int last)
    {
        if (weight == 0 || top + 1 >= bitmap->height())
            return bitmap->row(top);
        if (top != mixedTop || weight != mixedWeight || first < mixedFirst || last > mixedLast) {
            rows::mixRows(mixed.data() + first, bitmap->row(top) + first, bitmap->row(top + 1) + first, last - first + 1, weight);
            mixedTop = top;
            mixedWeight = weight;
            mixedFirst = first;
            mixedLast = last;
        }
        return mixed.data();
    }

    std::shared_ptr<const Bitmap> bitmap;
    std::vector<Pixel> mixed;
    int mixedTop = -1, mixedFirst = 0, mixedLast = -1;
    unsigned mixedWeight = 0;
    int originX, originY;
    std::int64_t startX = 0, startY = 0, stepX, stepY;
};

class SlantedSource final : public PixelSource {
public:
    // `mapping` takes device pixels to the picture's, measured from its corner.
    SlantedSource(std::shared_ptr<const Bitmap> picture, const CGAffineTransform& mapping)
        : bitmap(std::move(picture))
        , toSource(mapping)
    {
    }

    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t*) override
    {
        // From the screen's left edge, so that the rounding does not depend on where the row begins.
        const CGPoint start = toSource.apply(CGPoint { 0.5, y + 0.5 });
        rows::SlantedWalk walk { fixed(start.x - 0.5), fixed(start.y - 0.5), fixed(toSource.a), fixed(toSource.b) };
        walk.x += x * walk.stepX;
        walk.y += x * walk.stepY;
        rows::samplePicture(room, bitmap->row(0), bitmap->stride() / 4, bitmap->width(), bitmap->height(), walk, count);
        return { room, 0, nullptr, bitmap->format() == PixelFormat::xrgb };
    }

private:
    std::shared_ptr<const Bitmap> bitmap;
    CGAffineTransform toSource;
};

// One colour through another source's alpha.
class TintSource final : public PixelSource {
public:
    TintSource(std::unique_ptr<PixelSource> shape, Pixel tint)
        : picture(std::move(shape))
        , color(tint)
    {
    }

    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t* coverageRoom) override
    {
        const SourceRow inner = picture->row(x, y, count, room, coverageRoom);
        if (inner.isOpaque)
            return { nullptr, color, nullptr, color >> 24 == 255 };
        rows::alphaOf(coverageRoom, inner.pixels, count);
        return { nullptr, color, coverageRoom, false };
    }
    void narrow(int y, int& x, int& count) const override { picture->narrow(y, x, count); }

private:
    std::unique_ptr<PixelSource> picture;
    Pixel color;
};

// Coverage as black with that alpha, for images that are only a mask.
std::shared_ptr<const Bitmap> blackThrough(const Bitmap& alpha)
{
    auto bitmap = Bitmap::make(alpha.width(), alpha.height(), PixelFormat::argb);
    for (int y = 0; bitmap && y < alpha.height(); ++y) {
        for (int x = 0; x < alpha.width(); ++x)
            bitmap->row(y)[x] = Pixel(alpha.alphaRow(y)[x]) << 24;
    }
    return bitmap;
}

struct Picture {
    std::shared_ptr<const Bitmap> bitmap;
    PixelKey key; // of its content, levels go below
};

// An image's pixels; a drawing is rendered for the given size.
Picture pictureOf(const CGImage& image, int width, int height, PixelCache& cache)
{
    PixelKey key(PixelKey::drawing);
    key.add(image.id());
    if (!image.isDrawing()) {
        if (!image.pixels() || image.pixels()->format() != PixelFormat::alpha)
            return { image.pixels(), key };
        return { cache.findOrMake(key, [&] { return blackThrough(*image.pixels()); }), key };
    }
    key.add(std::uint64_t(width)).add(std::uint64_t(height));
    return { cache.findOrMake(key, [&] { return image.rendered(width, height); }), key };
}

// The picture halved that many times.
std::shared_ptr<const Bitmap> levelOf(const Picture& picture, int level, PixelCache& cache)
{
    if (level == 0)
        return picture.bitmap;
    PixelKey key = picture.key;
    key.add(std::uint64_t(PixelKey::level)).add(std::uint64_t(level));
    return cache.findOrMake(key, [&]() -> std::shared_ptr<const Bitmap> {
        const auto larger = levelOf(picture, level - 1, cache);
        return larger ? pixels::halved(*larger) : nullptr;
    });
}

// How often to halve so that bilinear sampling misses no pixel: source pixels a device pixel in, halvings out.
int levelFor(double across, double down)
{
    const double shrink = std::sqrt(std::abs(across * down));
    return shrink >= 2 && std::isfinite(shrink) ? std::min(int(std::log2(shrink)), 14) : 0;
}

bool isWhole(double v) { return v == std::floor(v); }

// Draws the whole scaled picture once, for blitting.
std::shared_ptr<const Bitmap> drawnWhole(PixelSource& source, const PixelRect& area, PixelFormat format)
{
    auto bitmap = Bitmap::make(area.width, area.height, format);
    for (int y = 0; bitmap && y < area.height; ++y) {
        const SourceRow row = source.row(area.x, area.y + y, area.width, bitmap->row(y), nullptr);
        if (row.pixels != bitmap->row(y))
            std::memcpy(bitmap->row(y), row.pixels, std::size_t(area.width) * 4);
    }
    return bitmap;
}

bool isScaledLike(const CGAffineTransform& t, const CGAffineTransform& toPixels)
{
    return std::abs(std::abs(t.a) - std::abs(toPixels.a)) < 1e-6 && std::abs(std::abs(t.d) - std::abs(toPixels.d)) < 1e-6;
}

// Whether so many pixels lie on the screen's, one on one.
bool fits(const UprightRect& r, double width, double height)
{
    return isWhole(r.left) && isWhole(r.top) && r.right - r.left == width && r.bottom - r.top == height;
}

std::unique_ptr<PixelSource> uprightSource(
    const Picture& picture, const UprightRect& r, const RenderItem& item, bool isKept, PixelCache& cache)
{
    const Bitmap& pixels = *picture.bitmap;
    const bool mirrorX = item.transform.a < 0, mirrorY = item.transform.d < 0;
    const CGRect device { r.left, r.top, r.right - r.left, r.bottom - r.top };
    if (device.isEmpty())
        return nullptr;
    if (fits(r, pixels.width(), pixels.height()))
        return std::make_unique<BlitSource>(picture.bitmap, int(r.left), int(r.top), mirrorX, mirrorY);
    const double across = pixels.width() / device.width, down = pixels.height() / device.height;
    const int level = levelFor(across, down);
    const double part = 1.0 / (1 << level);
    const auto make = [&]() -> std::unique_ptr<PixelSource> {
        auto source = levelOf(picture, level, cache);
        if (!source)
            return nullptr;
        return std::make_unique<ScaledSource>(
            std::move(source), device, across * part * (mirrorX ? -1 : 1), down * part * (mirrorY ? -1 : 1));
    };
    const PixelRect outer = r.outer();
    constexpr long largestKept = 7l << 19; // pixels; what the cache can hold at most
    if (!isKept || outer.area() > largestKept || outer.area() > 4 * item.bounds.area())
        return make();
    PixelKey key = picture.key;
    key.add(std::uint64_t(PixelKey::scaledImage)).add(device.width).add(device.height).add(r.left - outer.x).add(r.top - outer.y);
    key.add(std::uint64_t(mirrorX)).add(std::uint64_t(mirrorY));
    auto whole = cache.findOrMake(key, [&]() -> std::shared_ptr<const Bitmap> {
        const auto source = make();
        return source ? drawnWhole(*source, outer, pixels.format()) : nullptr;
    });
    return whole ? bitmapSource(std::move(whole), outer.x, outer.y) : nullptr;
}

} // namespace

std::unique_ptr<PixelSource> solidSource(Pixel color) { return std::make_unique<SolidSource>(color); }

std::unique_ptr<PixelSource> bitmapSource(std::shared_ptr<const Bitmap> bitmap, int x, int y)
{
    return std::make_unique<BlitSource>(std::move(bitmap), x, y, false, false);
}

std::unique_ptr<PixelSource> scaledSource(std::shared_ptr<const Bitmap> bitmap, const CGRect& device)
{
    const double across = bitmap->width() / device.width, down = bitmap->height() / device.height;
    return std::make_unique<ScaledSource>(std::move(bitmap), device, across, down);
}

std::unique_ptr<PixelSource> imageSource(
    const RenderItem& item, const RenderImage& image, const CGAffineTransform& toPixels, PixelCache& cache)
{
    if (!image.image || item.rect.isEmpty() || item.transform.determinant() == 0)
        return nullptr;
    const auto upright = UprightRect::make(item.transform, item.rect, 0, 0);
    if (image.image->lazyPixels() && !image.tint && upright && item.transform.a > 0 && item.transform.d > 0
        && fits(*upright, image.image->width(), image.image->height()))
        return std::make_unique<LazySource>(image.image->lazyPixels(), int(upright->left), int(upright->top));
    const bool isKept = upright && isScaledLike(item.transform, toPixels);
    // A drawing that is scaled or turned is rendered as the layout has it, and sampled.
    const double width = isKept ? upright->right - upright->left : item.rect.width * std::abs(toPixels.a);
    const double height = isKept ? upright->bottom - upright->top : item.rect.height * std::abs(toPixels.d);
    const auto side = [](double v) { return int(std::clamp(std::ceil(v), 1.0, 8192.0)); };
    const Picture picture = pictureOf(*image.image, side(width), side(height), cache);
    if (!picture.bitmap)
        return nullptr;
    std::unique_ptr<PixelSource> source;
    if (upright) {
        source = uprightSource(picture, *upright, item, isKept, cache);
    } else {
        const CGAffineTransform& t = item.transform;
        const double across = picture.bitmap->width() / item.rect.width, down = picture.bitmap->height() / item.rect.height;
        const int level = levelFor(across / std::hypot(t.a, t.b), down / std::hypot(t.c, t.d));
        const double part = 1.0 / (1 << level);
        auto bitmap = levelOf(picture, level, cache);
        const auto toSource = t.inverted()
                                  .then(CGAffineTransform::translation(-item.rect.x, -item.rect.y))
                                  .then(CGAffineTransform::scale(across * part, down * part));
        if (bitmap)
            source = std::make_unique<SlantedSource>(std::move(bitmap), toSource);
    }
    if (source && image.tint)
        return std::make_unique<TintSource>(std::move(source), pixels::premultiplied(*image.tint));
    return source;
}

} // namespace platform
