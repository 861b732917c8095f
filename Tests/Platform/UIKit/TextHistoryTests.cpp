#include "Platform/UIKit/TextHistory.h"

#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/TextEditor.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace platform {
namespace {

using Way = TextEditor::Way;
using Unit = TextEditor::Unit;

// Characters are typed one by one; "<" and ">" delete before and after the caret, "|" puts it where it is, "^" at the beginning,
// "~" selects everything, "-" takes back, and what stands in brackets is pasted.
void write(TextEditor& editor, std::string_view keys)
{
    std::string pasted;
    bool pastes = false;
    for (const auto key : Characters(keys)) {
        if (key == "[" || key == "]") {
            pastes = key == "[";
            if (!pastes)
                editor.replace(editor.insertionRange(), std::exchange(pasted, {}));
        } else if (pastes)
            pasted += key;
        else if (key == "<" || key == ">")
            editor.replace(editor.deletionRange(key == "<" ? Way::backward : Way::forward, Unit::character), "");
        else if (key == "|")
            editor.moveTo(editor.caret());
        else if (key == "^")
            editor.select(0, 0);
        else if (key == "-")
            editor.undo();
        else if (key == "~")
            editor.select(0, editor.text().size());
        else
            editor.replace(editor.insertionRange(), key);
    }
}

TEST(TextHistory, takesBackWhatBelongsTogether)
{
    struct Case {
        const char* why;
        const char* keys;
        std::vector<std::string> before; // after each step back
    };
    const Case cases[] = {
        { "a word with the blanks behind it", "one  two", { "one  ", "" } },
        { "a comma and an apostrophe are no blanks", "it's,so", { "" } },
        { "a row of deletions", "abcd<<<", { "abcd", "" } },
        { "forwards too", "abcd^>>", { "abcd", "" } },
        { "a caret that was moved begins anew", "ab|c<|<", { "ab", "abc", "ab", "" } },
        { "what is pasted stands alone", "a[xy]b", { "axy", "a", "" } },
        { "what is written over a selection goes with it", "ab~cd", { "ab", "" } },
        { "what is cut does not go with what is deleted then", "[a b]^~<[cd]<<", { "cd", "", "a b", "" } },
        { "typing elsewhere", "ab^c", { "ab", "" } },
        { "a caret that was set begins anew", "[abcd]^>^>", { "bcd", "abcd", "" } },
        { "so does what was taken back", "ab<-c", { "ab", "" } },
        { "nothing", "<>", {} },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        TextEditor editor;
        write(editor, c.keys);
        std::vector<std::string> after { editor.text() };
        for (const auto& text : c.before) {
            ASSERT_TRUE(editor.undoable());
            editor.undo();
            EXPECT_EQ(editor.text(), text);
            after.push_back(text);
        }
        EXPECT_FALSE(editor.undoable());
        editor.undo();
        while (editor.redoable()) {
            EXPECT_EQ(editor.text(), after.back());
            after.pop_back();
            editor.redo();
        }
        EXPECT_EQ(after, std::vector { editor.text() });
    }
}

TEST(TextHistory, selectsWhatWasSelected)
{
    TextEditor editor;
    write(editor, "[tea for two]");
    editor.select(8, 4);
    write(editor, "x");
    editor.undo();
    EXPECT_EQ(editor.anchor(), 8u);
    EXPECT_EQ(editor.caret().offset, 4u);
    editor.redo();
    EXPECT_EQ(editor.selection(), (NSRange { 5, 0 }));
    editor.undo();
    write(editor, "y");
    EXPECT_EQ(editor.text(), "tea ytwo");
    EXPECT_FALSE(editor.redoable()) << "there is another text now";
    editor.select(1, 3);
    write(editor, "<<");
    editor.undo();
    EXPECT_EQ(editor.text(), "t ytwo") << "what was selected went in a step of its own";
    editor.undo();
    editor.setText("tea ytwo");
    EXPECT_TRUE(editor.undoable()) << "the same text again";
    editor.setText("tea");
    EXPECT_FALSE(editor.undoable());
}

TEST(TextHistory, takesACompositionForOneStep)
{
    TextEditor editor;
    write(editor, "say [hello]");
    editor.select(4, 9);
    editor.setMarkedText("n", 1);
    editor.setMarkedText("ni", 2);
    EXPECT_FALSE(editor.undoable()) << "before it is done";
    editor.replace(editor.insertionRange(), "\u4f60");
    write(editor, "|!");
    editor.setMarkedText("ha", 2);
    editor.unmark();
    EXPECT_EQ(editor.text(), "say \u4f60!ha");
    for (const char* text : { "say \u4f60!", "say \u4f60", "say hello" }) {
        editor.undo();
        EXPECT_EQ(editor.text(), text);
    }
    EXPECT_EQ(editor.selection(), (NSRange { 4, 5 }));
    editor.setMarkedText("x", 1);
    editor.setMarkedText("", 0);
    EXPECT_EQ(editor.text(), "say ");
    editor.undo();
    EXPECT_EQ(editor.text(), "say hello") << "also one that was given up";

    editor.setText("\u0915"); // a vowel sign that joins the letter before it
    editor.setMarkedText("\u093f", 3);
    editor.setMarkedText("\u0940", 3);
    EXPECT_EQ(editor.text(), "\u0915\u0940") << "the letter is not composed";
    editor.undo();
    editor.replace(editor.insertionRange(), "\u0940");
    EXPECT_EQ(editor.text(), "\u0915\u0940");
    editor.undo();
    EXPECT_EQ(editor.text(), "\u0915");
    editor.replace(editor.insertionRange(), "\u0301");
    editor.undo();
    EXPECT_EQ(editor.text(), "\u0915") << "an accent, typed";
}

TEST(TextHistory, isBoundedInNumberAndSize)
{
    TextEditor editor;
    const auto undoAll = [&] {
        std::size_t count = 0;
        for (; editor.undoable(); ++count)
            editor.undo();
        return count;
    };
    for (int i = 0; i < 150; ++i)
        write(editor, "[ab]");
    EXPECT_EQ(undoAll(), TextHistory::mostSteps);
    EXPECT_EQ(editor.text().size(), 100u) << "the oldest stay done";
    editor.setText("");
    const std::string large(100 << 10, 'x');
    for (int i = 0; i < 3; ++i)
        editor.replace(editor.insertionRange(), large);
    EXPECT_EQ(undoAll(), 2u);
    EXPECT_EQ(editor.text().size(), large.size());
    editor.replace(editor.insertionRange(), large + large + large);
    write(editor, "|a");
    EXPECT_EQ(undoAll(), 1u) << "what is larger than all of it is not kept";
    EXPECT_EQ(editor.text().size(), 4 * large.size());
}

TEST(TextHistory, leadsBackAndForthThroughWhateverWasDone)
{
    std::mt19937 random(7);
    const auto below = [&](std::size_t end) { return std::size_t(random() % end); };
    const std::vector<std::string> texts { "a", "b", " ", "\u0301", "\u05e9", "\U0001F468\u200D", "\U0001F469", "", "[two words]",
        "\u093f" };
    for (int round = 0; round < 300; ++round) {
        TextEditor editor;
        editor.setText("first \u0915 words");
        const std::string first = editor.text();
        for (int i = 0; i < 60; ++i) {
            const auto& text = texts[below(texts.size())];
            const std::size_t at = below(editor.text().size() + 1);
            switch (below(8)) {
            case 0:
                editor.select(at, below(editor.text().size() + 1));
                break;
            case 1:
                editor.setMarkedText(text, below(4));
                break;
            case 2:
                editor.unmark();
                break;
            case 3:
                editor.replace(editor.deletionRange(Way(below(2)), Unit(below(2))), "");
                break;
            case 4:
                below(2) ? editor.undo() : editor.redo();
                break;
            case 5:
                editor.replace({ at, below(5) }, text);
                break;
            default:
                editor.replace(editor.insertionRange(), text);
            }
        }
        editor.unmark();
        while (editor.redoable())
            editor.redo();
        const std::string last = editor.text();
        while (editor.undoable())
            editor.undo();
        ASSERT_EQ(editor.text(), first) << round;
        while (editor.redoable())
            editor.redo();
        ASSERT_EQ(editor.text(), last) << round;
    }
}

} // namespace
} // namespace platform
