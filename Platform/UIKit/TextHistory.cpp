#include "Platform/UIKit/TextHistory.h"

#include "Platform/Foundation/Text.h"

#include <utility>

namespace platform {

namespace {

std::size_t sizeOf(const TextChange& change) { return change.removed.size() + change.inserted.size(); }

bool isOneCharacter(const std::string& text) { return !text.empty() && nextCharacterBoundary(text, 0) == text.size(); }

} // namespace

void TextHistory::add(TextChange change)
{
    if (change.removed == change.inserted)
        return;
    steps.resize(done); // what was taken back cannot be done again
    const bool isSelectionsEnd = change.inserted.empty() && change.anchor != change.caret;
    const bool isTyped = change.inserted.empty() || isOneCharacter(change.inserted);
    if (!joinsLast(change))
        steps.push_back(std::move(change));
    grows = isTyped && !isSelectionsEnd;
    forgetOldest();
    done = steps.size();
}

void TextHistory::clear() { *this = {}; }

void TextHistory::didUndo()
{
    done -= undoable() ? 1 : 0;
    endStep();
}

void TextHistory::didRedo()
{
    done += redoable() ? 1 : 0;
}

bool TextHistory::joinsLast(const TextChange& change)
{
    if (!grows || steps.empty())
        return false;
    TextChange& last = steps.back();
    if (change.removed.empty()) {
        const bool beginsWord = last.inserted.ends_with(' ') && change.inserted != " ";
        const bool goesOn = !last.inserted.empty() && change.location == last.location + last.inserted.size();
        if (!goesOn || beginsWord || !isOneCharacter(change.inserted))
            return false;
        last.inserted += change.inserted;
        return true;
    }
    if (!change.inserted.empty() || !last.inserted.empty())
        return false;
    if (change.location + change.removed.size() == last.location) {
        last.location = change.location;
        last.removed.insert(0, change.removed);
        return true;
    }
    if (change.location != last.location)
        return false;
    last.removed += change.removed;
    return true;
}

void TextHistory::forgetOldest()
{
    std::size_t bytes = 0, forgotten = 0;
    for (const TextChange& step : steps)
        bytes += sizeOf(step);
    while (forgotten < steps.size() && (steps.size() - forgotten > mostSteps || bytes > mostBytes))
        bytes -= sizeOf(steps[forgotten++]);
    steps.erase(steps.begin(), steps.begin() + std::ptrdiff_t(forgotten));
}

} // namespace platform
