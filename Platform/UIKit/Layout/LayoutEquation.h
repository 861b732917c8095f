#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

namespace platform {

// Names of a solver's variables and constraints. A removed one's id is handed out again.
enum class LayoutVariableId : std::uint32_t { none = 0xffffffff };
enum class LayoutConstraintId : std::uint32_t { none = 0xffffffff };

enum class LayoutRelation : std::uint8_t { lessOrEqual, equal, greaterOrEqual };

constexpr float requiredLayoutPriority = 1000;

struct LayoutTerm {
    LayoutVariableId variable = LayoutVariableId::none;
    double coefficient = 1;
};

// At most four terms, which is what two anchors of (origin, size) variables need: x + w == X + W. Terms of one variable
// are added up, those that cancel out vanish.
class LayoutTerms {
public:
    static constexpr unsigned capacity = 4;

    LayoutTerms() = default;
    LayoutTerms(std::initializer_list<LayoutTerm> list);

    void add(LayoutTerm term);
    bool isOverfull() const { return overfull; } // a fifth variable was added and left out
    unsigned size() const { return count; }
    const LayoutTerm* begin() const { return terms.data(); }
    const LayoutTerm* end() const { return terms.data() + count; }
    const LayoutTerm& operator[](unsigned index) const { return terms[index]; }

private:
    std::array<LayoutTerm, capacity> terms;
    std::uint8_t count = 0;
    bool overfull = false;
};

// sum of coefficient * variable  (relation)  constant, in points. `a.leading == b.trailing * m + c` reads
// { { { ax, 1 }, { bx, -m }, { bw, -m } }, LayoutRelation::equal, c }.
struct LayoutEquation {
    LayoutTerms terms;
    LayoutRelation relation = LayoutRelation::equal;
    double constant = 0; // points
    float priority = requiredLayoutPriority; // above 0 and at most 1000, which means required
    void* owner = nullptr; // the caller's own constraint, by which it finds the names when a conflict is reported
};

} // namespace platform
