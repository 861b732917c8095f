#include "Platform/CoreGraphics/Text/FontFace.h"

#include <fcntl.h>
#include <ft2build.h>
#include <hb-ot.h>
#include <hb.h>
#include <span>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include FT_FREETYPE_H

namespace platform {

// The file's content, owned or mapped.
struct CTFont::Face::Bytes {
    std::vector<std::uint8_t> owned;
    std::span<const std::uint8_t> mapped;

    ~Bytes()
    {
        if (!mapped.empty())
            munmap(const_cast<std::uint8_t*>(mapped.data()), mapped.size());
    }
    std::span<const std::uint8_t> view() const { return mapped.empty() ? std::span(owned) : mapped; }
};

namespace {
FT_Library outlineLibrary()
{
    static FT_Library library = [] {
        FT_Library made = nullptr;
        FT_Init_FreeType(&made);
        return made;
    }();
    return library;
}

std::string nameOf(hb_face_t* face)
{
    char text[128];
    unsigned length = sizeof text;
    hb_ot_name_get_utf8(face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &length, text);
    return std::string(text, std::min<std::size_t>(length, sizeof text - 1));
}

bool isInvisible(char32_t c)
{
    return (c >= 0x200b && c <= 0x200f) || (c >= 0x202a && c <= 0x202e) || (c >= 0x2060 && c <= 0x2069) || c == 0x00ad
        || c == 0xfeff || (c >= 0xfe00 && c <= 0xfe0f) || (c >= 0xe0000 && c <= 0xe0fff);
}

bool hasCharacters(hb_face_t* face)
{
    hb_set_t* characters = hb_set_create();
    hb_face_collect_unicodes(face, characters);
    const bool any = !hb_set_is_empty(characters);
    hb_set_destroy(characters);
    return any;
}
}

std::shared_ptr<const CTFont::Face> CTFont::Face::fromBytes(std::vector<std::uint8_t> data)
{
    auto bytes = std::make_unique<Bytes>();
    bytes->owned = std::move(data);
    return open(std::move(bytes));
}

std::shared_ptr<const CTFont::Face> CTFont::Face::fromFile(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return nullptr;
    struct stat status { };
    void* address = MAP_FAILED;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
        address = mmap(nullptr, std::size_t(status.st_size), PROT_READ, MAP_PRIVATE, file, 0);
    ::close(file);
    if (address == MAP_FAILED)
        return nullptr;
    auto bytes = std::make_unique<Bytes>();
    bytes->mapped = { static_cast<const std::uint8_t*>(address), std::size_t(status.st_size) };
    return open(std::move(bytes));
}

std::shared_ptr<const CTFont::Face> CTFont::Face::open(std::unique_ptr<Bytes> bytes)
{
    const auto view = bytes->view();
    hb_blob_t* blob = hb_blob_create(
        reinterpret_cast<const char*>(view.data()), unsigned(view.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    hb_face_t* table = hb_face_create(blob, 0);
    hb_blob_destroy(blob);
    std::shared_ptr<Face> face;
    if (hb_face_get_glyph_count(table) > 0 && !nameOf(table).empty() && hasCharacters(table)) {
        face.reset(new Face);
        static std::uint32_t lastId = 0;
        face->id = ++lastId;
        face->bytes = std::move(bytes);
        face->postScriptName = nameOf(table);
        face->shaper = hb_font_create(table); // its scale is the font's own units
        face->readMetrics();
        hb_font_make_immutable(face->shaper);
    }
    hb_face_destroy(table);
    return face;
}

std::shared_ptr<const CTFont::Face> CTFont::Face::boxes()
{
    static const std::shared_ptr<const Face> shared = [] {
        std::shared_ptr<Face> face(new Face);
        face->postScriptName = "Boxes";
        return face;
    }();
    return shared;
}

CTFont::Face::~Face()
{
    if (outlines_)
        FT_Done_Face(outlines_);
    if (shaper)
        hb_font_destroy(shaper);
}

void CTFont::Face::readMetrics()
{
    unitsPerEm = hb_face_get_upem(hb_font_get_face(shaper));
    colored = hb_ot_color_has_png(hb_font_get_face(shaper));
    weight = int(hb_style_get_value(shaper, HB_STYLE_TAG_WEIGHT));
    hb_font_extents_t extents {};
    if (hb_font_get_h_extents(shaper, &extents)) {
        ascent = extents.ascender / unitsPerEm;
        descent = -extents.descender / unitsPerEm;
        gap = extents.line_gap / unitsPerEm;
    }
    const auto read = [this](hb_ot_metrics_tag_t tag, double& part, double sign) {
        hb_position_t value = 0;
        if (hb_ot_metrics_get_position(shaper, tag, &value))
            part = sign * value / unitsPerEm;
    };
    read(HB_OT_METRICS_TAG_CAP_HEIGHT, capHeight, 1);
    read(HB_OT_METRICS_TAG_X_HEIGHT, xHeight, 1);
    read(HB_OT_METRICS_TAG_UNDERLINE_SIZE, underlineThickness, 1);
    read(HB_OT_METRICS_TAG_UNDERLINE_OFFSET, underlineTop, -1);
}

bool CTFont::Face::covers(char32_t character) const
{
    hb_codepoint_t glyph = 0;
    return shaper && hb_font_get_nominal_glyph(shaper, character, &glyph) && glyph;
}

bool CTFont::Face::coversAll(std::u32string_view cluster) const
{
    return std::all_of(cluster.begin(), cluster.end(), [this](char32_t c) { return covers(c) || isInvisible(c); });
}

FT_FaceRec_* CTFont::Face::outlines() const
{
    if (!triedOutlines && bytes) {
        triedOutlines = true;
        const auto view = bytes->view();
        if (FT_New_Memory_Face(outlineLibrary(), view.data(), FT_Long(view.size()), 0, &outlines_))
            outlines_ = nullptr;
    }
    return outlines_;
}

} // namespace platform
