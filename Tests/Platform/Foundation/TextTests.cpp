#include "Platform/Foundation/Text.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <vector>

namespace platform {

namespace {

std::vector<std::size_t> ourBoundaries(const std::string& text)
{
    std::vector<std::size_t> boundaries { 0 };
    while (boundaries.back() < text.size())
        boundaries.push_back(nextCharacterBoundary(text, boundaries.back()));
    return boundaries;
}

// An independent judge of where characters begin.
class IcuCharacters {
public:
    IcuCharacters()
    {
        UErrorCode error = U_ZERO_ERROR;
        iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    }

    std::vector<std::size_t> boundaries(const std::string& text)
    {
        UErrorCode error = U_ZERO_ERROR;
        UText view = UTEXT_INITIALIZER;
        utext_openUTF8(&view, text.data(), static_cast<int64_t>(text.size()), &error);
        iterator->setText(&view, error);
        std::vector<std::size_t> found;
        for (int32_t at = iterator->first(); at != icu::BreakIterator::DONE; at = iterator->next())
            found.push_back(static_cast<std::size_t>(at));
        utext_close(&view);
        return found;
    }

private:
    std::unique_ptr<icu::BreakIterator> iterator;
};

std::string hex(const std::string& text)
{
    std::string out;
    for (std::size_t offset = 0; offset < text.size(); offset += codePointAt(text, offset).length) {
        char number[16];
        std::snprintf(number, sizeof number, "%04X ", static_cast<unsigned>(codePointAt(text, offset).value));
        out += number;
    }
    return out;
}

} // namespace

TEST(Text, countsWhatAReaderPerceives)
{
    struct Case {
        const char* why;
        const char* text;
        std::size_t count;
    };
    const Case cases[] = {
        { "nothing", "", 0 },
        { "plain letters", "Hello", 5 },
        { "line ends", "a\r\nb\n\rc", 6 },
        { "an emoji family", "👨‍👩‍👧‍👦", 1 },
        { "a flag and a half", "🇩🇪🇧", 2 },
        { "a Devanagari word", "नमस्ते", 3 },
        { "a control does not take an accent", "\n\xcc\x81", 2 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(characterCount(c.text), c.count);
    }
}

TEST(Text, agreesWithIcuOnEveryCodePointBetweenItsNeighbours)
{
    IcuCharacters icu;
    const std::vector<std::string> neighbours = { "a", "\xcc\x81", "\xe2\x80\x8d", "\xf0\x9f\x91\xa8", "\xe0\xa4\x95",
        "\xe1\x84\x92", "\xe1\x85\xa1", "\xe1\x86\xab", "\xf0\x9f\x87\xa9", "\xd8\x80" };
    int compared = 0;
    for (char32_t c = 0x20; c < 0x110000; ++c) {
        const bool isQuiet = (c >= 0x3400 && c < 0x9fff) || (c >= 0x20000 && c < 0xe0000) || c > 0xe1000;
        if ((c >= 0xd800 && c < 0xe000) || (isQuiet && c % 256 != 0) || u_charType(static_cast<UChar32>(c)) == U_UNASSIGNED)
            continue;
        std::string text;
        for (const std::string& neighbour : neighbours) {
            text += neighbour;
            appendUTF8(text, c);
        }
        ++compared;
        ASSERT_EQ(ourBoundaries(text), icu.boundaries(text)) << hex(text);
    }
    EXPECT_GT(compared, 50'000);
}

TEST(Text, agreesWithIcuOnRandomSequencesBothWays)
{
    IcuCharacters icu;
    const std::vector<char32_t> alphabet = { 'a', ' ', '\r', '\n', 0x7, 0xad, 0xe9, 0x301, 0x200c, 0x200d, 0xfe0f, 0x1f468,
        0x2764, 0x1f3fd, 0x1f1e9, 0x1f1ea, 0x915, 0x937, 0x94d, 0x93c, 0x93f, 0x9a8, 0x9cd, 0xd15, 0xd4d, 0x0bcd, 0x0b95, 0x1112,
        0x1161, 0x11ab, 0xac00, 0xac01, 0x600, 0xe33, 0xe01, 0xe0067, 0xfffd, 0x4e00, 0x20e3, 0x11f02, 0x1b44 };
    std::mt19937 random(20250314);
    for (int round = 0; round < 30'000; ++round) {
        std::string text;
        for (unsigned i = random() % 12; i > 0; --i)
            appendUTF8(text, alphabet[random() % alphabet.size()]);
        const auto expected = icu.boundaries(text);
        ASSERT_EQ(ourBoundaries(text), expected) << hex(text);
        for (std::size_t i = 1; i < expected.size(); ++i)
            ASSERT_EQ(previousCharacterBoundary(text, expected[i]), expected[i - 1]) << hex(text) << " at " << expected[i];
    }
}

TEST(Text, takesCharactersFromTheFront)
{
    const std::string text = "👨‍👩‍👧a🇩🇪";
    EXPECT_EQ(firstCharacter(text), "👨‍👩‍👧");
    EXPECT_EQ(prefix(text, 2), "👨‍👩‍👧a");
    EXPECT_EQ(prefix(text, 0), "");
    EXPECT_EQ(prefix(text, 99), text);
    std::vector<std::string> all;
    for (const std::string_view character : Characters(text))
        all.emplace_back(character);
    EXPECT_EQ(all, (std::vector<std::string> { "👨‍👩‍👧", "a", "🇩🇪" }));
}

TEST(Text, theEndsAreBoundaries)
{
    EXPECT_EQ(nextCharacterBoundary("ab", 2), 2u);
    EXPECT_EQ(nextCharacterBoundary("ab", 99), 2u);
    EXPECT_EQ(previousCharacterBoundary("ab", 0), 0u);
    EXPECT_EQ(previousCharacterBoundary("ab", 99), 1u);
    EXPECT_EQ(previousCharacterBoundary("", 0), 0u);
    EXPECT_EQ(firstCharacter(""), "");
}

TEST(Text, aHugeTextCostsNoMoreThanTheQuestion)
{
    const std::string huge(200'000'000, 'a');
    EXPECT_EQ(characterCount(huge, 150), 150u);
    EXPECT_EQ(prefix(huge, 150).size(), 150u);
    EXPECT_EQ(previousCharacterBoundary(huge, huge.size()), huge.size() - 1);
    std::string marks = "a";
    for (int i = 0; i < 1'000'000; ++i)
        marks += "\xcc\x81";
    EXPECT_EQ(characterCount(marks), 1u);
    for (int i = 0; i < 1000; ++i)
        EXPECT_LT(previousCharacterBoundary(marks, marks.size()), marks.size());
}

TEST(Text, replacesInvalidBytesPartByPart)
{
    struct Case {
        const char* why;
        std::string bytes;
        const char* text;
    };
    const Case cases[] = {
        { "valid stays", "aé€😀\xef\xbf\xbd", "aé€😀�" },
        { "stray continuation bytes", "\x80\xbf", "��" },
        { "overlong", "\xc0\xaf\xe0\x80\xaf", "�����" },
        { "a surrogate", "\xed\xa0\x80", "���" },
        { "beyond the last code point", "\xf4\x90\x80\x80", "����" },
        { "bytes that never occur", "\xfe\xff", "��" },
        { "cut sequences are one each", "\xe2\x82 \xf0\x9f\x98 \xe1", "� � �" },
        { "the standard's example", "\x61\xf1\x80\x80\xe1\x80\xc2\x62\x80\x63\x80\xbf\x64", "a���b�c��d" },
        { "a zero byte stays", std::string("a\0b", 3), nullptr },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const std::string expected = c.text ? c.text : c.bytes;
        EXPECT_EQ(validUTF8(c.bytes), expected);
        EXPECT_EQ(isValidUTF8(c.bytes), c.bytes == expected);
    }
}

TEST(Text, randomBytesNeverLeadAstray)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        std::string bytes(random() % 20, ' ');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        ASSERT_TRUE(isValidUTF8(validUTF8(bytes)));
        const auto boundaries = ourBoundaries(bytes);
        ASSERT_EQ(boundaries.back(), bytes.size());
        ASSERT_EQ(boundaries.size() - 1, characterCount(validUTF8(bytes)));
        for (std::size_t i = 1; i < boundaries.size(); ++i)
            ASSERT_EQ(previousCharacterBoundary(bytes, boundaries[i]), boundaries[i - 1]);
        trimmed(bytes);
    }
}

TEST(Text, trimsWhiteSpaceOfAllKinds)
{
    EXPECT_EQ(trimmed(" \t\r\n hello  world \n"), "hello  world");
    EXPECT_EQ(trimmed("\xc2\xa0\xe3\x80\x80name\xe2\x80\x89"), "name");
    EXPECT_EQ(trimmed(" \n "), "");
    EXPECT_EQ(trimmed("\xff "), "\xff");
}

} // namespace platform
