#include "Platform/UIKit/Layout/LayoutSimplex.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace platform {

namespace {

constexpr double weakestPivot = 1e-5; // that a first guess divides by
constexpr double negligibleCost = 1e-8; // per point; coefficients of layouts are near 1
constexpr double kinkTolerance = 1e-9; // points
constexpr double crossingTolerance = 1e-7; // points; above what `perturb` adds

struct Kink { // of a row, on the way along a direction
    double distance; // points
    double rate; // of the row's residual
    std::uint32_t row;
};

// Working memory of one call; rates and weights are all zero between calls.
struct Scratch {
    std::vector<double> rowRates;
    std::vector<double> rootWeights;
    std::vector<double> levelRoots; // by level and root
    std::vector<double> levelCosts;
    std::vector<std::uint32_t> seen; // rows
    std::vector<Kink> kinks;
};
thread_local Scratch scratch;

template <typename T> void growTo(std::vector<T>& vector, std::size_t size)
{
    if (vector.size() < size)
        vector.resize(size);
}

bool isImproving(std::span<const double> costs)
{
    for (const double cost : costs)
        if (std::abs(cost) > negligibleCost)
            return cost < 0;
    return false;
}

} // namespace

// -- Building

std::uint32_t LayoutSimplex::addRoot()
{
    const auto root = rootCount();
    basis.addRoot();
    columns.emplace_back();
    rows.addRoot();
    return root;
}

void LayoutSimplex::addRow(std::uint32_t source, LayoutRelation relation, double rank, std::span<const Entry> sum)
{
    rows.add(source, relation, rank, sum);
}

void LayoutSimplex::addStay(std::uint32_t source, double rank, std::span<const Entry> sum)
{
    rows.add(source, LayoutRelation::equal, rank, sum).isStay = true;
    rows.rankLevels();
    ++stayCount;
}

void LayoutSimplex::removeStays()
{
    rows.removeStays();
    stayCount = 0;
    for (Column& column : columns)
        column.row = none;
    for (std::uint32_t row = 0; row < rowCount(); ++row)
        if (rows[row].column != none)
            columns[rows[row].column].row = row;
}

void LayoutSimplex::merge(const LayoutSimplex& other)
{
    const std::uint32_t rowOffset = rowCount();
    for (Column column : other.columns) {
        column.row += column.row == none ? 0 : rowOffset;
        columns.push_back(column);
    }
    rows.append(other.rows);
    basis.append(other.basis);
    stayCount += other.stayCount;
}

// A first guess: every equality and every violated row, the highest level first, is made tight while columns are free.
void LayoutSimplex::start(std::vector<double>& moves)
{
    isStarted = true;
    rows.rankLevels();
    std::vector<std::uint32_t> order(rows.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(
        order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) { return rows[a].level < rows[b].level; });
    std::uint32_t freeCount = rootCount();
    for (const std::uint32_t index : order) {
        if (freeCount == 0)
            break;
        Row& row = rows[index];
        row.side = row.residual < 0 ? -1 : 1;
        if (row.column != none || (row.relation != LayoutRelation::equal && row.slope() == 0))
            continue;
        if (const Entry best = bestFreeColumn(row); std::abs(best.value) > weakestPivot) {
            shift(best.index, -row.residual / best.value, moves);
            tighten(index, best.index);
            --freeCount;
        }
    }
}

// Computes the matrix afresh for the same tight rows, which takes out the rounding errors of many pivots.
void LayoutSimplex::refactor()
{
    std::vector<std::uint32_t> tight;
    for (Column& column : columns) {
        if (column.row == none)
            continue;
        tight.push_back(column.row);
        rows[column.row].column = none;
        column.row = none;
    }
    basis.reset();
    for (const std::uint32_t row : tight)
        if (const Entry best = bestFreeColumn(rows[row]); std::abs(best.value) > weakestPivot)
            tighten(row, best.index);
}

LayoutSimplex::Entry LayoutSimplex::bestFreeColumn(const Row& row) const
{
    Entry best { none, 0 };
    for (const Entry& entry : basis.ratesOf(rows.entriesOf(row)))
        if (columns[entry.index].row == none && std::abs(entry.value) > std::abs(best.value))
            best = entry;
    return best;
}

// -- Solving

bool LayoutSimplex::correct(std::vector<double>& moves) const
{
    moves.assign(rootCount(), 0);
    bool isOff = false;
    for (std::uint32_t column = 0; column < rootCount(); ++column) {
        const std::uint32_t row = columns[column].row;
        if (row == none || std::abs(rows[row].residual) <= kinkTolerance)
            continue;
        isOff = true;
        for (const Entry& root : basis.column(column))
            moves[root.index] -= rows[row].residual * root.value;
    }
    return isOff;
}

bool LayoutSimplex::needsOptimise() const
{
    if (!isStarted)
        return true;
    for (const Row& row : rows)
        if (row.column == none && row.residual * row.side < -crossingTolerance)
            return true;
    return false;
}

void LayoutSimplex::optimise(std::vector<double>& moves)
{
    moves.assign(rootCount(), 0);
    if (!isStarted)
        start(moves);
    else if (basis.replacementCount() > 64 + 4 * rootCount())
        refactor();
    chooseSides();
    for (Column& column : columns)
        column.isBlocked = false;

    // Steps without progress are normal where many rows meet in a point, but they must not go round in circles.
    const std::size_t patience = 16 + 2 * rootCount();
    std::size_t idleSteps = 0;
    std::size_t stepsLeft = 100 + 10 * (columns.size() + rows.size()); // far more than steps that get on need
    price();
    for (Move move = chooseMove(); move.column != none && stepsLeft > 0; move = chooseMove(), --stepsLeft) {
        idleSteps = step(move, moves) ? 0 : idleSteps + 1;
        if (idleSteps > patience) {
            perturb();
            idleSteps = 0;
        }
        price();
    }
}

void LayoutSimplex::chooseSides()
{
    for (Row& row : rows)
        if (std::abs(row.residual) > kinkTolerance)
            row.side = row.residual < 0 ? -1 : 1;
}

void LayoutSimplex::price()
{
    const std::size_t width = columns.size();
    prices.assign(levelCount() * width, 0);
    growTo(scratch.levelRoots, prices.size());
    for (const Row& row : rows) {
        const double rowSlope = row.column == none ? row.slope() : 0;
        if (rowSlope == 0)
            continue;
        for (const Entry& entry : rows.entriesOf(row))
            scratch.levelRoots[row.level * width + entry.index] += rowSlope * entry.value;
    }
    for (std::size_t level = 0; level < levelCount(); ++level)
        for (std::size_t column = 0; column < width; ++column)
            for (const Entry& root : basis.column(static_cast<std::uint32_t>(column)))
                prices[level * width + column] += scratch.levelRoots[level * width + root.index] * root.value;
    std::fill_n(scratch.levelRoots.begin(), prices.size(), 0);
}

double LayoutSimplex::cost(std::uint32_t level, Move move) const
{
    const std::uint32_t row = columns[move.column].row;
    const double own = row != none && rows[row].level == level ? rows[row].slope(move.direction) * move.direction : 0;
    return own + move.direction * prices[level * columns.size() + move.column];
}

// The highest level on which a move costs or gains anything, and what; beyond the last level when it is free.
std::pair<std::uint32_t, double> LayoutSimplex::leadingCost(Move move) const
{
    for (std::uint32_t level = 0; level < levelCount(); ++level)
        if (const double value = cost(level, move); std::abs(value) > negligibleCost)
            return { level, value };
    return { levelCount(), 0 };
}

// The move that gains most on the highest level where any gains.
LayoutSimplex::Move LayoutSimplex::chooseMove() const
{
    Move best;
    std::pair<std::uint32_t, double> bestCost { none, 0 };
    for (std::uint32_t column = 0; column < rootCount(); ++column) {
        if (columns[column].isBlocked)
            continue;
        for (const int direction : { 1, -1 }) {
            const auto leading = leadingCost({ column, direction });
            if (leading.second < 0 && leading < bestCost) {
                best = { column, direction };
                bestCost = leading;
            }
        }
    }
    return best;
}

// False when nothing moved.
bool LayoutSimplex::step(Move move, std::vector<double>& moves)
{
    findKinks(move);
    const auto& kinks = scratch.kinks;
    const std::size_t stop = findStop(move);
    if (stop == kinks.size()) {
        columns[move.column].isBlocked = true;
        return false;
    }
    for (std::size_t i = 0; i < stop; ++i)
        rows[kinks[i].row].side = -rows[kinks[i].row].side;
    const Kink kink = kinks[stop];
    const std::uint32_t loosened = columns[move.column].row;
    shift(move.column, kink.distance * move.direction, moves);
    if (loosened != none) {
        rows[loosened].side = static_cast<std::int8_t>(move.direction);
        rows[loosened].column = none;
    }
    tighten(kink.row, move.column);
    return kink.distance > kinkTolerance;
}

// Lists the kinks ahead, the nearest first.
void LayoutSimplex::findKinks(Move move)
{
    auto& rates = scratch.rowRates;
    growTo(rates, rows.size());
    scratch.seen.clear();
    for (const Entry& root : basis.column(move.column)) {
        for (const Entry& use : rows.usesOf(root.index)) {
            rates[use.index] += use.value * root.value * move.direction;
            scratch.seen.push_back(use.index);
        }
    }
    scratch.kinks.clear();
    for (const std::uint32_t index : scratch.seen) {
        const double rate = std::exchange(rates[index], 0);
        const Row& row = rows[index];
        if (row.column == none && rate * row.side < -kinkTolerance)
            scratch.kinks.push_back({ std::max(0.0, -row.residual / rate), rate, index });
    }
    std::sort(scratch.kinks.begin(), scratch.kinks.end(),
        [](const Kink& a, const Kink& b) { return a.distance != b.distance ? a.distance < b.distance : a.row < b.row; });
}

// The kink at which going on does not pay any more; of several at one place the steepest, which is the safest to divide by.
std::size_t LayoutSimplex::findStop(Move move) const
{
    const auto& kinks = scratch.kinks;
    auto& costs = scratch.levelCosts;
    costs.resize(levelCount());
    for (std::uint32_t level = 0; level < costs.size(); ++level)
        costs[level] = cost(level, move);
    std::size_t stop = 0;
    for (; stop < kinks.size(); ++stop) {
        const Row& row = rows[kinks[stop].row];
        costs[row.level] += std::abs(kinks[stop].rate) * (row.relation == LayoutRelation::equal ? 2 : 1);
        if (!isImproving(costs))
            break;
    }
    if (stop == kinks.size())
        return stop;
    const double distance = kinks[stop].distance;
    std::size_t first = stop;
    while (first > 0 && distance - kinks[first - 1].distance <= kinkTolerance)
        --first;
    std::size_t steepest = stop;
    for (std::size_t i = first; i < kinks.size() && kinks[i].distance - distance <= kinkTolerance; ++i)
        if (std::abs(kinks[i].rate) > 1.001 * std::abs(kinks[steepest].rate))
            steepest = i;
    return steepest;
}

// Moves the column's residual by `distance`.
void LayoutSimplex::shift(std::uint32_t column, double distance, std::vector<double>& moves)
{
    for (const Entry& root : basis.column(column)) {
        const double change = root.value * distance;
        moves[root.index] += change;
        for (const Entry& use : rows.usesOf(root.index))
            rows[use.index].residual += use.value * change;
    }
}

// Makes the row the column's tight one.
void LayoutSimplex::tighten(std::uint32_t row, std::uint32_t column)
{
    basis.replace(column, rows.entriesOf(rows[row]));
    columns[column].row = row;
    rows[row].column = column;
    rows[row].residual = 0;
}

// Where many rows meet in one point they are moved apart a little, each to its own side, so that every step gets somewhere.
// The true residuals are measured again afterwards.
void LayoutSimplex::perturb()
{
    for (std::uint32_t i = 0; i < rowCount(); ++i)
        if (rows[i].column == none && std::abs(rows[i].residual) <= kinkTolerance)
            rows[i].residual += rows[i].side * 1e-8 * (1 + 4 * ((i * 2654435761u) >> 8) / 16777216.0);
}

// -- What became of it

double LayoutSimplex::errorAtRank(double rank) const
{
    double total = 0;
    for (const Row& row : rows)
        if (row.rank == rank)
            total += row.residual * row.slope(row.residual < 0 ? -1 : 1);
    return total;
}

void LayoutSimplex::multipliersAtRank(double rank, std::vector<Entry>& multipliers) const
{
    multipliers.clear();
    const auto& ranks = rows.levels();
    const auto level = static_cast<std::size_t>(std::find(ranks.begin(), ranks.end(), rank) - ranks.begin());
    if (level == ranks.size())
        return;
    for (std::uint32_t i = 0; i < rowCount(); ++i) {
        const Row& row = rows[i];
        const double multiplier = row.column != none ? -prices[level * columns.size() + row.column]
            : row.rank == rank                       ? row.slope()
                                                     : 0;
        if (std::abs(multiplier) > negligibleCost)
            multipliers.push_back({ i, multiplier });
    }
}

bool LayoutSimplex::findFreeMove(std::vector<Entry>& move)
{
    move.clear();
    growTo(scratch.rootWeights, columns.size());
    std::vector<std::uint32_t> free;
    for (std::uint32_t column = 0; column < rootCount(); ++column)
        if (isFree({ column, 1 }) || isFree({ column, -1 }))
            free.push_back(column);
    for (const std::uint32_t column : free) {
        // Unrelated shares, so that no two moves cancel each other out.
        const double share = 1.5 + 0.5 * std::sin(1000.0 * (column + 1));
        for (const Entry& root : basis.column(column))
            scratch.rootWeights[root.index] += share * root.value;
    }
    for (std::uint32_t root = 0; root < rootCount() && !free.empty(); ++root)
        if (const double weight = std::exchange(scratch.rootWeights[root], 0); std::abs(weight) > kinkTolerance)
            move.push_back({ root, weight });
    return !free.empty();
}

bool LayoutSimplex::isTied() const
{
    for (std::uint32_t column = 0; column < rootCount(); ++column)
        for (const int direction : { 1, -1 })
            if (leadingCost({ column, direction }).first == levelCount())
                return true;
    return false;
}

bool LayoutSimplex::isFree(Move move)
{
    return !columns[move.column].isBlocked && leadingCost(move).first == levelCount() && !flipAtKink(move);
}

// A move that seems free may stand right before a kink. When the costs beyond the kink prove the same optimum, they
// show that it is none.
bool LayoutSimplex::flipAtKink(Move move)
{
    findKinks(move);
    const auto kinks = scratch.kinks;
    for (const Kink& kink : kinks)
        if (kink.distance <= kinkTolerance && tryFlip(kink.row) && leadingCost(move).second > 0)
            return true;
    return false;
}

bool LayoutSimplex::tryFlip(std::uint32_t index)
{
    Row& row = rows[index];
    const auto rates = basis.ratesOf(rows.entriesOf(row));
    const auto flip = [&] {
        const double change = row.slope(-row.side) - row.slope();
        row.side = static_cast<std::int8_t>(-row.side);
        for (const Entry& rate : rates)
            prices[row.level * columns.size() + rate.index] += change * rate.value;
    };
    flip();
    for (const Entry& rate : rates) {
        if (leadingCost({ rate.index, 1 }).second < 0 || leadingCost({ rate.index, -1 }).second < 0) {
            flip();
            return false;
        }
    }
    return true;
}

} // namespace platform
