#include "Platform/UIKit/TextDrawing.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/Foundation/Text.h"

#include <algorithm>
#include <cmath>
#include <list>

namespace platform {

namespace {
constexpr CGFloat sideOverhang = 2; // points; glyphs reach that far over their advance
constexpr char32_t firstTallCharacter = 0x300; // from here on scripts and marks may be taller than the line's font
constexpr double tallOverhang = 0.35; // of the line height
constexpr std::size_t keptDrawings = 256; // no pixels in them

// The characters that emoji are made of: pictures, symbols that have a coloured form, and what joins or selects them.
bool mayBeColored(char32_t c)
{
    return (c >= 0x2190 && c <= 0x2bff) || (c >= 0x1f000 && c < 0x20000) || c == 0xfe0f || c == 0x200d || c == 0x20e3
        || c == 0x3030 || c == 0x303d || c == 0x3297 || c == 0x3299 || (c >= 0xe0020 && c <= 0xe007f);
}

template <typename Matches> bool anyCharacter(std::string_view text, Matches matches)
{
    for (std::size_t offset = 0; offset < text.size();) {
        if (static_cast<unsigned char>(text[offset]) < 0x80) {
            ++offset; // none of the questions asked here is about ASCII
            continue;
        }
        const CodePoint character = codePointAt(text, offset);
        if (matches(character.value))
            return true;
        offset += std::max<std::size_t>(character.length, 1);
    }
    return false;
}

CGRect paddedRect(const CGRect& lines, const TextParagraph& paragraph, CGFloat scale)
{
    const bool isTall = std::any_of(paragraph.runs.begin(), paragraph.runs.end(),
        [](const TextRun& run) { return anyCharacter(run.text, [](char32_t c) { return c >= firstTallCharacter; }); });
    CGFloat dx = sideOverhang, dy = isTall ? tallOverhang * paragraph.font->lineHeight() : 0;
    if (const auto& shadow = paragraph.shadow) {
        const CGFloat reach = 1.5 * shadow->radius; // three sigmas
        dx += reach + std::abs(shadow->offset.width);
        dy += reach + std::abs(shadow->offset.height);
    }
    dx = std::ceil(dx * scale) / scale;
    dy = std::ceil(dy * scale) / scale;
    return lines.insetBy(-dx, -dy);
}

std::shared_ptr<const CGImage> picture(const std::shared_ptr<const TextLayout>& layout, const CGRect& rect, TextColoring coloring)
{
    const PixelFormat format = coloring == TextColoring::coverage ? PixelFormat::alpha : PixelFormat::argb;
    return CGImage::fromDrawing(
        rect.width, rect.height, [layout, rect, format](int width, int height) -> std::shared_ptr<const Bitmap> {
            auto pixels = Bitmap::make(width, height, format, true);
            if (!pixels)
                return nullptr;
            CGContext context(*pixels, CGAffineTransform::scale(width / rect.width, height / rect.height));
            context.drawText(*layout, { -rect.x, -rect.y });
            return pixels;
        });
}

struct KeptDrawing {
    std::shared_ptr<const TextLayout> layout; // kept, so that its address names it
    TextColoring coloring;
    CGFloat scale;
    TextDrawing drawing;
};
}

TextDrawing textDrawing(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, TextColoring coloring, CGFloat scale)
{
    static std::list<KeptDrawing> kept; // the last used first
    const auto found = std::find_if(kept.begin(), kept.end(),
        [&](const KeptDrawing& entry) { return entry.layout == layout && entry.coloring == coloring && entry.scale == scale; });
    if (found != kept.end()) {
        kept.splice(kept.begin(), kept, found);
        return kept.front().drawing;
    }
    const CGRect lines = linesRect(*layout, scale);
    if (lines.isEmpty())
        return {};
    const CGRect rect = paddedRect(lines, paragraph, scale);
    kept.push_front({ layout, coloring, scale, { picture(layout, rect, coloring), rect } });
    if (kept.size() > keptDrawings)
        kept.pop_back();
    return kept.front().drawing;
}

CGRect linesRect(const TextLayout& layout, CGFloat scale)
{
    CGRect result;
    for (const TextLayout::Line& line : layout.lines())
        result = result.unionWith({ line.rect.x, 0, line.rect.width, layout.size().height });
    const CGFloat left = std::floor(result.x * scale) / scale, right = std::ceil(result.maxX() * scale) / scale;
    const CGFloat bottom = std::ceil(result.maxY() * scale) / scale;
    return { left, 0, right - left, bottom };
}

bool isPlainlyColored(std::string_view text) { return !anyCharacter(text, mayBeColored); }

} // namespace platform
