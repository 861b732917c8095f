#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

enum class FontWeight : unsigned short { regular = 400, medium = 500, semibold = 600, bold = 700 };

// A typeface at a size in points. Cheap to copy by pointer; equal name and size give the same object.
class CTFont {
public:
    // The registered font of that PostScript name; null when no such font is registered (case matters).
    static std::shared_ptr<const CTFont> named(const std::string& postScriptName, CGFloat size);
    // The system family, which every machine gets.
    static std::shared_ptr<const CTFont> system(CGFloat size, FontWeight weight);

    const std::string& postScriptName() const { return name; }
    CGFloat pointSize() const { return size; }
    CGFloat ascender() const { return ascent; } // points above the baseline, positive
    CGFloat descender() const { return descent; } // points below the baseline, positive
    CGFloat lineHeight() const { return ascent + descent + leading_; }
    CGFloat leading() const { return leading_; }
    CGFloat capHeight() const { return cap; }
    CGFloat xHeight() const { return x; }

    struct Face; // the font file behind it
    const std::shared_ptr<const Face>& face() const { return face_; }

private:
    CTFont() = default;
    static std::shared_ptr<const CTFont> of(const std::shared_ptr<const Face>& face, CGFloat size);

    std::shared_ptr<const Face> face_;
    std::string name;
    CGFloat size = 0, ascent = 0, descent = 0, leading_ = 0, cap = 0, x = 0;
};

// Font files made known to the process. Main thread.
class CTFontManager {
public:
    // A font made of a TrueType or OpenType file's bytes; null when they are none.
    class GraphicsFont;
    static std::shared_ptr<const GraphicsFont> graphicsFont(std::vector<std::uint8_t> bytes);
    // The same of a file, which is mapped rather than read: at start-up that saves copying tables that nothing asks for. The file
    // must not change while the process lives.
    static std::shared_ptr<const GraphicsFont> graphicsFontOfFile(const std::string& path);
    // False when a font of that PostScript name is already registered.
    static bool registerGraphicsFont(const std::shared_ptr<const GraphicsFont>& font);
    static bool isRegistered(const std::string& postScriptName);
    // Where the system family and the fallback fonts lie, with the index file fonts.txt. Set by the host before the first text;
    // default: SystemFonts beside the executable.
    static void setSystemFontsFolder(const std::string& path);
};

} // namespace platform
