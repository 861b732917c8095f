#include "Platform/UIKit/TextEditor.h"

#include "Platform/Foundation/Text.h"

#include <algorithm>

namespace platform {

namespace {

bool isSeparator(char32_t c) { return (c >= '\t' && c <= '\r') || c == 0x85 || c == 0x2028 || c == 0x2029; }
bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

bool isBlank(std::string_view text, std::size_t offset)
{
    const std::string_view character = text.substr(offset, codePointAt(text, offset).length);
    return !character.empty() && trimmed(character).empty();
}

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
    text_ = line(text);
    marked.reset();
    caret_ = anchor_ = text_.size();
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
    anchor_ = snapped(anchor);
    caret_ = snapped(caret);
}

void TextEditor::moveTo(std::size_t caret, bool extending)
{
    caret_ = snapped(caret);
    if (!extending)
        anchor_ = caret_;
}

void TextEditor::selectWord(std::size_t offset)
{
    offset = snapped(offset);
    if (text_.empty())
        return;
    if (offset == text_.size())
        offset = previousCharacterBoundary(text_, offset);
    if (isBlank(text_, offset))
        return select(offset, nextCharacterBoundary(text_, offset));
    const std::size_t end = border(offset, Way::forward, Unit::word);
    select(border(end, Way::backward, Unit::word), end);
}

void TextEditor::setMarkedText(std::string_view text, std::size_t caretInside)
{
    const std::string composed = line(text);
    const NSRange range = insertionRange();
    put(range, composed);
    marked = composed.empty() ? std::nullopt : std::optional(NSRange { range.location, composed.size() });
    moveTo(range.location + std::min(caretInside, composed.size()));
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
    put(range, line(text));
    marked.reset();
}

std::size_t TextEditor::border(std::size_t offset, Way way, Unit unit) const
{
    const bool forward = way == Way::forward;
    if (unit == Unit::all)
        return forward ? text_.size() : 0;
    if (unit == Unit::character)
        return forward ? nextCharacterBoundary(text_, offset) : previousCharacterBoundary(text_, offset);
    const std::size_t end = forward ? text_.size() : 0;
    bool inWord = false;
    while (offset != end) {
        const std::size_t next = border(offset, way, Unit::character);
        const bool blank = isBlank(text_, std::min(offset, next));
        if (blank && inWord)
            break;
        inWord = !blank;
        offset = next;
    }
    return offset;
}

std::size_t TextEditor::snapped(std::size_t offset) const
{
    if (offset >= text_.size())
        return text_.size();
    const std::size_t before = previousCharacterBoundary(text_, offset);
    return nextCharacterBoundary(text_, before) == offset ? offset : before;
}

void TextEditor::put(NSRange range, std::string_view line)
{
    range.location = std::min(range.location, text_.size());
    range.length = std::min(range.length, text_.size() - range.location);
    text_.replace(range.location, range.length, line);
    caret_ = anchor_ = range.location + line.size();
}

} // namespace platform
