#include "Tests/Platform/UIKit/Layout/ExactLayout.h"

#include <functional>

namespace layouttests {

using platform::LayoutRelation;

namespace {

// Rows read: sum of terms - over + under = constant, with over and under at least 0. Columns: the variables, which may
// have either sign, then over and under of each row.
class Tableau {
public:
    Tableau(std::size_t variableCount, const std::vector<ExactConstraint>& constraints)
        : variableCount(variableCount)
        , columnCount(variableCount + 2 * constraints.size())
        , isBanned(columnCount, false)
        , sign(variableCount, 1)
    {
        for (std::size_t i = 0; i < constraints.size(); ++i)
            addRow(i, constraints[i]);
    }

    std::size_t over(std::size_t constraint) const { return variableCount + 2 * constraint; }
    std::size_t under(std::size_t constraint) const { return over(constraint) + 1; }

    // The least cost; columns that would raise it are banned from then on when `isKept` says so of the cost.
    Rational minimise(const std::vector<std::size_t>& costly, const std::function<bool(const Rational&)>& isKept)
    {
        std::vector<Rational> costs(columnCount);
        for (const std::size_t column : costly)
            costs[column] = 1;
        std::vector<Rational> reduced = reduce(costs);
        for (std::size_t entering = choose(reduced); entering != columnCount; entering = choose(reduced)) {
            pivot(leavingRow(entering), entering);
            reduced = reduce(costs);
        }
        Rational total;
        for (std::size_t row = 0; row < rows.size(); ++row)
            total = total + costs[basis[row]] * constants[row];
        if (isKept(total))
            for (std::size_t column = 0; column < columnCount; ++column)
                if (reduced[column].sign() > 0)
                    isBanned[column] = true;
        return total;
    }

    double value(std::size_t variable) const
    {
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (basis[row] == variable)
                return constants[row].toDouble() * sign[variable];
        return 0;
    }

private:
    void addRow(std::size_t constraint, const ExactConstraint& source)
    {
        std::vector<Rational> row(columnCount);
        for (const auto& [variable, coefficient] : source.terms)
            row[variable] = row[variable] + Rational::from(coefficient);
        row[over(constraint)] = -1;
        row[under(constraint)] = 1;
        Rational constant = Rational::from(source.constant);
        const bool isNegative = constant.sign() < 0;
        if (isNegative) {
            for (Rational& entry : row)
                entry = -entry;
            constant = -constant;
        }
        rows.push_back(row);
        constants.push_back(constant);
        basis.push_back(isNegative ? over(constraint) : under(constraint));
    }

    std::vector<Rational> reduce(const std::vector<Rational>& costs) const
    {
        std::vector<Rational> reduced = costs;
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (costs[basis[row]].sign() != 0)
                for (std::size_t column = 0; column < columnCount; ++column)
                    if (rows[row][column].sign() != 0)
                        reduced[column] = reduced[column] - costs[basis[row]] * rows[row][column];
        return reduced;
    }

    // The first column that gains, which never goes round in circles. A variable is turned round to gain upwards.
    std::size_t choose(std::vector<Rational>& reduced)
    {
        for (std::size_t column = 0; column < columnCount; ++column) {
            if (column < variableCount && reduced[column].sign() > 0) {
                sign[column] = -sign[column];
                reduced[column] = -reduced[column];
                for (auto& row : rows)
                    row[column] = -row[column];
            }
            if (reduced[column].sign() < 0 && !isBanned[column])
                return column;
        }
        return columnCount;
    }

    std::size_t leavingRow(std::size_t entering) const
    {
        std::size_t best = rows.size();
        Rational bestRatio;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            if (basis[row] < variableCount || rows[row][entering].sign() <= 0)
                continue;
            const Rational ratio = constants[row] / rows[row][entering];
            if (best == rows.size() || ratio < bestRatio || (ratio == bestRatio && basis[row] < basis[best])) {
                best = row;
                bestRatio = ratio;
            }
        }
        return best;
    }

    void pivot(std::size_t pivotRow, std::size_t column)
    {
        if (pivotRow == rows.size()) { // errors are bounded below, so this is an overflow
            Rational::hasOverflowed = true;
            isBanned[column] = true;
            return;
        }
        const Rational divisor = rows[pivotRow][column];
        for (Rational& entry : rows[pivotRow])
            if (entry.sign() != 0)
                entry = entry / divisor;
        constants[pivotRow] = constants[pivotRow] / divisor;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            const Rational factor = rows[row][column];
            if (row == pivotRow || factor.sign() == 0)
                continue;
            for (std::size_t i = 0; i < columnCount; ++i)
                if (rows[pivotRow][i].sign() != 0)
                    rows[row][i] = rows[row][i] - factor * rows[pivotRow][i];
            constants[row] = constants[row] - factor * constants[pivotRow];
        }
        basis[pivotRow] = column;
    }

    std::size_t variableCount;
    std::size_t columnCount;
    std::vector<std::vector<Rational>> rows;
    std::vector<Rational> constants;
    std::vector<std::size_t> basis; // a column for each row
    std::vector<bool> isBanned;
    std::vector<int> sign; // of a variable's column
};

std::vector<std::size_t> errorColumns(const Tableau& tableau, std::size_t index, LayoutRelation relation)
{
    if (relation == LayoutRelation::equal)
        return { tableau.over(index), tableau.under(index) };
    return { relation == LayoutRelation::lessOrEqual ? tableau.over(index) : tableau.under(index) };
}

} // namespace

ExactSolution solveExactly(std::size_t variableCount, const std::vector<ExactConstraint>& constraints)
{
    Rational::hasOverflowed = false;
    std::vector<ExactConstraint> all = constraints;
    for (std::size_t variable = 0; variable < variableCount; ++variable)
        all.push_back({ { { variable, 1 } }, LayoutRelation::equal, 0, 0 });
    Tableau tableau(variableCount, all);

    ExactSolution solution;
    solution.isDropped.resize(constraints.size());
    std::map<float, std::vector<std::size_t>, std::greater<>> levels;
    for (std::size_t i = 0; i < constraints.size(); ++i) {
        const auto columns = errorColumns(tableau, i, constraints[i].relation);
        if (constraints[i].priority >= platform::requiredLayoutPriority) {
            const Rational error = tableau.minimise(columns, [](const Rational& least) { return least.sign() == 0; });
            solution.isDropped[i] = error.sign() > 0;
        } else {
            auto& level = levels[constraints[i].priority];
            level.insert(level.end(), columns.begin(), columns.end());
        }
    }
    const auto always = [](const Rational&) { return true; };
    for (const auto& [priority, columns] : levels)
        solution.errors[priority] = tableau.minimise(columns, always).toDouble();
    for (std::size_t i = constraints.size(); i < all.size(); ++i)
        tableau.minimise(errorColumns(tableau, i, LayoutRelation::equal), always);
    for (std::size_t variable = 0; variable < variableCount; ++variable)
        solution.values.push_back(tableau.value(variable));
    solution.isReliable = !Rational::hasOverflowed;
    return solution;
}

double errorOf(const ExactConstraint& constraint, const std::vector<double>& values)
{
    double residual = -constraint.constant;
    for (const auto& [variable, coefficient] : constraint.terms)
        residual += coefficient * values[variable];
    if (constraint.relation == LayoutRelation::lessOrEqual)
        return std::max(0.0, residual);
    if (constraint.relation == LayoutRelation::greaterOrEqual)
        return std::max(0.0, -residual);
    return std::abs(residual);
}

std::map<float, double> levelErrors(const std::vector<ExactConstraint>& constraints, const std::vector<double>& values)
{
    std::map<float, double> errors;
    for (const ExactConstraint& constraint : constraints)
        if (constraint.priority < platform::requiredLayoutPriority)
            errors[constraint.priority] += errorOf(constraint, values);
    return errors;
}

} // namespace layouttests
