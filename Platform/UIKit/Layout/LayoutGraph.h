#pragma once

#include "Platform/UIKit/Layout/LayoutStore.h"

#include <optional>
#include <span>

namespace platform {

// A component's variables in an order in which each follows from earlier ones. Required equalities are used up as
// definitions, `variable = constant + sum of coefficient * earlier variable`; a variable without one is a root, whose value
// is set from outside. Behind the variables stand the rows: the constraints that are left, whose residuals are only measured.
//
// Values are always computed from the equations themselves, never by adding up differences, so they cannot drift.
class LayoutGraph {
public:
    enum class Kind : std::uint8_t { root, definition, row };

    struct Item {
        double constant = 0;
        std::uint32_t variable = noIndex; // none for a row
        std::uint32_t origin = noIndex; // the constraint behind it; a root's number among the roots
        std::uint32_t firstTerm = 0; // up to the next item's
        std::uint32_t firstUse = 0;
        std::uint32_t core = noIndex; // a row's simplex core; a variable's, where the core keeps it near zero
        Kind kind = Kind::root;
        LayoutRelation relation = LayoutRelation::equal;
        bool isRooted = false; // depends on a root
    };
    struct Term {
        double coefficient;
        std::uint32_t variable;
    };
    struct Weight { // of an item in a sum, if nothing else is said
        std::uint32_t index;
        double value;
    };

    // Orders the variables of the constraints that are not dropped. All roots are 0 afterwards and all is evaluated.
    void build(LayoutStore& store, std::span<const std::uint32_t> variables, std::span<const std::uint32_t> constraints);

    void mark(std::uint32_t item);
    void moveRoot(LayoutStore& store, std::uint32_t item, double value);
    void setConstant(std::uint32_t item, double constant);
    // Brings everything up to date that depends on marked items; what is touched on the way is then told by
    // `takeTouchedCores` and `brokenRow`.
    void propagate(LayoutStore& store);
    void touchCore(std::uint32_t core);
    void takeTouchedCores(std::vector<std::uint32_t>& cores);

    // The row or variable at this item as a sum of roots, without its constant part.
    void expand(const LayoutStore& store, std::uint32_t item, std::vector<Weight>& sum);
    // A sum of rows in which all roots cancel out, as a sum of the constraints' constants, indexed by constraint.
    void expandConflict(const LayoutStore& store, std::span<const Weight> rows, std::vector<Weight>& constraints);
    // The lowest id among the variables that move when the roots move in these proportions.
    std::uint32_t firstMoved(const LayoutStore& store, std::span<const Weight> rootMoves);

    const Item& item(std::uint32_t index) const { return items[index]; }
    std::uint32_t rowsBegin() const { return firstRow; }
    std::uint32_t itemCount() const { return count; }
    std::uint32_t rootCount() const { return roots; }
    double residual(std::uint32_t row) const { return residuals[row - firstRow]; }
    void setCore(std::uint32_t item, std::uint32_t core) { items[item].core = core; }
    // The row's roots cancel out: it is a plain check when required, and nothing otherwise.
    void unroot(const LayoutStore& store, std::uint32_t row);
    // A required row that no root can mend and that does not hold; none when all do.
    std::uint32_t brokenRow = noIndex;

private:
    void orderVariables(LayoutStore& store, std::span<const std::uint32_t> variables, std::span<const std::uint32_t> constraints);
    std::optional<std::uint32_t> nextOpenEquality(const LayoutStore& store);
    void addRoot(LayoutStore& store, std::uint32_t variable);
    void addDefinition(LayoutStore& store, std::uint32_t constraint);
    void settleVariable(LayoutStore& store, std::uint32_t variable);
    void tear(LayoutStore& store, std::uint32_t constraint);
    void addRows(LayoutStore& store, std::span<const std::uint32_t> constraints);
    void linkUses(const LayoutStore& store);
    double evaluate(const LayoutStore& store, const Item& item, const Item& next) const;
    void measureRow(const LayoutStore& store, std::uint32_t index);
    template <typename Visit> void sweepBack(const LayoutStore& store, const Visit& visit);

    std::vector<Item> items; // and one more, which ends the last one's ranges
    std::vector<Term> terms;
    std::vector<std::uint32_t> uses; // items, by the item that they depend on
    std::vector<double> residuals;
    std::vector<std::uint64_t> marks; // one bit an item
    std::vector<std::uint32_t> touchedCores;
    std::vector<bool> isCoreTouched;
    std::uint32_t count = 0;
    std::uint32_t firstRow = 0;
    std::uint32_t roots = 0;
    std::uint32_t firstMarkedWord = noIndex;
};

} // namespace platform
