#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"

#include <algorithm>
#include <cstdlib>
#include <random>

namespace platform::testing {

RenderItem boxItem(std::uint64_t key, const CGRect& rect, const CGColor& fill)
{
    return itemOf(key, rect, RenderBox { fill, {}, 0 });
}

RenderItem shadowItem(std::uint64_t key, const CGRect& rect, const CGColor& color, double sigma, int reach)
{
    RenderItem item = itemOf(key, rect, RenderShadow { color, sigma, {}, nullptr });
    item.bounds = PixelRect::around(rect.insetBy(-reach, -reach));
    return item;
}

RenderItem groupItem(std::uint64_t key, std::vector<RenderItem> content, std::vector<RenderItem> mask)
{
    RenderGroup group { listOf(std::move(content)), nullptr, {} };
    if (!mask.empty())
        group.mask = listOf(std::move(mask));
    RenderItem item;
    item.key = key;
    for (const RenderItem& inner : group.content->items)
        item.bounds = item.bounds.unionWith(inner.bounds);
    item.rect = { double(item.bounds.x), double(item.bounds.y), double(item.bounds.width), double(item.bounds.height) };
    item.content = std::move(group);
    return item;
}

RenderItem transformed(RenderItem item, const CGAffineTransform& transform)
{
    item.transform = item.transform.then(transform);
    item.bounds = PixelRect::around(item.transform.apply(item.rect).insetBy(-1, -1));
    return item;
}

std::shared_ptr<RenderList> listOf(std::vector<RenderItem> items, std::vector<RenderClip> clips)
{
    auto list = std::make_shared<RenderList>();
    list->items = std::move(items);
    list->clips = std::move(clips);
    return list;
}

std::shared_ptr<const CGImage> pictureOf(
    int width, int height, PixelFormat format, const std::function<std::uint32_t(int, int)>& pixel)
{
    auto bitmap = Bitmap::make(width, height, format);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            bitmap->row(y)[x] = pixel(x, y);
    }
    return CGImage::fromBitmap(bitmap);
}

std::shared_ptr<const CGImage> noisePicture(int width, int height, PixelFormat format, unsigned seed)
{
    std::mt19937 random(seed);
    return pictureOf(width, height, format, [&](int, int) -> std::uint32_t {
        const std::uint32_t alpha = format == PixelFormat::xrgb ? 255 : random() % 256;
        std::uint32_t word = format == PixelFormat::xrgb ? random() % 256 : alpha; // what stands in the unused byte is no matter
        for (int channel = 0; channel < 3; ++channel)
            word = word << 8 | random() % (alpha + 1);
        return word;
    });
}

Composed::Composed(int width, int height, const std::shared_ptr<const RenderList>& list)
{
    compositor.setSize(width, height);
    compositor.composite(list);
}

int difference(std::uint32_t a, std::uint32_t b)
{
    int most = 0;
    for (int shift = 0; shift < 24; shift += 8)
        most = std::max(most, std::abs(int(a >> shift & 255) - int(b >> shift & 255)));
    return most;
}

int difference(const Bitmap& a, const Bitmap& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            most = std::max(most, difference(a.row(y)[x], b.row(y)[x]));
    }
    return most;
}

} // namespace platform::testing
