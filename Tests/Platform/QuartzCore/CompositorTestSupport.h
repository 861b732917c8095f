#pragma once

#include "Platform/QuartzCore/Compositor.h"
#include "Platform/QuartzCore/RenderList.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform::testing {

constexpr CGColor black { 0, 0, 0, 1 }, white { 1, 1, 1, 1 }, red { 1, 0, 0, 1 }, green { 0, 1, 0, 1 }, blue { 0, 0, 1, 1 };

// An item whose space is device pixels, and whose bounds are the pixels around its rectangle.
template <typename Content> RenderItem itemOf(std::uint64_t key, const CGRect& rect, Content content)
{
    RenderItem item;
    item.key = key;
    item.rect = rect;
    item.bounds = PixelRect::around(rect);
    item.content = std::move(content);
    return item;
}
RenderItem boxItem(std::uint64_t key, const CGRect& rect, const CGColor& fill);
// `reach` is how far the shadow's bounds go beyond the rectangle.
RenderItem shadowItem(std::uint64_t key, const CGRect& rect, const CGColor& color, double sigma, int reach);
RenderItem groupItem(std::uint64_t key, std::vector<RenderItem> content, std::vector<RenderItem> mask = {});
// Moves the item and its bounds by another transform; the bounds become those of the turned rectangle.
RenderItem transformed(RenderItem item, const CGAffineTransform& transform);

std::shared_ptr<RenderList> listOf(std::vector<RenderItem> items, std::vector<RenderClip> clips = {});

// A picture whose pixels come from a function of x and y (premultiplied words).
std::shared_ptr<const CGImage> pictureOf(
    int width, int height, PixelFormat format, const std::function<std::uint32_t(int, int)>& pixel);
// Colours without a pattern that a shift or a scale would keep.
std::shared_ptr<const CGImage> noisePicture(int width, int height, PixelFormat format, unsigned seed);

// The colours of a list composed once into a frame of that size.
class Composed {
public:
    Composed(int width, int height, const std::shared_ptr<const RenderList>& list);
    std::uint32_t at(int x, int y) const { return compositor.frame()->row(y)[x] & 0xffffff; }
    int red(int x, int y) const { return int(at(x, y) >> 16); }
    int green(int x, int y) const { return int(at(x, y) >> 8 & 255); }
    int blue(int x, int y) const { return int(at(x, y) & 255); }

    Compositor compositor;
};

// The largest difference of a channel between two colours.
int difference(std::uint32_t a, std::uint32_t b);
// Of all pixels of two frames of one size.
int difference(const Bitmap& a, const Bitmap& b);

} // namespace platform::testing
