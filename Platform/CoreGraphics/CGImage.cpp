#include "Platform/CoreGraphics/CGImage.h"

#include "Platform/CoreGraphics/ImageCodecs.h"
#include "Platform/CoreGraphics/Resampling.h"
#include "Platform/Foundation/NSLog.h"

#include <atomic>
#include <utility>

namespace platform {
namespace {
std::uint64_t nextId()
{
    static std::atomic<std::uint64_t> last { 0 };
    return ++last;
}

// Coverage as a black picture, so that it can be scaled and tinted like any other.
std::shared_ptr<const Bitmap> colored(std::shared_ptr<const Bitmap> pixels)
{
    if (!pixels || pixels->format() != PixelFormat::alpha)
        return pixels;
    auto result = Bitmap::make(pixels->width(), pixels->height(), PixelFormat::argb);
    for (int y = 0; result && y < result->height(); ++y) {
        for (int x = 0; x < result->width(); ++x)
            result->row(y)[x] = std::uint32_t(pixels->alphaRow(y)[x]) << 24;
    }
    return result;
}

std::shared_ptr<const Bitmap> computed(const LazyPixels& pixels)
{
    auto result = Bitmap::make(pixels.width(), pixels.height(), PixelFormat::xrgb);
    const auto reader = pixels.reader();
    for (int y = 0; result && y < result->height(); ++y)
        reader->read(result->row(y), 0, y, result->width());
    return result;
}
}

std::shared_ptr<const CGImage> CGImage::fromBitmap(std::shared_ptr<const Bitmap> pixels)
{
    pixels = colored(std::move(pixels));
    if (!pixels)
        return nullptr;
    auto image = std::make_shared<CGImage>();
    image->id_ = nextId();
    image->width_ = pixels->width();
    image->height_ = pixels->height();
    image->pixels_ = std::move(pixels);
    return image;
}

std::shared_ptr<const CGImage> CGImage::fromLazyPixels(std::shared_ptr<const LazyPixels> pixels)
{
    if (!pixels || pixels->width() <= 0 || pixels->height() <= 0)
        return nullptr;
    auto image = std::make_shared<CGImage>();
    image->id_ = nextId();
    image->width_ = pixels->width();
    image->height_ = pixels->height();
    image->lazy = std::move(pixels);
    return image;
}

std::shared_ptr<const CGImage> CGImage::fromDrawing(double width, double height, Render render)
{
    auto image = std::make_shared<CGImage>();
    image->id_ = nextId();
    image->width_ = width >= 1 ? width : 1;
    image->height_ = height >= 1 ? height : 1;
    image->render = std::move(render);
    return image;
}

std::shared_ptr<const CGImage> CGImage::decode(
    const std::vector<std::uint8_t>& bytes, const std::string& name, const std::optional<PixelSize>& enough)
{
    const codecs::Bytes input { bytes.data(), bytes.size() };
    std::string reason;
    std::shared_ptr<const CGImage> image;
    if (bytes.empty())
        reason = "file has 0 bytes";
    else if (codecs::looksLikePNG(input))
        image = fromBitmap(codecs::readPNG(input, reason));
    else if (codecs::looksLikeJPEG(input))
        image = fromBitmap(codecs::readJPEG(input, enough, reason));
    else if (codecs::looksLikeSVG(input))
        image = codecs::readSVG(input, reason);
    else
        reason = "neither PNG, JPEG nor SVG";
    if (!image)
        NSLog("image \"" + name + "\" not shown: " + reason);
    return image;
}

const std::shared_ptr<const Bitmap>& CGImage::pixels() const
{
    if (lazy)
        std::call_once(isComputed, [this] { pixels_ = computed(*lazy); });
    return pixels_;
}

std::shared_ptr<const Bitmap> CGImage::rendered(int width, int height) const
{
    if (width <= 0 || height <= 0 || double(width) * height > codecs::maximumPixels)
        return nullptr;
    if (render)
        return render(width, height);
    const auto& own = pixels();
    if (!own || (own->width() == width && own->height() == height))
        return own;
    return pixels::resampled(*own, width, height);
}

} // namespace platform
