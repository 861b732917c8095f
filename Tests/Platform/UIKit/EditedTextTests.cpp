#include "Platform/UIKit/EditedText.h"

#include "Tests/Platform/UIKit/KitResources.h"

namespace platform {
namespace {

EditedText::Style styleOf(TextDirection direction = TextDirection::leftToRight)
{
    EditedText::Style style;
    style.font = kitFont("Regular", 20).ctFont();
    style.color = { 0, 0, 0, 1 };
    style.direction = direction;
    style.scale = 2;
    return style;
}

EditedText laidOut(std::string_view text, TextDirection direction = TextDirection::leftToRight)
{
    EditedText result;
    result.update(text, styleOf(direction));
    return result;
}

// The places that the arrow key goes through from one end to the other.
std::vector<TextPosition> walk(const EditedText& text, TextPosition from, bool toTheLeft)
{
    std::vector<TextPosition> places { from };
    while (const auto next = text.beside(places.back(), toTheLeft)) {
        places.push_back(*next);
        if (places.size() > 100) {
            ADD_FAILURE() << "goes round in a circle";
            break;
        }
    }
    return places;
}

TEST(EditedText, goesThroughEveryPlaceInTheEyesOrder)
{
    struct Case {
        const char* why;
        std::string text;
        std::size_t characters;
    };
    const Case cases[] = {
        { "left to right, blanks at the end", "ab c  ", 6 },
        { "right to left", "\u05e9\u05dc\u05d5\u05dd", 4 },
        { "mixed", "abc \u05d0\u05d1\u05d2 def 12", 14 },
        { "mixed, numbers in Hebrew", "\u05d0\u05d1 12 xyz", 9 },
        { "a joined letter pair and a ligature", "\u0644\u0627 office", 9 },
        { "emoji", "a\U0001F468\u200D\U0001F469\u200D\U0001F467b", 3 },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const EditedText text = laidOut(c.text);
        const TextPosition leftEnd = text.positionAt(-5);
        EXPECT_NEAR(text.x(leftEnd), 0, 0.01);
        const auto rightwards = walk(text, leftEnd, false);
        ASSERT_EQ(rightwards.size(), c.characters + 1);
        EXPECT_NEAR(text.x(rightwards.back()), text.width(), 0.01);
        for (std::size_t i = 1; i < rightwards.size(); ++i) {
            EXPECT_GT(text.x(rightwards[i]), text.x(rightwards[i - 1]));
            const double middle = (text.x(rightwards[i]) + text.x(rightwards[i - 1])) / 2;
            EXPECT_NEAR(text.x(text.positionAt(middle - 0.2)), text.x(rightwards[i - 1]), 0.01);
            EXPECT_NEAR(text.x(text.positionAt(middle + 0.2)), text.x(rightwards[i]), 0.01);
        }
        const auto leftwards = walk(text, rightwards.back(), true);
        ASSERT_EQ(leftwards.size(), rightwards.size());
        for (std::size_t i = 0; i < leftwards.size(); ++i)
            EXPECT_NEAR(text.x(leftwards[i]), text.x(rightwards[rightwards.size() - 1 - i]), 0.01);
    }
}

TEST(EditedText, standsWhereTheNextLetterGoes)
{
    const EditedText plain = laidOut("ab ");
    EXPECT_NEAR(plain.x({ 3 }), plain.width(), 0.01);
    EXPECT_GT(plain.x({ 3 }), plain.x({ 2 }) + 1) << "a blank at the end counts";
    const EditedText hebrew = laidOut("\u05d0\u05d1");
    EXPECT_TRUE(hebrew.isRightToLeft()) << "by its first letter";
    EXPECT_NEAR(hebrew.x({ 4 }), 0, 0.01);
    EXPECT_NEAR(hebrew.x({ 0 }), hebrew.width(), 0.01);
    EXPECT_FALSE(laidOut("12", TextDirection::leftToRight).isRightToLeft());
    EXPECT_TRUE(laidOut("12", TextDirection::rightToLeft).isRightToLeft()) << "numbers have no direction";
    const EditedText empty = laidOut("");
    EXPECT_EQ(empty.x({ 0 }), 0);
    EXPECT_EQ(empty.height(), plain.height());
    // A selection over a change of direction lies in two places.
    const EditedText mixed = laidOut("abc \u05d0\u05d1\u05d2");
    EXPECT_EQ(mixed.spans({ 2, 4 }, 0, 1000).size(), 2u);
    EXPECT_EQ(mixed.spans({ 0, 10 }, 0, 1000).size(), 1u);
}

TEST(EditedText, aLongTextIsLaidOutAnewOnlyAroundAChange)
{
    std::string content;
    for (int i = 0; content.size() < 40000; ++i)
        content += i % 7 == 3 ? "\u05e9\u05dc\u05d5\u05dd " : "wandering " + std::to_string(i) + ' ';
    EditedText text = laidOut(content);
    const auto numbers = [&] {
        std::vector<std::uint64_t> all;
        for (const auto* stretch : text.stretches(0, text.width()))
            all.push_back(stretch->number);
        return all;
    };
    struct Edit {
        const char* why;
        std::size_t at, removed;
        std::string put;
    };
    const Edit edits[] = { { "a joining mark where a stretch ends", text.stretches(0, text.width())[9]->start, 0, "\u0301" },
        { "a letter inside", 20003, 0, "x" }, { "at the beginning", 0, 0, "y" }, { "at the end", 40000, 0, "z" },
        { "over some stretches", 5000, 3000, "" }, { "a joining mark", 10000, 0, "\u0301" },
        { "a page", 777, 1, content.substr(0, 1500) } };
    for (const Edit& edit : edits) {
        SCOPED_TRACE(edit.why);
        auto before = numbers();
        std::size_t at = std::min(edit.at, content.size());
        while (at > 0 && at < content.size() && (static_cast<unsigned char>(content[at]) & 0xc0) == 0x80)
            ++at;
        std::size_t end = std::min(at + edit.removed, content.size());
        while (end < content.size() && (static_cast<unsigned char>(content[end]) & 0xc0) == 0x80)
            ++end;
        content.replace(at, end - at, edit.put);
        text.update(content, styleOf());
        const auto after = numbers();
        EXPECT_LE(std::ranges::count_if(after, [&](auto number) { return std::ranges::find(before, number) == before.end(); }),
            2 + std::ptrdiff_t(edit.put.size() / 512));
        for (const auto* stretch : text.stretches(-1, text.width() + 1))
            EXPECT_NE(content.compare(stretch->start, 2, "\u0301"), 0) << "a mark stays with its letter";
        // The same as laid out from nothing, but for the places of the cuts.
        std::size_t covered = 0;
        CGFloat x = 0;
        for (const auto* stretch : text.stretches(-1, text.width() + 1)) {
            ASSERT_EQ(stretch->start, covered);
            ASSERT_NEAR(stretch->x, x, 0.01);
            covered += stretch->length;
            x += stretch->width;
        }
        EXPECT_EQ(covered, content.size());
        EXPECT_NEAR(text.width(), laidOut(content).width(), text.width() * 0.001);
        EXPECT_NEAR(text.x({ content.size() }), text.width(), 0.01);
    }
}

} // namespace
} // namespace platform
