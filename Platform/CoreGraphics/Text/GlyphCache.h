#pragma once

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/CoreGraphics/Text/FontFace.h"
#include "Platform/CoreGraphics/Text/TwoGenerationCache.h"

namespace platform {

// A glyph's picture. `left` and `top` lead from the pixel of the glyph's place on the baseline to the picture's corner.
struct GlyphImage {
    int left = 0, top = 0, width = 0, height = 0;
    std::unique_ptr<std::uint8_t[]> coverage; // null for a coloured glyph and for one without a picture
    std::shared_ptr<const Bitmap> colors;

    pixels::CoverageView view() const { return { coverage.get(), width, width, height }; }
};

// The pictures of the glyphs that were drawn, and of their blurred shadows. Main thread.
class GlyphCache {
public:
    static constexpr int subpixels = 4; // horizontal places between two pixels

    static GlyphCache& shared();

    // `pixelSize`: of the font. `sigma`: pixels of blur, 0 for none. Valid until the next call.
    const GlyphImage& image(const CTFont::Face& face, std::uint32_t glyph, double pixelSize, int subpixel, double sigma = 0);
    std::size_t bytes() const { return images.cost(); }

private:
    struct Key {
        std::uint32_t face, glyph;
        std::int32_t size; // 1/64 pixel
        std::uint16_t sigma; // 1/64 pixel
        std::uint16_t subpixel;
        bool operator==(const Key&) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key& key) const;
    };

    GlyphCache();

    TwoGenerationCache<Key, GlyphImage, Hash> images;
};

} // namespace platform
