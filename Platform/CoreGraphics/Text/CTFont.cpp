#include "Platform/CoreGraphics/Text/CTFont.h"

#include "Platform/CoreGraphics/Text/FontLibrary.h"

#include <map>

namespace platform {

class CTFontManager::GraphicsFont {
public:
    std::shared_ptr<const CTFont::Face> face;
};

std::shared_ptr<const CTFont> CTFont::of(const std::shared_ptr<const Face>& face, CGFloat size)
{
    if (!face || !std::isfinite(size))
        return nullptr;
    size = std::clamp(size, 0.0, 10000.0);
    static auto& made = *new std::map<std::pair<const Face*, CGFloat>, std::shared_ptr<const CTFont>>;
    auto& font = made[{ face.get(), size }];
    if (font)
        return font;
    if (made.size() > 1000) // sizes that run through an animation; those in use live on at their owners
        std::erase_if(made, [](const auto& entry) { return entry.second.use_count() <= 1 && entry.second; });
    std::shared_ptr<CTFont> fresh(new CTFont);
    fresh->face_ = face;
    fresh->name = face->postScriptName;
    fresh->size = size;
    fresh->ascent = face->ascent * size;
    fresh->descent = face->descent * size;
    fresh->leading_ = face->gap * size;
    fresh->cap = face->capHeight * size;
    fresh->x = face->xHeight * size;
    return font = fresh;
}

std::shared_ptr<const CTFont> CTFont::named(const std::string& postScriptName, CGFloat size)
{
    return of(FontLibrary::shared().registered(postScriptName), size);
}

std::shared_ptr<const CTFont> CTFont::system(CGFloat size, FontWeight weight)
{
    return of(FontLibrary::shared().system(int(weight)), std::isfinite(size) ? size : 0);
}

std::shared_ptr<const CTFontManager::GraphicsFont> CTFontManager::graphicsFont(std::vector<std::uint8_t> bytes)
{
    auto face = CTFont::Face::fromBytes(std::move(bytes));
    return face ? std::make_shared<GraphicsFont>(GraphicsFont { std::move(face) }) : nullptr;
}

std::shared_ptr<const CTFontManager::GraphicsFont> CTFontManager::graphicsFontOfFile(const std::string& path)
{
    auto face = CTFont::Face::fromFile(path);
    return face ? std::make_shared<GraphicsFont>(GraphicsFont { std::move(face) }) : nullptr;
}

bool CTFontManager::registerGraphicsFont(const std::shared_ptr<const GraphicsFont>& font)
{
    return font && FontLibrary::shared().add(font->face);
}

bool CTFontManager::isRegistered(const std::string& postScriptName)
{
    return FontLibrary::shared().registered(postScriptName) != nullptr;
}

void CTFontManager::setSystemFontsFolder(const std::string& path) { FontLibrary::shared().setFolder(path); }

} // namespace platform
