#include "Platform/Images/ImageTarget.h"

#include "Platform/Foundation/NSLog.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform {

namespace {

// Bytes of free pixel memory left to others; the steps between a large file and a small picture are too much to hold on to.
constexpr std::size_t mostPixelsKept = 4u << 20;

std::shared_ptr<const Bitmap> cut(const std::shared_ptr<const Bitmap>& source, const PixelRect& part)
{
    if (part == source->bounds())
        return source;
    auto result = Bitmap::make(part.width, part.height, source->format());
    for (int y = 0; result && y < part.height; ++y)
        std::memcpy(result->row(y), source->row(part.y + y) + part.x, std::size_t(part.width) * 4);
    return result;
}

// A side of a fitted picture. It has as many pixels over as the box, evenly or oddly, so that it lies in the middle on whole
// pixels.
int fittedSide(double exact, int box)
{
    int side = std::clamp(int(std::lround(exact)), 1, box);
    if ((box - side) % 2 != 0)
        side += side > exact && side > 1 ? -1 : 1;
    return side;
}

std::shared_ptr<const Bitmap> fitted(const CGImage& image, const ImageTarget& target)
{
    const double factor = std::min(target.width / image.width(), target.height / image.height());
    return image.rendered(fittedSide(image.width() * factor, target.width), fittedSide(image.height() * factor, target.height));
}

// The middle of a length of which `wanted` (at most all of it) is to be seen, in whole pixels: the nearest, or all that it
// touches.
struct Middle {
    int start;
    int length;
};
Middle nearestMiddle(int whole, double wanted)
{
    const int length = std::clamp(int(std::lround(wanted)), 1, whole);
    return { (whole - length) / 2, length };
}
Middle touchedMiddle(int whole, double wanted)
{
    const double start = (whole - wanted) / 2;
    const int first = std::clamp(int(std::floor(start + 1e-6)), 0, whole - 1);
    const int end = std::clamp(int(std::ceil(start + wanted - 1e-6)), first + 1, whole);
    return { first, end - first };
}

// What will not be seen is cut off before the scaling, so that a strip a thousand times as long as high costs no more than it
// shows. Where a pixel of the source is larger than one of the target, the edges are cut once more afterwards.
std::shared_ptr<const Bitmap> filled(const CGImage& image, const ImageTarget& target)
{
    const double factor = std::max(target.width / image.width(), target.height / image.height());
    const auto scaledSide = [&](double side, int wanted) { return std::max(int(std::lround(side * factor)), wanted); };
    std::shared_ptr<const Bitmap> scaled;
    if (image.isDrawing()) {
        scaled = image.rendered(scaledSide(image.width(), target.width), scaledSide(image.height(), target.height));
    } else {
        const auto middleOf = factor <= 1 ? nearestMiddle : touchedMiddle;
        const auto across = middleOf(image.pixels()->width(), target.width / factor);
        const auto down = middleOf(image.pixels()->height(), target.height / factor);
        const auto seen = cut(image.pixels(), { across.start, down.start, across.length, down.length });
        const auto part = CGImage::fromBitmap(seen);
        if (part && factor <= 1)
            return part->rendered(target.width, target.height);
        scaled = part ? part->rendered(scaledSide(across.length, target.width), scaledSide(down.length, target.height)) : nullptr;
    }
    if (!scaled)
        return nullptr;
    return cut(
        scaled, { (scaled->width() - target.width) / 2, (scaled->height() - target.height) / 2, target.width, target.height });
}

std::shared_ptr<const CGImage> brought(const std::shared_ptr<const CGImage>& image, const ImageTarget& target)
{
    switch (target.fit) {
    case ImageFit::fill:
        return CGImage::fromBitmap(filled(*image, target));
    case ImageFit::fit:
        return CGImage::fromBitmap(fitted(*image, target));
    case ImageFit::stretch:
        return CGImage::fromBitmap(image->rendered(target.width, target.height));
    case ImageFit::natural:
        return image;
    }
    return nullptr;
}

std::shared_ptr<const CGImage> decode(const Data& bytes, const std::string& name, const ImageTarget& target)
{
    const bool isNatural = target.fit == ImageFit::natural;
    const auto image
        = CGImage::decode(bytes, name, isNatural ? std::nullopt : std::optional(PixelSize { target.width, target.height }));
    if (!image)
        return nullptr;
    auto result = brought(image, target);
    if (!result)
        NSLog("image \"" + name + "\" not shown: no memory for " + std::to_string(target.width) + " by "
            + std::to_string(target.height) + " pixels of it");
    return result;
}

} // namespace

std::shared_ptr<const CGImage> decodeImage(const Data& bytes, const std::string& name, const ImageTarget& target)
{
    auto result = decode(bytes, name, target);
    PixelPool::trim(mostPixelsKept);
    return result;
}

} // namespace platform
