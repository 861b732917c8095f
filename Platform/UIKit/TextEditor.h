#pragma once

#include "Platform/UIKit/NSRange.h"
#include "Platform/UIKit/TextHistory.h"
#include "Platform/UIKit/TextPosition.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A single line of text that is being written: the text, what of it is selected, what an input method is still composing and what
// can be taken back.
// Knows characters and words, and nothing of how they look. Offsets are bytes; those given are taken back to where a character
// begins. Main thread.
class TextEditor {
public:
    enum class Unit : unsigned char { character, word, all };
    enum class Way : unsigned char { backward, forward };

    // As a line holds it: valid UTF-8, a space for every line break and tab, no other control characters.
    static std::string line(std::string_view text);

    const std::string& text() const { return text_; }
    // The caret goes to its end; a composition ends. Another text than there is cannot be taken back, nor what was done before.
    void setText(std::string_view text);

    // The end of the selection that moves, and the one that stays.
    TextPosition caret() const { return { caret_, caretLeansForward }; }
    std::size_t anchor() const { return anchor_; }
    NSRange selection() const; // of length 0 when there is only a caret
    std::string_view selectedText() const;
    void select(std::size_t anchor, std::size_t caret);
    void moveTo(TextPosition caret, bool extending = false); // extending keeps the anchor
    NSRange word(std::size_t offset) const; // around it; between words a single character

    // What is being composed; nothing at rest.
    std::optional<NSRange> markedRange() const { return marked; }
    // `caretInside` counts from the range's start. An empty text ends the composition.
    void setMarkedText(std::string_view text, std::size_t caretInside);
    void unmark(); // it stays as it is

    // What an insertion replaces, and what a deletion takes: the selection, else so much before or after the caret.
    NSRange insertionRange() const { return marked.value_or(selection()); }
    NSRange deletionRange(Way way, Unit unit) const;
    void replace(NSRange range, std::string_view text); // puts the caret behind it; a composition ends

    // The step that undo takes back, or redo does again; null when there is none, or something is being composed.
    const TextChange* undoable() const { return marked ? nullptr : history.undoable(); }
    const TextChange* redoable() const { return marked ? nullptr : history.redoable(); }
    void undo(); // and selects what was selected before
    void redo();
    void forgetHistory() { history.clear(); }

    // The border of a character or word from there on, in the text's order.
    std::size_t border(std::size_t offset, Way way, Unit unit) const;

private:
    bool isInWord(std::size_t offset) const;
    std::size_t snapped(std::size_t offset) const;
    void place(std::size_t anchor, std::size_t caret);
    TextChange put(NSRange range, std::string_view line);

    std::string text_;
    std::size_t caret_ = 0, anchor_ = 0;
    bool caretLeansForward = false;
    std::optional<NSRange> marked;
    TextChange composition; // what has become of the text since it began
    TextHistory history;
};

} // namespace platform
