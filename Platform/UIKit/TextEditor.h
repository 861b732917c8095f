#pragma once

#include "Platform/UIKit/NSRange.h"
#include "Platform/UIKit/TextPosition.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

// A single line of text that is being written: the text, what of it is selected and what an input method is still composing.
// Knows characters and words, and nothing of how they look. Offsets are bytes; those given are taken back to where a character
// begins. Main thread.
class TextEditor {
public:
    enum class Unit : unsigned char { character, word, all };
    enum class Way : unsigned char { backward, forward };

    // As a line holds it: valid UTF-8, a space for every line break and tab, no other control characters.
    static std::string line(std::string_view text);

    const std::string& text() const { return text_; }
    void setText(std::string_view text); // the caret goes to its end; a composition ends

    // The end of the selection that moves, and the one that stays.
    TextPosition caret() const { return { caret_, caretLeansForward }; }
    std::size_t anchor() const { return anchor_; }
    NSRange selection() const; // of length 0 when there is only a caret
    std::string_view selectedText() const;
    void select(std::size_t anchor, std::size_t caret);
    void moveTo(TextPosition caret, bool extending = false); // extending keeps the anchor
    void selectWord(std::size_t offset); // around it; between words a single character

    // What is being composed; nothing at rest.
    std::optional<NSRange> markedRange() const { return marked; }
    // `caretInside` counts from the range's start. An empty text ends the composition.
    void setMarkedText(std::string_view text, std::size_t caretInside);
    void unmark() { marked.reset(); }

    // What an insertion replaces, and what a deletion takes: the selection, else so much before or after the caret.
    NSRange insertionRange() const { return marked.value_or(selection()); }
    NSRange deletionRange(Way way, Unit unit) const;
    void replace(NSRange range, std::string_view text); // puts the caret behind it; a composition ends

    // The border of a character or word from there on, in the text's order.
    std::size_t border(std::size_t offset, Way way, Unit unit) const;

private:
    bool isInWord(std::size_t offset) const;
    std::size_t snapped(std::size_t offset) const;
    void put(NSRange range, std::string_view line);

    std::string text_;
    std::size_t caret_ = 0, anchor_ = 0;
    bool caretLeansForward = false;
    std::optional<NSRange> marked;
};

} // namespace platform
