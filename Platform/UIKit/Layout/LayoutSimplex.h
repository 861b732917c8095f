#pragma once

#include "Platform/UIKit/Layout/LayoutRows.h"

#include <span>
#include <vector>

namespace platform {

// The core of a layout: finds the positions of a few free roots at which rows, sums of roots, are violated least, level by
// level. It is a primal simplex over piecewise linear costs. Each column holds one tight row, whose residual is 0, or is
// free; a step loosens one column, passes the kinks of other rows as long as that pays, and makes the last one tight.
//
// Residuals come from outside, so the matrix holds coefficients only, and what it leaves undone is put right by `correct`.
class LayoutSimplex {
public:
    using Entry = LayoutBasis::Entry; // of a root in this core, if nothing else is said

    std::uint32_t addRoot();
    // `source` is the caller's name of the row. Ranks order the levels, the highest first; an error counts by its size.
    void addRow(std::uint32_t source, LayoutRelation relation, double rank, std::span<const Entry> entries);
    // Takes over the rows and roots of another core; the roots come behind its own.
    void merge(const LayoutSimplex& other);

    std::uint32_t rootCount() const { return static_cast<std::uint32_t>(columns.size()); }
    std::uint32_t rowCount() const { return rows.size(); }
    std::uint32_t source(std::uint32_t row) const { return rows[row].source; }
    void setResidual(std::uint32_t row, double residual) { rows[row].residual = residual; }

    // Sets the roots' moves that make all tight rows exact again. False when they are.
    bool correct(std::vector<double>& moves) const;
    // Whether a row has passed its kink since the last `optimise`, so that the costs are other ones.
    bool needsOptimise() const;
    // Finds the best tight rows and the moves of the roots to there.
    void optimise(std::vector<double>& moves);

    double errorAtRank(double rank) const;
    // The multipliers of a rank's rows at the optimum, indexed by row: so weighted, the violations add up to the error
    // whatever the roots are.
    void multipliersAtRank(double rank, std::vector<Entry>& multipliers) const;

    // A mix of all directions in which the roots may move at no cost. False when the optimum is a point.
    bool findFreeMove(std::vector<Entry>& move);
    // Whether a move would be free if the kinks right ahead were further away.
    bool isTied() const;
    // A row that holds a variable near zero, ranked below all rows so far. It takes part from the next `optimise` on.
    void addStay(std::uint32_t source, double rank, std::span<const Entry> entries);
    bool isStay(std::uint32_t row) const { return rows[row].isStay; }
    bool hasStays() const { return stayCount > 0; }
    void removeStays();

private:
    using Row = LayoutRows::Row;
    static constexpr std::uint32_t none = LayoutRows::none;

    struct Column {
        std::uint32_t row = none; // the tight one, whose residual is the column's coordinate
        bool isBlocked = false; // rounding errors lured the search into it
    };
    struct Move {
        std::uint32_t column = none;
        int direction = 1;
    };

    std::uint32_t levelCount() const { return static_cast<std::uint32_t>(rows.levels().size()); }
    void start(std::vector<double>& moves);
    void refactor();
    Entry bestFreeColumn(const Row& row) const;

    void chooseSides();
    void price();
    double cost(std::uint32_t level, Move move) const;
    std::pair<std::uint32_t, double> leadingCost(Move move) const;
    Move chooseMove() const;
    bool step(Move move, std::vector<double>& moves);
    std::size_t findStop(Move move) const;
    void findKinks(Move move);
    void shift(std::uint32_t column, double distance, std::vector<double>& moves);
    void tighten(std::uint32_t row, std::uint32_t column);
    void perturb();
    bool isFree(Move move);
    bool flipAtKink(Move move);
    bool tryFlip(std::uint32_t row);

    LayoutRows rows;
    LayoutBasis basis;
    std::vector<Column> columns; // of the basis
    std::vector<double> prices; // by level and column: the cost of one unit of the column's residual
    std::uint32_t stayCount = 0;
    bool isStarted = false;
};

} // namespace platform
