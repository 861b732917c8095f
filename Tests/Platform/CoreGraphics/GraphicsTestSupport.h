#pragma once

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/CoreGraphics/Text/FontFace.h"
#include "Platform/CoreGraphics/Text/TextLayoutImpl.h"
#include "Platform/Foundation/Folders.h"
#include "Tests/Platform/Foundation/QuietTest.h"

#include <fstream>
#include <iterator>
#include <limits>

namespace platform::testing {

inline std::vector<std::uint8_t> fileBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline std::vector<std::uint8_t> kitFontBytes(const std::string& name)
{
    return fileBytes(Folders::executable() + "/MivoraUIKit.bundle/" + name + ".ttf");
}

// A font of the kit's bundle, registered when it is first asked for.
inline std::shared_ptr<const CTFont> kitFont(const std::string& name, double size)
{
    if (!CTFontManager::isRegistered(name))
        CTFontManager::registerGraphicsFont(CTFontManager::graphicsFont(kitFontBytes(name)));
    return CTFont::named(name, size);
}

inline TextParagraph paragraph(const std::string& text, int numberOfLines = 1)
{
    TextParagraph result;
    result.font = kitFont("SourceSansPro-Regular", 16);
    result.runs = { TextRun { text, nullptr, std::nullopt, {}, false } };
    result.numberOfLines = numberOfLines;
    return result;
}

constexpr double unlimited = std::numeric_limits<double>::infinity();

inline std::shared_ptr<const TextLayout> layoutOf(const TextParagraph& text, double width = unlimited, double maximumHeight = 0)
{
    return TextLayout::make(text, width, 2, maximumHeight);
}

// A line's glyphs from left to right: equal texts in equal fonts have equal ones.
inline std::vector<std::uint32_t> glyphs(const TextLayout& layout, std::size_t line = 0)
{
    std::vector<std::uint32_t> ids;
    for (const auto& run : layout.implementation().runs[line]) {
        for (const auto& glyph : run.glyphs)
            ids.push_back(glyph.id);
    }
    return ids;
}

inline std::vector<std::uint32_t> glyphs(const std::string& text) { return glyphs(*layoutOf(paragraph(text))); }
inline double widthOf(const std::string& text) { return layoutOf(paragraph(text))->lines()[0].rect.width; }

// A white picture of that many pixels with the text drawn at the left top, one pixel a point.
inline std::shared_ptr<Bitmap> drawn(const TextParagraph& text, int width, int height, CGPoint origin = {})
{
    auto bitmap = Bitmap::make(width, height, PixelFormat::xrgb);
    CGContext context(*bitmap, {});
    context.fill(CGRect { 0, 0, double(width), double(height) }, CGColor { 1, 1, 1, 1 });
    context.drawText(*layoutOf(text, width), origin);
    return bitmap;
}

// The smallest rectangle around everything that is not white.
inline PixelRect inkOf(const Bitmap& bitmap)
{
    PixelRect ink;
    for (int y = 0; y < bitmap.height(); ++y) {
        for (int x = 0; x < bitmap.width(); ++x) {
            if ((bitmap.row(y)[x] & 0xffffff) != 0xffffff)
                ink = ink.unionWith({ x, y, 1, 1 });
        }
    }
    return ink;
}

inline std::string hex(std::uint32_t word)
{
    char text[16];
    std::snprintf(text, sizeof text, "%08x", word);
    return text;
}

} // namespace platform::testing
