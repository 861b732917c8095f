#include "Platform/Foundation/Text.h"

#include "Platform/Foundation/CharacterBreaks.h"

#include <algorithm>

namespace platform {

namespace {

constexpr char32_t replacement = 0xfffd;

unsigned byteAt(std::string_view text, std::size_t offset) { return static_cast<unsigned char>(text[offset]); }

bool isAscii(std::string_view text, std::size_t offset) { return byteAt(text, offset) < 0x80; }

bool isContinuation(std::string_view text, std::size_t offset) { return (byteAt(text, offset) & 0xc0) == 0x80; }

// Where the code point before `offset` begins.
std::size_t previousCodePoint(std::string_view text, std::size_t offset)
{
    const std::size_t earliest = offset > 4 ? offset - 4 : 0;
    for (std::size_t start = offset - 1; start + 1 > earliest; --start) {
        if (!isContinuation(text, start))
            return start + codePointAt(text, start).length == offset ? start : offset - 1;
        if (start == 0)
            break;
    }
    return offset - 1; // a stray continuation byte
}

bool isWhiteSpace(char32_t c)
{
    return c == ' ' || (c >= '\t' && c <= '\r') || c == 0x85 || c == 0xa0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200b)
        || c == 0x2028 || c == 0x2029 || c == 0x202f || c == 0x205f || c == 0x3000;
}

// True where every text may be cut without looking further back: before a code point that joins nothing, after one that does not
// reach forward.
bool isCertainBoundary(BreakClass before, BreakClass after)
{
    using enum BreakClass;
    if (before == control || before == lf || after == control || after == cr)
        return true;
    return (after == other || after == hangulL) && before != prepend && before != hangulL && before != cr;
}

} // namespace

CodePoint codePointAt(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return {};
    const unsigned lead = byteAt(text, offset);
    if (lead < 0x80)
        return { lead, 1 };
    if (lead < 0xc2 || lead > 0xf4)
        return { replacement, 1 };

    const std::size_t length = lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    // The second byte excludes overlong forms, surrogates and what lies beyond U+10FFFF.
    const unsigned lowest = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    char32_t value = lead & (0xffu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (offset + i >= text.size())
            return { replacement, i };
        const unsigned byte = byteAt(text, offset + i);
        if (byte < (i == 1 ? lowest : 0x80) || byte > (i == 1 ? highest : 0xbf))
            return { replacement, i };
        value = value << 6 | (byte & 0x3f);
    }
    return { value, length };
}

void appendUTF8(std::string& text, char32_t c)
{
    if (c > 0x10ffff || (c >= 0xd800 && c <= 0xdfff))
        c = replacement;
    const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80)
        return add(c);
    if (c < 0x800)
        add(0xc0 | c >> 6);
    else if (c < 0x10000)
        add(0xe0 | c >> 12);
    else {
        add(0xf0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3f));
    }
    if (c >= 0x800)
        add(0x80 | (c >> 6 & 0x3f));
    add(0x80 | (c & 0x3f));
}

bool isValidUTF8(std::string_view text)
{
    for (std::size_t offset = 0; offset < text.size();) {
        const CodePoint point = codePointAt(text, offset);
        if (point.value == replacement && text.substr(offset, point.length) != "\xef\xbf\xbd")
            return false;
        offset += point.length;
    }
    return true;
}

std::string validUTF8(std::string_view text)
{
    std::string valid;
    valid.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();) {
        const CodePoint point = codePointAt(text, offset);
        if (point.value == replacement)
            appendUTF8(valid, replacement);
        else
            valid += text.substr(offset, point.length);
        offset += point.length;
    }
    return valid;
}

std::size_t characterCount(std::string_view text, std::size_t atMost)
{
    std::size_t count = 0;
    for (std::size_t offset = 0; offset < text.size() && count < atMost; ++count)
        offset = nextCharacterBoundary(text, offset);
    return count;
}

std::string_view firstCharacter(std::string_view text) { return text.substr(0, nextCharacterBoundary(text, 0)); }

std::string_view prefix(std::string_view text, std::size_t characters)
{
    std::size_t offset = 0;
    for (std::size_t i = 0; i < characters && offset < text.size(); ++i)
        offset = nextCharacterBoundary(text, offset);
    return text.substr(0, offset);
}

std::size_t nextCharacterBoundary(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return text.size();
    if (isAscii(text, offset) && text[offset] != '\r' && (offset + 1 == text.size() || isAscii(text, offset + 1)))
        return offset + 1;

    CharacterBreaker breaker;
    CodePoint point = codePointAt(text, offset);
    breaker.beginsCharacter(breakClass(point.value));
    for (;;) {
        offset += point.length;
        point = codePointAt(text, offset);
        if (point.length == 0 || breaker.beginsCharacter(breakClass(point.value)))
            return offset;
    }
}

std::size_t previousCharacterBoundary(std::string_view text, std::size_t offset)
{
    constexpr std::size_t farthest = 4096; // bytes looked back at; no character that is meant to be read is longer
    offset = std::min(offset, text.size());
    if (offset == 0)
        return 0;
    std::size_t start = previousCodePoint(text, offset);
    BreakClass after = breakClass(codePointAt(text, start).value);
    while (start > 0 && offset - start < farthest) {
        const std::size_t earlier = previousCodePoint(text, start);
        const BreakClass before = breakClass(codePointAt(text, earlier).value);
        if (isCertainBoundary(before, after))
            break;
        start = earlier;
        after = before;
    }
    for (;;) {
        const std::size_t next = nextCharacterBoundary(text, start);
        if (next >= offset)
            return start;
        start = next;
    }
}

Characters::Iterator::Iterator(std::string_view whole, std::size_t start)
    : text(whole)
    , offset(start)
    , length(nextCharacterBoundary(whole, start) - start)
{
}

Characters::Iterator& Characters::Iterator::operator++()
{
    offset += length;
    length = nextCharacterBoundary(text, offset) - offset;
    return *this;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty()) {
        const CodePoint first = codePointAt(text, 0);
        if (!isWhiteSpace(first.value))
            break;
        text.remove_prefix(first.length);
    }
    while (!text.empty()) {
        const std::size_t last = previousCodePoint(text, text.size());
        if (!isWhiteSpace(codePointAt(text, last).value))
            break;
        text.remove_suffix(text.size() - last);
    }
    return text;
}

} // namespace platform
