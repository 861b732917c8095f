#include "Platform/CoreGraphics/ImageCodecs.h"
#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/Foundation/NSLog.h"

#include <bit>
#include <cstring>
#include <png.h>

namespace platform {
namespace {
// Our words as bytes in memory.
constexpr auto wordFormat = std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;
constexpr std::uint8_t signature[] = { 0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n' };

struct Image : png_image {
    Image()
        : png_image {}
    {
        version = PNG_IMAGE_VERSION;
    }
    ~Image() { png_image_free(this); }
};

// Walks the chunks up to the closing one, because the library is content with the last row.
bool isWhole(codecs::Bytes bytes)
{
    for (std::size_t at = sizeof signature; at + 12 <= bytes.count;) {
        const auto* chunk = bytes.data + at;
        const std::size_t length
            = std::size_t(chunk[0]) << 24 | std::size_t(chunk[1]) << 16 | std::size_t(chunk[2]) << 8 | chunk[3];
        if (std::memcmp(chunk + 4, "IEND", 4) == 0)
            return true;
        at += length + 12;
    }
    return false;
}
}

bool codecs::looksLikePNG(Bytes bytes)
{
    return bytes.count >= sizeof signature && std::memcmp(bytes.data, signature, sizeof signature) == 0;
}

std::shared_ptr<Bitmap> codecs::readPNG(Bytes bytes, std::string& reason)
{
    Image image;
    if (!png_image_begin_read_from_memory(&image, bytes.data, bytes.count)) {
        reason = image.message;
        return nullptr;
    }
    if (!isWhole(bytes)) {
        reason = "file breaks off";
        return nullptr;
    }
    const bool opaque = !(image.format & PNG_FORMAT_FLAG_ALPHA);
    const auto tooLarge = double(image.width) * image.height > maximumPixels;
    auto bitmap
        = tooLarge ? nullptr : Bitmap::make(int(image.width), int(image.height), opaque ? PixelFormat::xrgb : PixelFormat::argb);
    if (!bitmap) {
        reason = "picture of " + std::to_string(image.width) + " by " + std::to_string(image.height) + " pixels is too large";
        return nullptr;
    }
    image.format = wordFormat;
    if (!png_image_finish_read(&image, nullptr, bitmap->data(), bitmap->stride(), nullptr)) {
        reason = image.message;
        return nullptr;
    }
    for (int y = 0; !opaque && y < bitmap->height(); ++y)
        pixels::premultiply(bitmap->row(y), bitmap->width());
    return bitmap;
}

bool writePNG(const Bitmap& bitmap, const std::string& path)
{
    const int width = bitmap.width(), height = bitmap.height();
    Image image;
    image.width = png_uint_32(width);
    image.height = png_uint_32(height);
    image.flags = PNG_IMAGE_FLAG_FAST;
    int written = 0;
    if (bitmap.format() == PixelFormat::alpha) {
        image.format = PNG_FORMAT_GRAY;
        written = png_image_write_to_file(&image, path.c_str(), 0, bitmap.data(), bitmap.stride(), nullptr);
    } else if (const auto copy = Bitmap::make(width, height, PixelFormat::argb)) {
        const bool opaque = bitmap.format() == PixelFormat::xrgb;
        image.format = opaque ? PNG_FORMAT_RGB : wordFormat;
        const int stride = opaque ? 3 * width : copy->stride();
        for (int y = 0; y < height; ++y) {
            if (opaque) {
                auto* to = copy->data() + std::ptrdiff_t(y) * stride; // three bytes a pixel, rows close together
                for (int x = 0; x < width; ++x, to += 3) {
                    const auto word = bitmap.row(y)[x];
                    to[0] = std::uint8_t(word >> 16);
                    to[1] = std::uint8_t(word >> 8);
                    to[2] = std::uint8_t(word);
                }
            } else {
                std::memcpy(copy->row(y), bitmap.row(y), std::size_t(width) * 4);
                pixels::unpremultiply(copy->row(y), width);
            }
        }
        written = png_image_write_to_file(&image, path.c_str(), 0, copy->data(), stride, nullptr);
    }
    if (!written)
        NSLog("picture \"" + path + "\" not written: " + (image.message[0] ? image.message : "out of memory"));
    return written != 0;
}

} // namespace platform
