#include "Platform/UIKit/TextEditor.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Way = TextEditor::Way;
using Unit = TextEditor::Unit;

TEST(TextEditor, takesPerceivedCharactersOneByOne)
{
    struct Case {
        const char* why;
        std::string before, character, after;
    };
    const Case cases[] = {
        { "letter with a combining accent", "a", "e\u0301", "z" },
        { "family of four, joined", "x", "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466", "x" },
        { "skin tone", "", "\U0001F44B\U0001F3FD", "!" },
        { "second of two flags", "\U0001F1E9\U0001F1EA", "\U0001F1EB\U0001F1F7", "" },
        { "Devanagari conjunct with its vowel", "\u0928\u092E", "\u0938\u094D\u0924\u0947", "" },
        { "Hangul in parts", "\uAC00", "\u1112\u1161\u11AB", "\uAC00" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        TextEditor editor;
        editor.setText(c.before + c.character + c.after);
        const std::size_t start = c.before.size(), end = start + c.character.size();
        editor.moveTo({ end });
        EXPECT_EQ(editor.deletionRange(Way::backward, Unit::character), (NSRange { start, end - start }));
        editor.moveTo({ start });
        EXPECT_EQ(editor.deletionRange(Way::forward, Unit::character), (NSRange { start, end - start }));
        if (c.character.size() > 1) {
            editor.select(end - 1, end - 1);
            EXPECT_EQ(editor.caret().offset, start) << "no place is inside a character";
        }
        editor.replace({ start, end - start }, "");
        EXPECT_EQ(editor.text(), c.before + c.after);
        EXPECT_EQ(editor.selection(), (NSRange { start, 0 }));
    }
}

TEST(TextEditor, keepsToOneLineOfValidText)
{
    TextEditor editor;
    editor.setText("one\r\ntwo\nthree\tfour\u2028five\x01\x7f");
    EXPECT_EQ(editor.text(), "one two three four five");
    editor.replace({ 3, 5 }, "\xff\xc3 ok\xe2\x82");
    EXPECT_EQ(editor.text(), "one\uFFFD\uFFFD ok\uFFFDthree four five") << "no byte is lost without a sign of it";
    editor.replace({ 1000, 5 }, "!");
    EXPECT_EQ(editor.text().back(), '!');
    editor.setText("\u00e9");
    editor.replace({ 1, 1 }, "x"); // half of a letter
    EXPECT_EQ(editor.text(), "x");
}

TEST(TextEditor, goesByWords)
{
    TextEditor editor;
    editor.setText("The  big-hearted crowd's \u4f60\u597d.");
    std::string stops;
    for (std::size_t at = 0; at < editor.text().size();) {
        at = editor.border(at, Way::forward, Unit::word);
        stops += editor.text().substr(0, at).back();
    }
    EXPECT_EQ(stops, std::string("egds\xbd.")) << "the ends of the words, then of what follows";
    std::string starts;
    for (std::size_t at = editor.text().size(); at > 0;) {
        at = editor.border(at, Way::backward, Unit::word);
        starts += editor.text()[at];
    }
    EXPECT_EQ(starts,
        "\xe4"
        "chbT");
    const auto wordAt = [&](std::size_t offset) {
        const NSRange word = editor.word(offset);
        return editor.text().substr(word.location, word.length);
    };
    EXPECT_EQ(wordAt(7), "big");
    EXPECT_EQ(wordAt(3), " ") << "a blank is a word of its own";
    EXPECT_EQ(wordAt(20), "crowd's");
    EXPECT_EQ(wordAt(editor.text().size()), ".");
}

TEST(TextEditor, composesInThePlaceOfTheSelection)
{
    TextEditor editor;
    editor.setText("say hello");
    editor.select(4, 9);
    editor.setMarkedText("ni", 1);
    EXPECT_EQ(editor.text(), "say ni");
    EXPECT_EQ(editor.markedRange(), (NSRange { 4, 2 }));
    EXPECT_EQ(editor.caret().offset, 5u);
    editor.setMarkedText("\u4f60", 3);
    EXPECT_EQ(editor.text(), "say \u4f60") << "what was composed before is replaced";
    editor.replace(editor.insertionRange(), "\u4f60\u597d");
    EXPECT_EQ(editor.text(), "say \u4f60\u597d");
    EXPECT_FALSE(editor.markedRange());
    editor.setMarkedText("x", 1);
    editor.setMarkedText("", 0);
    EXPECT_EQ(editor.text(), "say \u4f60\u597d") << "an empty composition leaves nothing";
    EXPECT_FALSE(editor.markedRange());
}

} // namespace
} // namespace platform
