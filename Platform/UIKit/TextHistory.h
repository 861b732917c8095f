#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace platform {

// A part of a text that has become another one.
struct TextChange {
    std::size_t location = 0; // bytes
    std::string removed, inserted; // UTF-8
    std::size_t anchor = 0, caret = 0; // the selection before it
};

// What has been done to a line, to be taken back and done again. Typed letters are one step as far as the blanks behind a word, a
// row of deletions is one; anything else is a step of its own. The oldest steps are forgotten beyond a number and a size.
class TextHistory {
public:
    static constexpr std::size_t mostSteps = 100;
    static constexpr std::size_t mostBytes = 256 << 10; // of all texts together

    void add(TextChange change);
    void endStep() { grows = false; } // what comes is no part of the last one
    void clear();

    const TextChange* undoable() const { return done > 0 ? &steps[done - 1] : nullptr; } // null for none
    const TextChange* redoable() const { return done < steps.size() ? &steps[done] : nullptr; }
    void didUndo();
    void didRedo();

private:
    bool joinsLast(const TextChange& change);
    void forgetOldest();

    std::vector<TextChange> steps; // oldest first
    std::size_t done = 0; // so many of them; the others have been taken back
    bool grows = false; // the last step, when the next change belongs to it
};

} // namespace platform
