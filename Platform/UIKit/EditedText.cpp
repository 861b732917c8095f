#include "Platform/UIKit/EditedText.h"

#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/TextPicture.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace platform {

namespace {

constexpr std::size_t longestWhole = 2048; // bytes that are laid out in one piece, mixed directions and all
constexpr std::size_t stretchLength = 512; // bytes of the pieces of a longer one; what a key stroke lays out anew
constexpr std::size_t longestWord = 512; // bytes more that are looked through for a blank

std::size_t commonPrefix(std::string_view a, std::string_view b)
{
    return std::size_t(std::ranges::mismatch(a, b).in1 - a.begin());
}

// Where to end a piece that should have about that length: behind a blank, else between two characters.
std::size_t cut(std::string_view text, std::size_t start, std::size_t end)
{
    const std::size_t wanted = start + stretchLength;
    if (end - start <= stretchLength + longestWord)
        return end;
    for (std::size_t at = wanted; at < wanted + longestWord; ++at)
        if (text[at] == ' ' && nextCharacterBoundary(text, at) == at + 1)
            return at + 1;
    return nextCharacterBoundary(text, previousCharacterBoundary(text, wanted));
}

CGFloat leftEdge(const TextLayout& layout, std::size_t index, CGFloat width)
{
    const auto& characters = layout.characters();
    return index < characters.size() ? characters[index].x : width;
}

} // namespace

void EditedText::update(std::string_view newText, const Style& newStyle)
{
    const TextDirection newDirection = naturalDirection(newText, newStyle.direction);
    const bool keeps = !parts.empty() && newStyle == style && newDirection == direction && text.size() > longestWhole
        && newText.size() > longestWhole;
    if (!parts.empty() && newStyle == style && newDirection == direction && newText == text)
        return;
    // What lies before and behind the change stays; a stretch that the change touches does not, since letters join.
    std::vector<Stretch> before, after;
    std::size_t from = 0, to = newText.size();
    if (keeps) {
        const std::size_t prefix = commonPrefix(text, newText);
        std::size_t suffix = 0;
        const std::size_t most = std::min(text.size(), newText.size()) - prefix;
        while (suffix < most && text[text.size() - 1 - suffix] == newText[newText.size() - 1 - suffix])
            ++suffix;
        auto first = parts.begin(), last = parts.end();
        while (first != last && first->start + first->length < prefix)
            ++first;
        while (last != first && std::prev(last)->start > text.size() - suffix)
            --last;
        if (first == last && first != parts.begin()) // the change lies between two
            --first;
        if (first != parts.begin())
            from = std::prev(first)->start + std::prev(first)->length;
        if (last != parts.end())
            to = last->start + newText.size() - text.size();
        before.assign(std::make_move_iterator(parts.begin()), std::make_move_iterator(first));
        after.assign(std::make_move_iterator(last), std::make_move_iterator(parts.end()));
        for (Stretch& stretch : after)
            stretch.start += newText.size() - text.size();
    }
    text = newText;
    style = newStyle;
    direction = newDirection;
    parts = std::move(before);
    divide(from, to, parts);
    std::ranges::move(after, std::back_inserter(parts));
    place();
}

CGFloat EditedText::height() const { return parts.empty() ? 0 : parts.front().layout->size().height; }

CGFloat EditedText::baseline() const { return parts.empty() ? 0 : parts.front().layout->firstBaseline(); }

CGFloat EditedText::x(TextPosition position) const
{
    const auto gap = gapAt(position);
    return gap ? edge(*gap) : 0;
}

TextPosition EditedText::positionAt(CGFloat wanted) const
{
    if (text.empty())
        return {};
    const Stretch* nearest = nullptr;
    for (const Stretch& stretch : parts) {
        const auto distance = [&](const Stretch& s) { return std::max({ s.x - wanted, wanted - s.x - s.width, 0.0 }); };
        if (!nearest || distance(stretch) < distance(*nearest))
            nearest = &stretch;
    }
    const auto& characters = nearest->layout->characters();
    if (characters.empty())
        return { nearest->start, false };
    auto hit = std::ranges::find_if(
        characters, [&](const auto& character) { return wanted - nearest->x < character.x + character.width; });
    if (hit == characters.end())
        --hit;
    const bool onTheLeft = wanted - nearest->x < hit->x + hit->width / 2;
    const bool before = onTheLeft != hit->rightToLeft;
    return { nearest->start + (before ? hit->start : hit->end), before };
}

std::optional<TextPosition> EditedText::beside(TextPosition position, bool onTheLeft) const
{
    auto gap = gapAt(position);
    if (!gap)
        return std::nullopt;
    const auto charactersOf = [&](std::size_t stretch) -> const auto& { return parts[stretch].layout->characters(); };
    // The stretch that stands on that side comes later in the text, or earlier where the text runs the other way.
    const bool later = onTheLeft == isRightToLeft();
    while (gap->index == (onTheLeft ? 0 : charactersOf(gap->stretch).size())) {
        if (gap->stretch == (later ? parts.size() - 1 : 0))
            return std::nullopt;
        gap->stretch = later ? gap->stretch + 1 : gap->stretch - 1;
        gap->index = onTheLeft ? charactersOf(gap->stretch).size() : 0;
    }
    const auto& crossed = charactersOf(gap->stretch)[onTheLeft ? gap->index - 1 : gap->index];
    const bool before = onTheLeft != crossed.rightToLeft;
    return TextPosition { parts[gap->stretch].start + (before ? crossed.start : crossed.end), before };
}

std::vector<EditedText::Span> EditedText::spans(NSRange range, CGFloat from, CGFloat to) const
{
    std::vector<Span> found;
    const auto add = [&](CGFloat x, CGFloat width) {
        if (!found.empty() && std::abs(found.back().x + found.back().width - x) < 0.01)
            found.back().width += width;
        else if (width > 0)
            found.push_back({ x, width });
    };
    auto seen = stretches(from, to);
    std::ranges::sort(seen, {}, &Stretch::x);
    for (const Stretch* stretch : seen) {
        const std::size_t start = stretch->start;
        for (const auto& character : stretch->layout->characters())
            if (start + character.start < range.end() && start + character.end > range.location)
                add(stretch->x + character.x, character.width);
    }
    return found;
}

std::vector<const EditedText::Stretch*> EditedText::stretches(CGFloat from, CGFloat to) const
{
    std::vector<const Stretch*> seen;
    for (const Stretch& stretch : parts)
        if (stretch.x < to && stretch.x + stretch.width > from)
            seen.push_back(&stretch);
    return seen;
}

void EditedText::divide(std::size_t from, std::size_t to, std::vector<Stretch>& into) const
{
    if (text.size() <= longestWhole) {
        into.push_back(laidOut(0, text.size()));
        return;
    }
    while (from < to) {
        const std::size_t end = cut(text, from, to);
        into.push_back(laidOut(from, end - from));
        from = end;
    }
}

EditedText::Stretch EditedText::laidOut(std::size_t start, std::size_t length) const
{
    static std::uint64_t lastNumber = 0;
    Stretch result;
    result.number = ++lastNumber;
    result.start = start;
    result.length = length;
    std::string part = text.substr(start, length);
    result.plain = isPlainlyColored(part);
    TextParagraph& paragraph = result.paragraph;
    paragraph.color = result.plain ? CGColor { 0, 0, 0, 1 } : style.color;
    if (!part.empty())
        paragraph.runs.push_back({ std::move(part), nullptr, std::nullopt, {}, false });
    paragraph.font = style.font;
    paragraph.direction = direction;
    paragraph.alignment = NSTextAlignment::left;
    paragraph.lineBreakMode = NSLineBreakMode::byClipping;
    paragraph.isEdited = true;
    result.layout = TextLayout::make(paragraph, std::numeric_limits<CGFloat>::infinity(), style.scale);
    result.width = result.layout->lines().front().rect.width;
    return result;
}

void EditedText::place()
{
    width_ = 0;
    for (const Stretch& stretch : parts)
        width_ += stretch.width;
    CGFloat passed = 0;
    for (Stretch& stretch : parts) {
        stretch.x = isRightToLeft() ? width_ - passed - stretch.width : passed;
        passed += stretch.width;
    }
}

std::size_t EditedText::stretchWith(std::size_t byte) const
{
    const auto behind = std::ranges::upper_bound(parts, byte, {}, &Stretch::start);
    return std::size_t(behind - parts.begin()) - 1;
}

std::optional<EditedText::Gap> EditedText::gapAt(TextPosition position) const
{
    if (text.empty())
        return std::nullopt;
    const std::size_t offset = std::min(position.offset, text.size());
    const bool forward = offset == 0 || (position.leansForward && offset < text.size());
    const std::size_t byte = forward ? offset : offset - 1; // of the character that the place goes with
    const std::size_t stretch = stretchWith(byte);
    const auto& characters = parts[stretch].layout->characters();
    const std::size_t inside = byte - parts[stretch].start;
    const auto found = std::ranges::find_if(
        characters, [&](const auto& character) { return character.start <= inside && inside < character.end; });
    if (found == characters.end())
        return Gap { stretch, 0 };
    const std::size_t index = std::size_t(found - characters.begin());
    return Gap { stretch, forward == found->rightToLeft ? index + 1 : index };
}

CGFloat EditedText::edge(const Gap& gap) const
{
    const Stretch& stretch = parts[gap.stretch];
    return stretch.x + leftEdge(*stretch.layout, gap.index, stretch.width);
}

} // namespace platform
