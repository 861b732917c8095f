#include "Platform/CoreGraphics/Text/LineBuilder.h"

#include "Platform/CoreGraphics/Text/FontFace.h"
#include "Platform/Foundation/Text.h"

namespace platform {
namespace {
constexpr double hair = 0.01; // points: a text fits the width that it was measured to have
constexpr double widestLine = 40000; // points; no bitmap reaches further
constexpr double narrowestCharacter = 0.1; // ems, so that a line's worth of characters can be told before shaping
constexpr char32_t ellipsis = 0x2026, zeroWidthSpace = 0x200b;

bool isLineEnd(char32_t c) { return (c >= 0x0a && c <= 0x0d) || c == 0x85 || c == 0x2028 || c == 0x2029; }
bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

// Hands out the text between two line ends after the other, as code points with their styles.
class Reader {
public:
    Reader(const TextParagraph& source, const std::vector<std::shared_ptr<const CTFont>>& runFonts)
        : paragraph(source)
        , fonts(runFonts)
    {
    }

    bool isAtEnd() const { return ended; }
    // Up to the next line end. Of a longer text the first and the last so many code points are kept.
    void read(std::size_t head, std::size_t tail)
    {
        text.clear();
        stretches.clear();
        isCut = false;
        ended = true;
        for (; run < paragraph.runs.size(); ++run, offset = 0) {
            ended = !readRun(head, tail);
            if (text.size() > (stretches.empty() ? 0 : stretches.back().end))
                stretches.push_back({ text.size(), fonts[run], run });
            if (!ended)
                break;
        }
        if (stretches.empty())
            stretches.push_back({ 0, paragraph.font, 0 });
    }
    // Whether anything that can be seen follows.
    bool hasMore() const
    {
        constexpr auto spaces = " \t\r\n";
        for (std::size_t i = run; i < paragraph.runs.size(); ++i) {
            if (paragraph.runs[i].text.find_first_not_of(spaces, i == run ? offset : 0) != std::string::npos)
                return true;
        }
        return false;
    }

    std::u32string text;
    std::vector<ShapedText::Stretch> stretches;
    bool isCut = false; // something was passed over

private:
    // True when it met a line end.
    bool readRun(std::size_t head, std::size_t tail)
    {
        const std::string_view source = paragraph.runs[run].text;
        while (offset < source.size()) {
            if (text.size() >= head && !isCut)
                passOver(source, tail);
            const auto [c, length] = codePointAt(source, offset);
            offset += length;
            if (c == '\r' && offset < source.size() && source[offset] == '\n')
                ++offset;
            if (isLineEnd(c))
                return true;
            if (c == '\t')
                text.append(4, U' ');
            else if (length > 0)
                text.push_back(isControl(c) ? zeroWidthSpace : c);
        }
        return false;
    }

    void passOver(std::string_view source, std::size_t tail)
    {
        const std::size_t end = std::min(source.find('\n', offset), source.size());
        if (end - offset <= tail)
            return;
        isCut = true;
        offset = end - tail;
        while (offset < end && (static_cast<unsigned char>(source[offset]) & 0xc0) == 0x80) // inside a character's bytes
            ++offset;
    }

    const TextParagraph& paragraph;
    const std::vector<std::shared_ptr<const CTFont>>& fonts;
    std::size_t run = 0, offset = 0;
    bool ended = false;
};

// Within a line the runs of higher levels are turned around first (rule L2 of the bidirectional algorithm).
void orderForTheEye(std::vector<GlyphRun>& runs)
{
    unsigned char highest = 0;
    for (const auto& run : runs)
        highest = std::max(highest, run.level);
    for (unsigned char level = highest; level > 0; --level) {
        for (auto begin = runs.begin(); begin != runs.end();) {
            begin = std::find_if(begin, runs.end(), [level](const GlyphRun& run) { return run.level >= level; });
            const auto end = std::find_if(begin, runs.end(), [level](const GlyphRun& run) { return run.level < level; });
            std::reverse(begin, end);
            begin = end;
        }
    }
}

class Builder {
public:
    Builder(TextLayout::Impl& result, const TextParagraph& source, double maximumWidth, double maximumHeight)
        : layout(result)
        , paragraph(source)
        , width(std::max(maximumWidth, 0.0))
    {
        for (const auto& run : paragraph.runs) {
            fonts.push_back(run.font ? run.font : paragraph.font);
            layout.styles.push_back({ run.color.value_or(paragraph.color), run.link, run.underline });
        }
        if (fonts.empty())
            layout.styles.push_back({ paragraph.color, {}, false });
        if (paragraph.lineBreakMode == NSLineBreakMode::byClipping && std::isfinite(width))
            layout.clipWidth = width;
        measureLine();
        if (paragraph.numberOfLines > 0)
            allowed = std::size_t(paragraph.numberOfLines);
        const double step = layout.lineHeight + paragraph.lineSpacing;
        if (maximumHeight > 0 && step > 0)
            allowed = std::min(allowed, std::size_t(std::max((maximumHeight + paragraph.lineSpacing + hair) / step, 1.0)));
    }

    void build()
    {
        Reader reader(paragraph, fonts);
        do {
            const auto mode = paragraph.lineBreakMode;
            const bool showsEnd = mode == NSLineBreakMode::byTruncatingHead || mode == NSLineBreakMode::byTruncatingMiddle;
            const std::size_t most = paragraph.isEdited ? SIZE_MAX : charactersIn(allowed - layout.lines.size());
            reader.read(most, showsEnd ? charactersIn(1) : 0);
            addParagraph(reader);
        } while (!reader.isAtEnd() && layout.lines.size() < allowed);
        alignLines();
    }

private:
    bool truncates() const
    {
        const auto mode = paragraph.lineBreakMode;
        return mode == NSLineBreakMode::byTruncatingHead || mode == NSLineBreakMode::byTruncatingTail
            || mode == NSLineBreakMode::byTruncatingMiddle;
    }

    void measureLine()
    {
        double descent = 0;
        const auto add = [&](const CTFont& font) {
            ascent = std::max(ascent, font.ascender() + font.leading() / 2);
            descent = std::max(descent, font.descender() + font.leading() / 2);
        };
        for (const auto& font : fonts)
            add(*font);
        if (fonts.empty())
            add(*paragraph.font);
        layout.lineHeight = ascent + descent;
    }

    // More than this many cannot show, so they are not even shaped.
    std::size_t charactersIn(std::size_t lines) const
    {
        double smallest = paragraph.font->pointSize();
        for (const auto& font : fonts)
            smallest = std::min(smallest, font->pointSize());
        const double perLine = std::min(width, widestLine) / (std::max(smallest, 1.0) * narrowestCharacter) + 64;
        const double count = perLine * (double(lines) + 1);
        return count < 1e9 ? std::size_t(count) : std::size_t(1e9);
    }

    void addParagraph(Reader& reader)
    {
        const bool moreFollows = reader.hasMore();
        const ShapedText text(std::move(reader.text), std::move(reader.stretches), paragraph.direction, paragraph.isEdited);
        if (paragraph.isEdited) {
            addEditedLine(text);
            return;
        }
        std::size_t start = 0;
        do {
            const bool isLast = layout.lines.size() + 1 >= allowed;
            std::size_t end
                = isLast && paragraph.lineBreakMode == NSLineBreakMode::byClipping ? text.length() : lineEnd(text, start);
            const bool leavesOut = isLast && (end < text.length() || moreFollows || reader.isCut);
            if (leavesOut && truncates())
                addTruncatedLine(text, start, end < text.length() || reader.isCut);
            else
                addLine(text, start, end, leavesOut);
            start = end;
        } while (start < text.length() && layout.lines.size() < allowed);
    }

    // Where the line that begins at `start` ends: after the last word that fits, or inside a word wider than the line.
    std::size_t lineEnd(const ShapedText& text, std::size_t start) const
    {
        const bool anywhere = paragraph.lineBreakMode == NSLineBreakMode::byCharWrapping;
        std::size_t lastBreak = start, reluctantBreak = start, i = start;
        for (; i < text.length(); ++i) {
            if (i > start && ((text.mayBreakBefore(i) && !text.isReluctantBreak(i)) || (anywhere && text.isCharacterStart(i))))
                lastBreak = i;
            else if (i > start && text.isReluctantBreak(i))
                reluctantBreak = i;
            if (!text.isSpace(i) && text.width(start, i + 1) > width + hair)
                break;
        }
        if (i == text.length())
            return i;
        if (lastBreak > start || reluctantBreak > start) {
            i = lastBreak > start ? lastBreak : reluctantBreak;
        } else {
            while (i > start && !text.isCharacterStart(i))
                --i;
            for (i = std::max(i, start + 1); !text.isCharacterStart(i);)
                ++i;
        }
        while (i < text.length() && text.isSpace(i)) // hangs over the end
            ++i;
        return i;
    }

    static std::size_t withoutSpaces(const ShapedText& text, std::size_t start, std::size_t end)
    {
        while (end > start && text.isSpace(end - 1))
            --end;
        return end;
    }

    void addLine(const ShapedText& text, std::size_t start, std::size_t end, bool leavesOut)
    {
        const std::size_t visible = withoutSpaces(text, start, end);
        double extra = 0;
        if (paragraph.alignment == NSTextAlignment::justified && end < text.length() && std::isfinite(width)) {
            const std::size_t spaces = countSpaces(text, start, visible);
            extra = spaces ? std::max(width - text.width(start, visible), 0.0) / double(spaces) : 0;
        }
        std::vector<GlyphRun> runs;
        text.appendRuns(runs, start, visible, extra);
        finishLine(std::move(runs), text.isRightToLeft(), leavesOut);
    }

    void addEditedLine(const ShapedText& text)
    {
        std::vector<GlyphRun> runs;
        text.appendRuns(runs, 0, text.length());
        finishLine(std::move(runs), text.isRightToLeft(), false);
        const std::string_view source = paragraph.runs.empty() ? std::string_view() : paragraph.runs.front().text;
        std::vector<Cell> cells; // in the text's order
        std::size_t codePoints = 0;
        for (std::size_t start = 0; start < source.size() && codePoints < text.length();) {
            const std::size_t end = nextCharacterBoundary(source, start), first = codePoints;
            for (std::size_t at = start; at < end; at += std::max<std::size_t>(codePointAt(source, at).length, 1))
                codePoints += source[at] == '\t' ? 4 : 1;
            cells.push_back({ { start, end, 0, 0, false }, first, std::min(codePoints, text.length()) });
            start = end;
        }
        shareWidths(text, cells);
        for (const GlyphRun& run : layout.runs.back())
            placeCharacters(run, cells);
    }

    struct Cell {
        TextLayout::Character character;
        std::size_t first, last; // code points, up to
    };

    static void shareWidths(const ShapedText& text, std::vector<Cell>& cells)
    {
        for (std::size_t i = 0, next = 0; i < cells.size(); i = next) {
            for (next = i + 1; next < cells.size() && !text.hasGlyph(cells[next].first, cells[next].last);)
                ++next;
            const double width = text.width(cells[i].first, cells[next - 1].last) / double(next - i);
            for (std::size_t shared = i; shared < next; ++shared)
                cells[shared].character.width = width;
        }
    }

    // Those that begin in the run.
    void placeCharacters(const GlyphRun& run, const std::vector<Cell>& cells)
    {
        const auto firstFrom = [&](std::size_t at) {
            return std::partition_point(cells.begin(), cells.end(), [at](const Cell& cell) { return cell.first < at; });
        };
        const std::size_t before = layout.characters.size();
        for (auto cell = firstFrom(run.start); cell != firstFrom(run.end); ++cell)
            layout.characters.push_back(cell->character);
        const auto placed = layout.characters.begin() + std::ptrdiff_t(before);
        const bool rightToLeft = run.level % 2;
        if (rightToLeft)
            std::reverse(placed, layout.characters.end());
        double x = run.x;
        for (auto character = placed; character != layout.characters.end(); ++character) {
            character->x = x;
            character->rightToLeft = rightToLeft;
            x += character->width;
        }
    }

    static std::size_t countSpaces(const ShapedText& text, std::size_t start, std::size_t end)
    {
        std::size_t count = 0;
        for (std::size_t i = start; i < end; ++i)
            count += text.isSpace(i);
        return count;
    }

    // The rest of the text on one line, with an ellipsis for what does not fit. `partial`: the line itself is too long; otherwise
    // only lines after it are missing.
    void addTruncatedLine(const ShapedText& text, std::size_t start, bool partial)
    {
        const std::size_t length = text.length();
        const auto dots = dotsLike(text, start);
        const double room = width - dots.width(0, dots.length());
        std::size_t head = start, tail = length; // what is kept: [start, head) and [tail, length)
        if (!partial) {
            head = longestHead(text, start, length, room);
        } else if (paragraph.lineBreakMode == NSLineBreakMode::byTruncatingHead) {
            tail = longestTail(text, start, room);
        } else if (paragraph.lineBreakMode == NSLineBreakMode::byTruncatingMiddle) {
            head = longestHead(text, start, length, room / 2);
            tail = longestTail(text, head, room - text.width(start, head));
        } else {
            head = longestHead(text, start, length, room);
        }
        head = withoutSpaces(text, start, head);
        while (tail < length && text.isSpace(tail))
            ++tail;
        std::vector<GlyphRun> runs;
        text.appendRuns(runs, start, head);
        dots.appendRuns(runs, 0, dots.length());
        text.appendRuns(runs, tail, length);
        finishLine(std::move(runs), text.isRightToLeft(), true);
    }

    // The ellipsis in the style of the text that is being cut, running the paragraph's way.
    ShapedText dotsLike(const ShapedText& text, std::size_t at) const
    {
        auto stretch = text.stretchAt(at);
        std::u32string dots(1, ellipsis);
        if (!stretch.font->face()->covers(ellipsis))
            dots = U"...";
        stretch.end = dots.size();
        return ShapedText(
            std::move(dots), { stretch }, text.isRightToLeft() ? TextDirection::rightToLeft : TextDirection::leftToRight);
    }

    static std::size_t longestHead(const ShapedText& text, std::size_t start, std::size_t end, double room)
    {
        std::size_t head = start;
        for (std::size_t i = start; i <= end && text.width(start, i) <= room + hair; ++i) {
            if (text.isCharacterStart(i))
                head = i;
        }
        return head;
    }

    static std::size_t longestTail(const ShapedText& text, std::size_t start, double room)
    {
        std::size_t tail = text.length();
        for (std::size_t i = text.length(); i > start && text.width(i - 1, text.length()) <= room + hair; --i) {
            if (text.isCharacterStart(i - 1))
                tail = i - 1;
        }
        return tail;
    }

    void finishLine(std::vector<GlyphRun> runs, bool rightToLeft, bool leavesOut)
    {
        orderForTheEye(runs);
        double x = 0;
        for (auto& run : runs) {
            run.x = x;
            x += run.width;
        }
        const double top = double(layout.lines.size()) * (layout.lineHeight + paragraph.lineSpacing);
        layout.lines.push_back({ { 0, top, x, layout.lineHeight }, top + ascent, leavesOut });
        layout.runs.push_back(std::move(runs));
        layout.truncated = layout.truncated || leavesOut;
        linesRightToLeft.push_back(rightToLeft);
    }

    void alignLines()
    {
        double widest = 0;
        for (const auto& line : layout.lines)
            widest = std::max(widest, line.rect.width);
        layout.size = { std::min(widest, std::max(width, 0.0)), layout.lines.back().rect.maxY() };
        const double box = std::isfinite(width) ? width : widest;
        for (std::size_t i = 0; i < layout.lines.size(); ++i) {
            const double free = box - layout.lines[i].rect.width;
            const double x = free * shareBefore(linesRightToLeft[i]);
            layout.lines[i].rect.x = x;
            for (auto& run : layout.runs[i])
                run.x += x;
        }
    }

    // The part of a line's free room that lies on its left.
    double shareBefore(bool rightToLeft) const
    {
        switch (paragraph.alignment) {
        case NSTextAlignment::left:
            return 0;
        case NSTextAlignment::center:
            return 0.5;
        case NSTextAlignment::right:
            return 1;
        case NSTextAlignment::natural:
        case NSTextAlignment::justified:
            break;
        }
        return rightToLeft ? 1 : 0;
    }

    TextLayout::Impl& layout;
    const TextParagraph& paragraph;
    double width; // points, not negative; may be infinite
    std::vector<std::shared_ptr<const CTFont>> fonts; // of each run
    double ascent = 0;
    std::size_t allowed = SIZE_MAX; // lines
    std::vector<bool> linesRightToLeft;
};
}

void buildLines(TextLayout::Impl& layout, const TextParagraph& paragraph, double width, double scale, double maximumHeight)
{
    layout.shadow = paragraph.shadow;
    Builder(layout, paragraph, width, maximumHeight).build();
    const auto up = [&](double points) { return scale > 0 ? std::ceil(points * scale - hair) / scale : points; };
    layout.size = { up(layout.size.width), up(layout.size.height) };
}

} // namespace platform
