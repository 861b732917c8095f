#include "Platform/CoreGraphics/Text/ShapedText.h"

#include "Platform/CoreGraphics/Text/FontLibrary.h"
#include "Platform/Foundation/Text.h"

#include <fribidi.h>
#include <hb.h>
#include <pango/pango.h>

namespace platform {
namespace {
constexpr char32_t firstRightToLeft = 0x590; // no code point before it is written from the right
constexpr char32_t textStyleSelector = 0xfe0e, emojiStyleSelector = 0xfe0f;
constexpr double boxAdvance = 0.6; // ems, where no font at all is there

struct Interval {
    char32_t first, last;
};
// Characters below the emoji planes that are coloured unless said otherwise (Unicode 15, Emoji_Presentation).
constexpr Interval emojiByDefault[]
    = { { 0x231a, 0x231b }, { 0x23e9, 0x23ec }, { 0x23f0, 0x23f0 }, { 0x23f3, 0x23f3 }, { 0x25fd, 0x25fe }, { 0x2614, 0x2615 },
          { 0x2648, 0x2653 }, { 0x267f, 0x267f }, { 0x2693, 0x2693 }, { 0x26a1, 0x26a1 }, { 0x26aa, 0x26ab }, { 0x26bd, 0x26be },
          { 0x26c4, 0x26c5 }, { 0x26ce, 0x26ce }, { 0x26d4, 0x26d4 }, { 0x26ea, 0x26ea }, { 0x26f2, 0x26f3 }, { 0x26f5, 0x26f5 },
          { 0x26fa, 0x26fa }, { 0x26fd, 0x26fd }, { 0x2705, 0x2705 }, { 0x270a, 0x270b }, { 0x2728, 0x2728 }, { 0x274c, 0x274c },
          { 0x274e, 0x274e }, { 0x2753, 0x2755 }, { 0x2757, 0x2757 }, { 0x2795, 0x2797 }, { 0x27b0, 0x27b0 }, { 0x27bf, 0x27bf },
          { 0x2b1b, 0x2b1c }, { 0x2b50, 0x2b50 }, { 0x2b55, 0x2b55 }, { 0x1f004, 0x1f004 }, { 0x1f0cf, 0x1f0cf },
          { 0x1f18e, 0x1f18e }, { 0x1f191, 0x1f19a }, { 0x1f1e6, 0x1f1ff }, { 0x1f201, 0x1f201 }, { 0x1f21a, 0x1f21a },
          { 0x1f22f, 0x1f22f }, { 0x1f232, 0x1f236 }, { 0x1f238, 0x1f23a }, { 0x1f250, 0x1f251 }, { 0x1f300, 0x1faff } };

bool isEmojiByDefault(char32_t c)
{
    return c >= emojiByDefault[0].first && std::any_of(std::begin(emojiByDefault), std::end(emojiByDefault), [c](const auto& i) {
        return c >= i.first && c <= i.last;
    });
}

bool wantsEmoji(std::u32string_view cluster)
{
    if (cluster.find(textStyleSelector) != std::u32string_view::npos)
        return false;
    return cluster.find(emojiStyleSelector) != std::u32string_view::npos
        || std::any_of(cluster.begin(), cluster.end(), isEmojiByDefault);
}

struct Destroy {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

// One buffer for all shaping, so that its memory is allocated once.
hb_buffer_t* emptyBuffer()
{
    static const std::unique_ptr<hb_buffer_t, Destroy> buffer(hb_buffer_create());
    hb_buffer_clear_contents(buffer.get());
    return buffer.get();
}
}

ShapedText::ShapedText(std::u32string characters, std::vector<Stretch> parts, TextDirection direction, bool holdsDirection)
    : text(std::move(characters))
    , stretches(std::move(parts))
    , ends(text.size() + 1)
{
    findBreaks();
    makeItems(bidiLevels(direction, holdsDirection));
    for (auto& item : items) {
        item.glyphs = shape(item, item.start, item.end);
        for (const auto& glyph : item.glyphs)
            ends[glyph.cluster + 1] += glyph.advance;
    }
    for (std::size_t i = 1; i < ends.size(); ++i)
        ends[i] += ends[i - 1];
}

ShapedText::~ShapedText() = default;

const ShapedText::Stretch& ShapedText::stretchAt(std::size_t at) const
{
    const auto found = std::upper_bound(
        stretches.begin(), stretches.end(), at, [](std::size_t offset, const Stretch& s) { return offset < s.end; });
    return found == stretches.end() ? stretches.back() : *found;
}

bool ShapedText::hasGlyph(std::size_t from, std::size_t to) const
{
    const auto item = std::partition_point(items.begin(), items.end(), [from](const Item& i) { return i.end <= from; });
    return item != items.end() && !glyphsOf(*item, from, to).empty();
}

void ShapedText::findBreaks()
{
    std::string utf8;
    utf8.reserve(text.size());
    for (const char32_t c : text)
        appendUTF8(utf8, c);
    std::vector<PangoLogAttr> found(text.size() + 1);
    pango_get_log_attrs(utf8.data(), int(utf8.size()), -1, pango_language_from_string("en"), found.data(), int(found.size()));
    breaks.reserve(found.size());
    for (const auto& f : found)
        breaks.push_back({ f.is_cursor_position != 0, f.is_line_break != 0, f.is_white != 0 });
    breaks.front().character = breaks.back().character = true;
}

// The level of each code point; even ones run left to right.
std::vector<unsigned char> ShapedText::bidiLevels(TextDirection direction, bool holdsDirection)
{
    std::vector<unsigned char> levels(text.size(), 0);
    const bool plain = std::none_of(text.begin(), text.end(), [](char32_t c) { return c >= firstRightToLeft; });
    if (text.empty() || (plain && direction == TextDirection::leftToRight)) {
        baseLevel = direction == TextDirection::rightToLeft;
        return levels;
    }
    static_assert(sizeof(FriBidiChar) == sizeof(char32_t));
    const auto* characters = reinterpret_cast<const FriBidiChar*>(text.data());
    const auto count = FriBidiStrIndex(text.size());
    std::vector<FriBidiCharType> types(text.size());
    std::vector<FriBidiBracketType> brackets(text.size());
    std::vector<FriBidiLevel> found(text.size());
    fribidi_get_bidi_types(characters, count, types.data());
    fribidi_get_bracket_types(characters, count, types.data(), brackets.data());
    FriBidiParType base = direction == TextDirection::rightToLeft ? FRIBIDI_PAR_WRTL : FRIBIDI_PAR_WLTR;
    if (holdsDirection)
        base = direction == TextDirection::rightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &base, found.data()) > 0)
        std::transform(
            found.begin(), found.end(), levels.begin(), [](FriBidiLevel level) { return static_cast<unsigned char>(level); });
    baseLevel = FRIBIDI_IS_RTL(base) ? 1 : 0;
    return levels;
}

// The script of each code point; what many scripts share goes with the text before it, at the start with the text after it.
std::vector<std::uint32_t> ShapedText::scripts() const
{
    std::vector<std::uint32_t> result(text.size());
    auto* functions = hb_unicode_funcs_get_default();
    const auto isShared
        = [](std::uint32_t s) { return s == HB_SCRIPT_COMMON || s == HB_SCRIPT_INHERITED || s == HB_SCRIPT_UNKNOWN; };
    std::uint32_t last = HB_SCRIPT_COMMON;
    std::size_t firstOwn = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint32_t own = hb_unicode_script(functions, text[i]);
        if (!isShared(own)) {
            last = own;
            firstOwn = std::min(firstOwn, i);
        }
        result[i] = last;
    }
    if (firstOwn < text.size())
        std::fill_n(result.begin(), firstOwn, result[firstOwn]);
    return result;
}

void ShapedText::makeItems(const std::vector<unsigned char>& levels)
{
    const auto scriptOf = scripts();
    std::size_t stretch = 0;
    for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
        end = start + 1;
        while (!breaks[end].character)
            ++end;
        while (stretches[stretch].end <= start && stretch + 1 < stretches.size())
            ++stretch;
        const std::u32string_view cluster = std::u32string_view(text).substr(start, end - start);
        const auto& wanted = stretches[stretch].font->face();
        auto* before = items.empty() ? nullptr : &items.back();
        auto face = wanted;
        const bool emoji = wantsEmoji(cluster);
        // A space between two words of a fallback font does not part them; emoji fonts have spaces as wide as their pictures.
        const bool joins = before && before->stretch == stretch && cluster.size() == 1 && breaks[start].space
            && !before->face->isColored() && before->face->covers(cluster[0]);
        if (joins)
            face = before->face;
        else if (emoji || !wanted->coversAll(cluster)) {
            if (auto other = FontLibrary::shared().substitute(cluster, wanted->weight, emoji))
                face = std::move(other);
        }
        if (before && before->stretch == stretch && before->face == face && before->level == levels[start]
            && before->script == scriptOf[start])
            before->end = end;
        else
            items.push_back({ start, end, levels[start], scriptOf[start], std::move(face), stretch, {} });
    }
}

std::vector<ShapedText::ShapedGlyph> ShapedText::shape(const Item& item, std::size_t from, std::size_t to) const
{
    std::vector<ShapedGlyph> glyphs;
    const double size = stretches[item.stretch].font->pointSize();
    if (item.face->isBoxes()) {
        for (std::size_t i = from; i < to; ++i) {
            if (isCharacterStart(i))
                glyphs.push_back({ isSpace(i) ? 0u : 1u, std::uint32_t(i), float(boxAdvance * size), 0, 0, false });
        }
        if (item.level % 2)
            std::reverse(glyphs.begin(), glyphs.end());
        return glyphs;
    }
    hb_buffer_t* buffer = emptyBuffer();
    hb_buffer_add_utf32(
        buffer, reinterpret_cast<const std::uint32_t*>(text.data()), int(text.size()), unsigned(from), int(to - from));
    hb_buffer_set_direction(buffer, item.level % 2 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, hb_script_t(item.script));
    hb_buffer_set_cluster_level(buffer, HB_BUFFER_CLUSTER_LEVEL_MONOTONE_GRAPHEMES);
    hb_shape(item.face->shaper, buffer, nullptr, 0);

    unsigned count = 0;
    const auto* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const auto* positions = hb_buffer_get_glyph_positions(buffer, nullptr);
    const double unit = size / item.face->unitsPerEm;
    glyphs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        const auto& p = positions[i];
        const bool joined = hb_glyph_info_get_glyph_flags(&infos[i]) & HB_GLYPH_FLAG_UNSAFE_TO_BREAK;
        glyphs.push_back({ infos[i].codepoint, infos[i].cluster, float(p.x_advance * unit), float(p.x_offset * unit),
            float(-p.y_offset * unit), joined });
    }
    return glyphs;
}

// The glyphs of the code points from one offset to another, of an item in one piece.
std::span<const ShapedText::ShapedGlyph> ShapedText::glyphsOf(const Item& item, std::size_t from, std::size_t to) const
{
    const bool descending = item.level % 2;
    const auto firstAtOrAfter = [&](std::size_t at) {
        return std::partition_point(item.glyphs.begin(), item.glyphs.end(),
            [&](const ShapedGlyph& g) { return descending ? g.cluster >= at : g.cluster < at; });
    };
    const auto begin = firstAtOrAfter(descending ? to : from), end = firstAtOrAfter(descending ? from : to);
    return { begin, end };
}

// Whether the item's glyphs can be parted before that code point and stay what they are.
bool ShapedText::isCleanCut(const Item& item, std::size_t at) const
{
    if (at == item.start || at == item.end)
        return true;
    const auto glyphs = glyphsOf(item, at, at + 1);
    return !glyphs.empty() && std::none_of(glyphs.begin(), glyphs.end(), [](const ShapedGlyph& g) { return g.joined; });
}

void ShapedText::appendRuns(std::vector<GlyphRun>& runs, std::size_t from, std::size_t to, double spaceExtra) const
{
    auto item = std::partition_point(items.begin(), items.end(), [from](const Item& i) { return i.end <= from; });
    for (; item != items.end() && item->start < to; ++item) {
        const std::size_t start = std::max(item->start, from), end = std::min(item->end, to);
        GlyphRun run { start, end, item->face, stretches[item->stretch].font->pointSize(), stretches[item->stretch].style,
            item->level, 0, 0, {} };
        const auto place = [&](std::span<const ShapedGlyph> glyphs) {
            run.glyphs.reserve(glyphs.size());
            for (const auto& glyph : glyphs) {
                run.glyphs.push_back({ glyph.id, float(run.width) + glyph.dx, glyph.dy });
                run.width += glyph.advance + (isSpace(glyph.cluster) ? spaceExtra : 0);
            }
        };
        if (isCleanCut(*item, start) && isCleanCut(*item, end))
            place(glyphsOf(*item, start, end));
        else
            place(shape(*item, start, end));
        runs.push_back(std::move(run));
    }
}

TextDirection naturalDirection(std::string_view text, TextDirection otherwise)
{
    for (std::size_t offset = 0; offset < text.size();) {
        const CodePoint read = codePointAt(text, offset);
        const FriBidiCharType type = fribidi_get_bidi_type(read.value);
        if (FRIBIDI_IS_LETTER(type))
            return FRIBIDI_IS_RTL(type) ? TextDirection::rightToLeft : TextDirection::leftToRight;
        offset += std::max<std::size_t>(read.length, 1);
    }
    return otherwise;
}

} // namespace platform
