#include "Platform/UIKit/TextPicture.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/Text/TwoGenerationCache.h"
#include "Platform/Foundation/Text.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace platform {

namespace {
constexpr CGFloat sideOverhang = 2; // points; glyphs reach that far over their advance
constexpr char32_t firstTallCharacter = 0x300; // from here on scripts and marks may be taller than the line's font
constexpr double tallOverhang = 0.35; // of the line height
constexpr CGFloat tallestPicture = 512; // points, whole pixels at every scale; some 7 MB on a phone
constexpr std::size_t keptPictures = 256; // without their pixels

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

std::shared_ptr<const CGImage> imageOf(const std::shared_ptr<const TextLayout>& layout, const CGRect& rect)
{
    return CGImage::fromDrawing(rect.width, rect.height, [layout, rect](int width, int height) -> std::shared_ptr<const Bitmap> {
        auto pixels = Bitmap::make(width, height, PixelFormat::argb, true);
        if (!pixels)
            return nullptr;
        CGContext context(*pixels, CGAffineTransform::scale(width / rect.width, height / rect.height));
        context.drawText(*layout, { -rect.x, -rect.y });
        pixels->noteExtents();
        return pixels;
    });
}

struct PictureKey {
    const TextLayout* layout;
    CGFloat scale;
    bool operator==(const PictureKey&) const = default;
    struct Hash {
        std::size_t operator()(const PictureKey& key) const
        {
            return std::hash<const TextLayout*> {}(key.layout) ^ std::hash<CGFloat> {}(key.scale);
        }
    };
};

struct KeptPicture {
    std::shared_ptr<const TextLayout> layout; // so that its address goes on naming it
    TextPicture picture;
};
}

TextPicture textPicture(const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale)
{
    static TwoGenerationCache<PictureKey, KeptPicture, PictureKey::Hash> kept(keptPictures);
    const PictureKey key { layout.get(), scale };
    if (const auto* found = kept.find(key))
        return found->picture;
    const CGRect lines = linesRect(*layout, scale);
    if (lines.isEmpty())
        return {};
    const CGRect rect = paddedRect(lines, paragraph, scale);
    return kept.insert(key, { layout, { imageOf(layout, rect), rect } }, 1)->picture;
}

std::vector<TextPicture> textPictures(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale)
{
    TextPicture whole = textPicture(layout, paragraph, scale);
    if (!whole.image)
        return {};
    if (whole.rect.height <= tallestPicture)
        return { std::move(whole) };
    std::vector<TextPicture> pieces;
    for (CGFloat y = whole.rect.y; y < whole.rect.maxY(); y += tallestPicture) {
        const CGRect rect { whole.rect.x, y, whole.rect.width, std::min(tallestPicture, whole.rect.maxY() - y) };
        pieces.push_back({ imageOf(layout, rect), rect });
    }
    return pieces;
}

TextPicture textPicturePart(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale, CGFloat from, CGFloat to)
{
    const CGRect lines = linesRect(*layout, scale);
    if (lines.isEmpty())
        return {};
    CGRect rect = paddedRect(lines, paragraph, scale);
    const CGFloat left = from <= lines.x ? rect.x : from, right = to >= lines.maxX() ? rect.maxX() : to;
    rect.x = left;
    rect.width = right - left;
    return { imageOf(layout, rect), rect };
}

CGRect linesRect(const TextLayout& layout, CGFloat scale)
{
    CGRect pixels;
    for (const TextLayout::Line& line : layout.lines())
        pixels = pixels.unionWith({ line.rect.x * scale, 0, line.rect.width * scale, layout.size().height * scale });
    const PixelRect whole = PixelRect::around(pixels);
    return { whole.x / scale, 0, whole.width / scale, whole.height / scale };
}

bool isPlainlyColored(std::string_view text) { return !anyCharacter(text, mayBeColored); }

} // namespace platform
