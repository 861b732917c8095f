#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

// Texts are UTF-8 everywhere. A character is what a reader perceives as one: an extended grapheme cluster, so an emoji family, a
// flag, a letter with its accents, a Devanagari conjunct or CR LF counts once. Offsets are bytes. Invalid bytes are taken as
// U+FFFD, one for each longest part of a sequence that could have become valid. Any thread.

struct CodePoint {
    char32_t value = 0; // U+FFFD for an invalid sequence
    std::size_t length = 0; // bytes; 0 only at the end of the text
};
CodePoint codePointAt(std::string_view text, std::size_t offset);
void appendUTF8(std::string& text, char32_t codePoint);

bool isValidUTF8(std::string_view text);
// The text with every invalid sequence replaced by U+FFFD.
std::string validUTF8(std::string_view text);

// Counts no further than `atMost`, so that a huge text costs no more than the question asked of it.
std::size_t characterCount(std::string_view text, std::size_t atMost = SIZE_MAX);
std::string_view firstCharacter(std::string_view text); // empty for an empty text
std::string_view prefix(std::string_view text, std::size_t characters);
// The nearest boundary after or before a byte offset; at the text's ends they stay there. For going through a whole text,
// Characters is the way.
std::size_t nextCharacterBoundary(std::string_view text, std::size_t offset);
std::size_t previousCharacterBoundary(std::string_view text, std::size_t offset);

// for (std::string_view character : Characters(text)) ...
class Characters {
public:
    class Iterator {
    public:
        std::string_view operator*() const { return text.substr(offset, length); }
        Iterator& operator++();
        bool operator!=(const Iterator& other) const { return offset != other.offset; }

    private:
        friend class Characters;
        Iterator(std::string_view whole, std::size_t start);

        std::string_view text;
        std::size_t offset = 0;
        std::size_t length = 0;
    };

    explicit Characters(std::string_view whole)
        : text(whole)
    {
    }
    Iterator begin() const { return { text, 0 }; }
    Iterator end() const { return { text, text.size() }; }

private:
    std::string_view text;
};

// Without white space and line breaks at both ends, those beyond ASCII included.
std::string_view trimmed(std::string_view text);

} // namespace platform
