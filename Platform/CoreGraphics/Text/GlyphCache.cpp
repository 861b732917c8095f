#include "Platform/CoreGraphics/Text/GlyphCache.h"

#include "Platform/CoreGraphics/CoverageBlur.h"
#include "Platform/CoreGraphics/Resampling.h"

#include <cstring>
#include <ft2build.h>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace platform {
namespace {
constexpr std::size_t bound = 4 << 20; // bytes
constexpr double largestSize = 4000; // pixels; beyond it glyphs are left out

GlyphImage withCoverage(int left, int top, int width, int height)
{
    GlyphImage image { left, top, width, height, nullptr, nullptr };
    if (width > 0 && height > 0)
        image.coverage = std::make_unique<std::uint8_t[]>(std::size_t(width) * std::size_t(height));
    return image;
}

// An empty frame, for want of a font.
GlyphImage boxImage(double pixelSize)
{
    const int width = std::max(int(pixelSize * 0.5), 3), height = std::max(int(pixelSize * 0.7), 3);
    const int line = std::max(int(pixelSize / 16), 1);
    auto image = withCoverage(line, -height, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool edge = x < line || y < line || x >= width - line || y >= height - line;
            image.coverage[std::size_t(y * width + x)] = edge ? 255 : 0;
        }
    }
    return image;
}

GlyphImage outlineImage(FT_Face font, std::uint32_t glyph, int subpixel)
{
    if (FT_Load_Glyph(font, glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP))
        return {};
    FT_GlyphSlot slot = font->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    FT_Outline_Translate(&slot->outline, subpixel * 64 / GlyphCache::subpixels, 0);
    if (FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL))
        return {};
    const auto& bitmap = slot->bitmap;
    auto image = withCoverage(slot->bitmap_left, -slot->bitmap_top, int(bitmap.width), int(bitmap.rows));
    for (int y = 0; image.coverage && y < image.height; ++y)
        std::memcpy(&image.coverage[std::size_t(y * image.width)], bitmap.buffer + y * bitmap.pitch, std::size_t(image.width));
    return image;
}

// The strike to shrink: the smallest that is not smaller than asked for, else the largest.
int bestStrike(FT_Face font, double pixelSize)
{
    int best = 0;
    for (int i = 1; i < font->num_fixed_sizes; ++i) {
        const auto size = double(font->available_sizes[i].y_ppem) / 64, known = double(font->available_sizes[best].y_ppem) / 64;
        if (known < pixelSize ? size > known : size >= pixelSize && size < known)
            best = i;
    }
    return best;
}

GlyphImage strikeImage(FT_Face font, std::uint32_t glyph, double pixelSize)
{
    const int strike = bestStrike(font, pixelSize);
    if (FT_Select_Size(font, strike) || FT_Load_Glyph(font, glyph, FT_LOAD_COLOR | FT_LOAD_NO_HINTING))
        return {};
    FT_GlyphSlot slot = font->glyph;
    const auto& source = slot->bitmap;
    if (slot->format != FT_GLYPH_FORMAT_BITMAP || source.pixel_mode != FT_PIXEL_MODE_BGRA)
        return {};
    const auto original = Bitmap::make(int(source.width), int(source.rows), PixelFormat::argb);
    for (int y = 0; original && y < original->height(); ++y) {
        const auto* bytes = source.buffer + y * source.pitch;
        for (int x = 0; x < original->width(); ++x, bytes += 4)
            original->row(y)[x]
                = std::uint32_t(bytes[3]) << 24 | std::uint32_t(bytes[2]) << 16 | std::uint32_t(bytes[1]) << 8 | bytes[0];
    }
    const double scale = pixelSize * 64 / double(font->available_sizes[strike].y_ppem);
    const auto scaled = [scale](int v) { return int(std::lround(v * scale)); };
    const int width = std::max(scaled(int(source.width)), 1), height = std::max(scaled(int(source.rows)), 1);
    auto picture = original ? pixels::resampled(*original, width, height) : nullptr;
    if (!picture)
        return {};
    return { scaled(slot->bitmap_left), -scaled(slot->bitmap_top), width, height, nullptr, std::move(picture) };
}

GlyphImage blurred(const GlyphImage& sharp, double sigma)
{
    const int reach = int(std::ceil(3 * sigma));
    if (sharp.width == 0 || sharp.height == 0)
        return {};
    const auto bitmap = Bitmap::make(sharp.width + 2 * reach, sharp.height + 2 * reach, PixelFormat::alpha, true);
    if (!bitmap)
        return {};
    for (int y = 0; y < sharp.height; ++y) {
        for (int x = 0; x < sharp.width; ++x) {
            bitmap->alphaRow(y + reach)[x + reach]
                = sharp.colors ? std::uint8_t(sharp.colors->row(y)[x] >> 24) : sharp.coverage[std::size_t(y * sharp.width + x)];
        }
    }
    pixels::blurCoverage(*bitmap, sigma);
    auto image = withCoverage(sharp.left - reach, sharp.top - reach, bitmap->width(), bitmap->height());
    for (int y = 0; y < image.height; ++y)
        std::memcpy(&image.coverage[std::size_t(y * image.width)], bitmap->alphaRow(y), std::size_t(image.width));
    return image;
}

GlyphImage draw(const CTFont::Face& face, std::uint32_t glyph, double pixelSize, int subpixel)
{
    if (face.isBoxes())
        return glyph ? boxImage(pixelSize) : GlyphImage {};
    FT_Face font = face.outlines();
    if (!font)
        return {};
    if (!FT_IS_SCALABLE(font))
        return strikeImage(font, glyph, pixelSize);
    const auto size = FT_F26Dot6(std::lround(pixelSize * 64));
    return FT_Set_Char_Size(font, size, size, 72, 72) ? GlyphImage {} : outlineImage(font, glyph, subpixel);
}
}

GlyphCache& GlyphCache::shared()
{
    static auto& cache = *new GlyphCache;
    return cache;
}

GlyphCache::GlyphCache()
    : images(bound)
{
}

std::size_t GlyphCache::Hash::operator()(const Key& key) const
{
    const auto mixed = (std::uint64_t(key.face) << 40 ^ std::uint64_t(key.glyph) << 16 ^ std::uint64_t(key.size) << 4
                           ^ std::uint64_t(key.sigma) << 2 ^ key.subpixel)
        * 0x9e3779b97f4a7c15;
    return std::size_t(mixed ^ mixed >> 32);
}

const GlyphImage& GlyphCache::image(const CTFont::Face& face, std::uint32_t glyph, double pixelSize, int subpixel, double sigma)
{
    static const GlyphImage nothing;
    if (!(pixelSize > 0 && pixelSize <= largestSize))
        return nothing;
    const auto steps = [](double v) { return std::lround(std::min(v, 1000.0) * 64); };
    const Key key { face.id, glyph, std::int32_t(std::lround(pixelSize * 64)), std::uint16_t(steps(sigma)),
        std::uint16_t(subpixel) };
    if (const auto* known = images.find(key))
        return *known;
    auto made = key.sigma ? blurred(image(face, glyph, pixelSize, subpixel), sigma) : draw(face, glyph, pixelSize, subpixel);
    const std::size_t pixels = std::size_t(made.width) * std::size_t(made.height);
    const std::size_t cost = sizeof(Key) + sizeof(GlyphImage) + 64 + pixels * (made.colors ? 4 : 1);
    return *images.insert(key, std::move(made), cost);
}

} // namespace platform
