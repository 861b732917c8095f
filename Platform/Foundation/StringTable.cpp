#include "Platform/Foundation/StringTable.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Text.h"

#include <algorithm>
#include <optional>

namespace platform {

namespace {

// Reads entry by entry; after a fault `problem` says what is wrong at `offset`.
class StringsReader {
public:
    struct Entry {
        std::string key;
        std::string value;
    };

    explicit StringsReader(std::string_view content)
        : text(content)
    {
    }

    std::optional<Entry> next() // nothing at the end and at a fault
    {
        Entry entry;
        if (!skipSpace() || offset == text.size())
            return std::nullopt;
        if (!readWord(entry.key, "a key") || !expect('=') || !readWord(entry.value, "a text") || !expect(';'))
            return std::nullopt;
        return entry;
    }

    std::string problem;

    std::size_t line() const
    {
        return 1 + static_cast<std::size_t>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
    }

private:
    bool fail(std::string what)
    {
        problem = std::move(what);
        return false;
    }

    bool startsWith(std::string_view what) const { return text.substr(offset).starts_with(what); }

    bool skipSpace() // and comments
    {
        for (;;) {
            offset = std::min(text.find_first_not_of(" \t\r\n\f\v", offset), text.size());
            if (startsWith("//")) {
                offset = std::min(text.find('\n', offset), text.size());
            } else if (startsWith("/*")) {
                const std::size_t end = text.find("*/", offset + 2);
                if (end == std::string_view::npos)
                    return fail("the comment does not end");
                offset = end + 2;
            } else {
                return true;
            }
        }
    }

    bool expect(char c)
    {
        if (!skipSpace())
            return false;
        if (!startsWith({ &c, 1 }))
            return fail(std::string("'") + c + "' expected");
        ++offset;
        return true;
    }

    bool readWord(std::string& word, const char* what)
    {
        if (!skipSpace())
            return false;
        if (startsWith("\""))
            return readQuoted(word);
        const std::size_t start = offset; // a plain word needs no quotes
        while (offset < text.size() && isWordCharacter(text[offset]))
            ++offset;
        word = text.substr(start, offset - start);
        return !word.empty() || fail(std::string(what) + " expected");
    }

    static bool isWordCharacter(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == '-';
    }

    bool readQuoted(std::string& word)
    {
        const std::size_t start = offset++;
        while (offset < text.size() && text[offset] != '"') {
            if (text[offset] == '\\') {
                if (!readEscape(word))
                    return false;
                continue;
            }
            const CodePoint point = codePointAt(text, offset);
            if (point.value == 0xfffd && text.substr(offset, point.length) != "\xef\xbf\xbd")
                return fail("the text is not UTF-8");
            word += text.substr(offset, point.length);
            offset += point.length;
        }
        if (offset == text.size()) {
            offset = start; // where it began says more than the file's end
            return fail("the text does not end");
        }
        ++offset;
        return true;
    }

    bool readEscape(std::string& word)
    {
        if (offset + 1 == text.size())
            return fail("the text does not end");
        const char c = text[offset + 1];
        if (c == 'U' || c == 'u')
            return readUnicodeEscape(word);
        offset += 2;
        word += c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
        return true;
    }

    bool readUnicodeEscape(std::string& word)
    {
        auto unit = readUnit();
        if (!unit)
            return fail("four hexadecimal digits expected after \\U");
        const bool isHigh = *unit >= 0xd800 && *unit < 0xdc00;
        if (isHigh && (startsWith("\\U") || startsWith("\\u"))) {
            const std::size_t before = offset;
            const auto low = readUnit();
            if (low && *low >= 0xdc00 && *low < 0xe000)
                *unit = 0x10000 + ((*unit - 0xd800) << 10) + (*low - 0xdc00);
            else
                offset = before;
        }
        appendUTF8(word, *unit); // U+FFFD for a lone surrogate
        return true;
    }

    std::optional<char32_t> readUnit() // at "\U"
    {
        char32_t unit = 0;
        for (std::size_t i = offset + 2; i < offset + 6; ++i) {
            const char c = i < text.size() ? text[i] : ' ';
            if (c >= '0' && c <= '9')
                unit = unit * 16 + static_cast<char32_t>(c - '0');
            else if (c >= 'a' && c <= 'f')
                unit = unit * 16 + static_cast<char32_t>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                unit = unit * 16 + static_cast<char32_t>(c - 'A' + 10);
            else
                return std::nullopt;
        }
        offset += 6;
        return unit;
    }

    const std::string_view text;
    std::size_t offset = 0;
};

} // namespace

StringTable parseStrings(std::string_view content, const std::string& name)
{
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (content.starts_with(byteOrderMark))
        content.remove_prefix(byteOrderMark.size());
    StringTable table;
    StringsReader reader(content);
    while (auto entry = reader.next())
        table.insert_or_assign(std::move(entry->key), std::move(entry->value));
    if (!reader.problem.empty())
        NSLog("strings file \"" + name + "\" is broken at line " + std::to_string(reader.line()) + ": " + reader.problem);
    return table;
}

} // namespace platform
