#include "Platform/CoreGraphics/Text/TextDrawing.h"

#include "Platform/CoreGraphics/Text/GlyphCache.h"
#include "Platform/CoreGraphics/Text/TextLayoutImpl.h"

#include <algorithm>

namespace platform {
namespace {
constexpr double largestPlace = 1e7; // pixels; keeps what lies far outside within whole numbers

bool isOpaque(std::uint32_t color) { return color >> 24 == 255; }

int whole(double v) { return int(std::lround(std::clamp(v, -largestPlace, largestPlace))); }

// A glyph's place: a pixel on the baseline and quarters of one to its right.
struct Place {
    int x, y, subpixel;
};

class Drawing {
public:
    Drawing(const TextLayout& text, const TextPlacement& where)
        : layout(text.implementation())
        , placement(where)
    {
    }

    int baseline(std::size_t line) const { return whole(placement.origin.y + layout.lines[line].baseline * placement.scale); }

    Place placeOf(const GlyphRun& run, const PlacedGlyph& glyph, int baselineY) const
    {
        const double x = placement.origin.x + (run.x + glyph.x) * placement.scale;
        const int quarters = whole(x * GlyphCache::subpixels);
        const int subpixel = quarters & (GlyphCache::subpixels - 1);
        return { (quarters - subpixel) / GlyphCache::subpixels, baselineY + whole(glyph.y * placement.scale), subpixel };
    }

    // The glyph at its place, with that much blur. Coloured glyphs have one picture for all quarters.
    template <typename Use> void forEachGlyph(std::size_t line, double sigma, Use use) const
    {
        auto& cache = GlyphCache::shared();
        const int y = baseline(line);
        for (const auto& run : layout.runs[line]) {
            for (const auto& glyph : run.glyphs) {
                const Place place = placeOf(run, glyph, y);
                const auto& image = cache.image(*run.face, glyph.id, run.size * placement.scale, place.subpixel, sigma);
                if (image.width > 0)
                    use(run, image, place.x + image.left, place.y + image.top);
            }
        }
    }

    PixelRect bounds(std::size_t line, double sigma) const
    {
        PixelRect box;
        forEachGlyph(line, sigma, [&](const GlyphRun&, const GlyphImage& image, int x, int y) {
            box = box.unionWith({ x, y, image.width, image.height });
        });
        return box;
    }

    // Glyphs may reach out of their line, marks of some scripts far.
    bool mayTouch(std::size_t line, const PixelRect& clip, double reach) const
    {
        const double margin = layout.lineHeight * 2 * placement.scale + reach;
        const int y = baseline(line);
        return y + margin >= clip.y && y - margin <= clip.maxY();
    }

    PixelRect underlineOf(const GlyphRun& run, std::size_t line) const
    {
        const double pixels = run.size * placement.scale;
        const int left = whole(placement.origin.x + run.x * placement.scale);
        const int right = whole(placement.origin.x + (run.x + run.width) * placement.scale);
        return { left, baseline(line) + std::max(whole(run.face->underlineTop * pixels), 1), right - left,
            std::max(whole(run.face->underlineThickness * pixels), 1) };
    }

    double shadowSigma() const { return layout.shadow->radius / 2 * placement.scale; }
    int shadowX() const { return whole(layout.shadow->offset.width * placement.scale); }
    int shadowY() const { return whole(layout.shadow->offset.height * placement.scale); }
    bool hasShadow() const { return layout.shadow && layout.shadow->color.alpha > 0; }

    // A blur is linear: blurred glyphs add up to the blur of the whole text where glyphs do not overlap.
    void drawShadow(Bitmap& target, const PixelRect& clip, std::size_t line) const
    {
        const auto moved = clip.offsetBy(-shadowX(), -shadowY());
        const auto box = bounds(line, shadowSigma()).intersection(moved);
        const auto sum = Bitmap::make(box.width, box.height, PixelFormat::alpha, true);
        if (!sum)
            return;
        forEachGlyph(line, shadowSigma(), [&](const GlyphRun&, const GlyphImage& image, int x, int y) {
            if (image.coverage)
                pixels::addCoverage(*sum, sum->bounds(), image.view(), x - box.x, y - box.y);
        });
        const auto color = pixels::premultiplied(layout.shadow->color, placement.opacity);
        pixels::blendCoverage(
            target, clip, { sum->data(), sum->stride(), box.width, box.height }, box.x + shadowX(), box.y + shadowY(), color);
    }

    void drawLine(Bitmap& target, const PixelRect& clip, std::size_t line) const
    {
        const auto opacity = unsigned(std::lround(std::clamp(placement.opacity, 0.0, 1.0) * 255));
        std::vector<std::size_t> translucent; // styles of the line
        std::size_t style = layout.styles.size();
        std::uint32_t color = 0;
        forEachGlyph(line, 0, [&](const GlyphRun& run, const GlyphImage& image, int x, int y) {
            if (image.colors) {
                pixels::blendPixels(target, clip, *image.colors, x, y, opacity);
                return;
            }
            if (run.style != style) {
                style = run.style;
                color = pixels::premultiplied(layout.styles[style].color, placement.opacity);
            }
            if (isOpaque(color))
                pixels::blendCoverage(target, clip, image.view(), x, y, color);
            else if (std::ranges::find(translucent, style) == translucent.end())
                translucent.push_back(style);
        });
        for (const std::size_t each : translucent)
            drawTranslucent(target, clip, line, each);
        for (const auto& run : layout.runs[line]) {
            if (layout.styles[run.style].underline)
                drawUnderline(target, clip, underlineOf(run, line), layout.styles[run.style].color);
        }
    }

    // Joined letters lie over one another at their joints, which would shine through: what they cover is added up first.
    void drawTranslucent(Bitmap& target, const PixelRect& clip, std::size_t line, std::size_t style) const
    {
        const auto box = bounds(line, 0).intersection(clip);
        const auto sum = Bitmap::make(box.width, box.height, PixelFormat::alpha, true);
        if (!sum)
            return;
        forEachGlyph(line, 0, [&](const GlyphRun& run, const GlyphImage& image, int x, int y) {
            if (run.style == style && image.coverage)
                pixels::addCoverage(*sum, sum->bounds(), image.view(), x - box.x, y - box.y);
        });
        const auto color = pixels::premultiplied(layout.styles[style].color, placement.opacity);
        pixels::blendCoverage(target, clip, { sum->data(), sum->stride(), box.width, box.height }, box.x, box.y, color);
    }

    void drawUnderline(Bitmap& target, const PixelRect& clip, const PixelRect& stroke, const CGColor& color) const
    {
        const std::vector<std::uint8_t> full(std::size_t(std::max(stroke.width, 0)), 255);
        pixels::blendCoverage(target, clip, { full.data(), 0, stroke.width, stroke.height }, stroke.x, stroke.y,
            pixels::premultiplied(color, placement.opacity));
    }

    const TextLayout::Impl& layout;
    const TextPlacement& placement;
};
}

PixelRect textBounds(const TextLayout& text, const TextPlacement& placement)
{
    const Drawing drawing(text, placement);
    PixelRect all;
    for (std::size_t line = 0; line < drawing.layout.lines.size(); ++line) {
        all = all.unionWith(drawing.bounds(line, 0));
        if (drawing.hasShadow())
            all = all.unionWith(drawing.bounds(line, drawing.shadowSigma()).offsetBy(drawing.shadowX(), drawing.shadowY()));
        for (const auto& run : drawing.layout.runs[line]) {
            if (drawing.layout.styles[run.style].underline)
                all = all.unionWith(drawing.underlineOf(run, line));
        }
    }
    return all;
}

void drawText(Bitmap& target, const PixelRect& clip, const TextLayout& text, const TextPlacement& placement)
{
    const Drawing drawing(text, placement);
    auto area = clip.intersection(target.bounds());
    if (const auto width = drawing.layout.clipWidth) {
        const int left = whole(placement.origin.x), right = whole(placement.origin.x + *width * placement.scale);
        area = area.intersection({ left, area.y, right - left, area.height });
    }
    const std::size_t lines = drawing.layout.lines.size();
    const double reach = drawing.hasShadow() ? 3 * drawing.shadowSigma() + std::abs(drawing.shadowY()) : 0;
    // All shadows lie under all letters.
    for (std::size_t line = 0; drawing.hasShadow() && line < lines; ++line) {
        if (drawing.mayTouch(line, area, reach))
            drawing.drawShadow(target, area, line);
    }
    for (std::size_t line = 0; line < lines; ++line) {
        if (drawing.mayTouch(line, area, 0))
            drawing.drawLine(target, area, line);
    }
}

} // namespace platform
