#include "Platform/UIKit/TextEditor.h"

#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/WordCharacters.h"

#include <algorithm>

namespace platform {

namespace {

bool isSeparator(char32_t c) { return (c >= '\t' && c <= '\r') || c == 0x85 || c == 0x2028 || c == 0x2029; }
bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

bool isApostrophe(char32_t c) { return c == '\'' || c == 0x2019; }

} // namespace

std::string TextEditor::line(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();) {
        const CodePoint read = codePointAt(text, offset);
        if (read.value == '\r' && text.substr(offset + 1, 1) == "\n")
            ++offset; // both are one break
        if (isSeparator(read.value))
            result += ' ';
        else if (!isControl(read.value))
            appendUTF8(result, read.value);
        offset += std::max<std::size_t>(read.length, 1);
    }
    return result;
}

void TextEditor::setText(std::string_view text)
{
    std::string given = line(text);
    unmark();
    if (given != text_)
        history.clear();
    text_ = std::move(given);
    select(text_.size(), text_.size());
}

NSRange TextEditor::selection() const
{
    return { std::min(anchor_, caret_), std::max(anchor_, caret_) - std::min(anchor_, caret_) };
}

std::string_view TextEditor::selectedText() const
{
    const NSRange range = selection();
    return std::string_view(text_).substr(range.location, range.length);
}

void TextEditor::select(std::size_t anchor, std::size_t caret)
{
    history.endStep();
    place(anchor, caret);
}

void TextEditor::moveTo(TextPosition caret, bool extending)
{
    history.endStep();
    caret_ = snapped(caret.offset);
    caretLeansForward = caret.leansForward;
    if (!extending)
        anchor_ = caret_;
}

NSRange TextEditor::word(std::size_t offset) const
{
    offset = snapped(offset);
    if (offset == text_.size())
        offset = previousCharacterBoundary(text_, offset);
    if (!isInWord(offset))
        return { offset, nextCharacterBoundary(text_, offset) - offset };
    const std::size_t end = border(offset, Way::forward, Unit::word), start = border(end, Way::backward, Unit::word);
    return { start, end - start };
}

void TextEditor::setMarkedText(std::string_view text, std::size_t caretInside)
{
    const std::string composed = line(text);
    const NSRange range = insertionRange();
    const TextChange change = put(range, composed);
    if (!marked)
        composition = change;
    marked = NSRange { range.location, composed.size() };
    const std::size_t caret = range.location + std::min(caretInside, composed.size());
    place(caret, caret);
    if (composed.empty())
        unmark();
}

void TextEditor::unmark()
{
    if (!marked)
        return;
    composition.inserted = text_.substr(marked->location, marked->length);
    history.add(composition);
    marked.reset();
}

NSRange TextEditor::deletionRange(Way way, Unit unit) const
{
    if (const NSRange selected = selection(); selected.length > 0)
        return selected;
    const std::size_t to = border(caret_, way, unit);
    return { std::min(caret_, to), std::max(caret_, to) - std::min(caret_, to) };
}

void TextEditor::replace(NSRange range, std::string_view text)
{
    const std::string written = line(text);
    if (range == marked) {
        put(range, written);
        marked->length = written.size();
        return unmark();
    }
    unmark();
    const std::size_t start = snapped(range.location), end = std::max(start, snapped(range.end()));
    history.add(put({ start, end - start }, written));
}

void TextEditor::undo()
{
    if (const TextChange* step = undoable()) {
        put({ step->location, step->inserted.size() }, step->removed);
        place(step->anchor, step->caret);
        history.didUndo();
    }
}

void TextEditor::redo()
{
    if (const TextChange* step = redoable()) {
        put({ step->location, step->removed.size() }, step->inserted);
        history.didRedo();
    }
}

std::size_t TextEditor::border(std::size_t offset, Way way, Unit unit) const
{
    const bool forward = way == Way::forward;
    if (unit == Unit::all)
        return forward ? text_.size() : 0;
    if (unit == Unit::character)
        return forward ? nextCharacterBoundary(text_, offset) : previousCharacterBoundary(text_, offset);
    // Over what lies between, then over the word.
    const std::size_t end = forward ? text_.size() : 0;
    for (bool inWord = false; offset != end;) {
        const std::size_t next = border(offset, way, Unit::character);
        const bool belongs = isInWord(std::min(offset, next));
        if (inWord && !belongs)
            break;
        inWord = belongs;
        offset = next;
    }
    return offset;
}

// Whether the character that begins there is part of a word; an apostrophe between two letters is.
bool TextEditor::isInWord(std::size_t offset) const
{
    const auto isWordAt = [&](std::size_t at) { return isWordCharacter(codePointAt(text_, at).value); };
    if (offset >= text_.size() || isWordAt(offset))
        return offset < text_.size();
    const std::size_t next = nextCharacterBoundary(text_, offset);
    return offset > 0 && next < text_.size() && isApostrophe(codePointAt(text_, offset).value)
        && isWordAt(previousCharacterBoundary(text_, offset)) && isWordAt(next);
}

std::size_t TextEditor::snapped(std::size_t offset) const
{
    if (offset >= text_.size())
        return text_.size();
    while (offset > 0 && (static_cast<unsigned char>(text_[offset]) & 0xc0) == 0x80) // inside a code point's bytes
        --offset;
    const std::size_t before = previousCharacterBoundary(text_, offset);
    return nextCharacterBoundary(text_, before) == offset ? offset : before;
}

void TextEditor::place(std::size_t anchor, std::size_t caret)
{
    anchor_ = snapped(anchor);
    caret_ = snapped(caret);
    caretLeansForward = false;
}

// Exactly that range: what is composed or taken back may begin inside a character.
TextChange TextEditor::put(NSRange range, std::string_view line)
{
    TextChange change { range.location, text_.substr(range.location, range.length), std::string(line), anchor_, caret_ };
    text_.replace(range.location, range.length, line);
    const std::size_t caret = range.location + line.size();
    place(caret, caret);
    return change;
}

} // namespace platform
