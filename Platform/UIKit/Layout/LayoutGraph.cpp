#include "Platform/UIKit/Layout/LayoutGraph.h"

#include "Platform/UIKit/Layout/WeightedItems.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <utility>

namespace platform {

namespace {

// A definition divides by its variable's coefficient; below this share of the equation's largest one the variable
// becomes a root instead, and the simplex chooses what to divide by.
constexpr double weakestPivot = 1e-3;
constexpr double negligibleWeight = 1e-11;

// Working memory of one call, kept so that small engines need none of their own. Between calls nothing is in the sum.
struct Scratch {
    WeightedItems sum;
    std::vector<std::uint32_t> visited;
    std::vector<std::uint32_t> open[LayoutTerms::capacity + 1]; // equalities by the number of variables without an item
    std::size_t nextUnit = 0;
};
thread_local Scratch scratch;

double limited(double value) { return std::clamp(value, -layoutValueLimit, layoutValueLimit); }

} // namespace

void LayoutGraph::build(LayoutStore& store, std::span<const std::uint32_t> variables, std::span<const std::uint32_t> constraints)
{
    items.clear();
    terms.clear();
    roots = 0;
    touchedCores.clear();
    isCoreTouched.clear();
    brokenRow = noIndex;
    items.reserve(variables.size() + constraints.size() + 1);

    orderVariables(store, variables, constraints);
    firstRow = static_cast<std::uint32_t>(items.size());
    addRows(store, constraints);
    count = static_cast<std::uint32_t>(items.size());
    residuals.resize(count - firstRow);
    linkUses(store);

    marks.assign((count + 63) / 64, 0);
    firstMarkedWord = noIndex;
    for (std::uint32_t i = 0; i < firstRow; ++i)
        store.values[items[i].variable] = evaluate(store, items[i], items[i + 1]);
    for (std::uint32_t i = firstRow; i < count; ++i)
        measureRow(store, i);
}

void LayoutGraph::mark(std::uint32_t item)
{
    const std::uint32_t word = item / 64;
    marks[word] |= std::uint64_t { 1 } << (item % 64);
    firstMarkedWord = std::min(firstMarkedWord, word);
}

void LayoutGraph::moveRoot(LayoutStore& store, std::uint32_t item, double value)
{
    const Item& root = items[item];
    assert(root.kind == Kind::root);
    double& stored = store.values[root.variable];
    store.noteChange(root.variable, stored, limited(value));
    stored = limited(value);
    for (std::uint32_t use = root.firstUse; use < items[item + 1].firstUse; ++use)
        mark(uses[use]);
}

void LayoutGraph::setConstant(std::uint32_t item, double constant)
{
    items[item].constant = constant;
    mark(item);
}

void LayoutGraph::propagate(LayoutStore& store)
{
    for (std::uint32_t word = firstMarkedWord; word < marks.size(); ++word) {
        while (marks[word] != 0) {
            const std::uint32_t i = word * 64 + static_cast<std::uint32_t>(std::countr_zero(marks[word]));
            marks[word] &= marks[word] - 1;
            const Item& item = items[i];
            if (item.kind == Kind::row) {
                measureRow(store, i);
                continue;
            }
            const double value = evaluate(store, item, items[i + 1]);
            double& stored = store.values[item.variable];
            if (value == stored)
                continue;
            store.noteChange(item.variable, stored, value);
            stored = value;
            if (item.core != noIndex)
                touchCore(item.core);
            for (std::uint32_t use = item.firstUse; use < items[i + 1].firstUse; ++use)
                marks[uses[use] / 64] |= std::uint64_t { 1 } << (uses[use] % 64);
        }
    }
    firstMarkedWord = noIndex;
}

void LayoutGraph::touchCore(std::uint32_t core)
{
    if (core >= isCoreTouched.size())
        isCoreTouched.resize(core + 1);
    if (isCoreTouched[core])
        return;
    isCoreTouched[core] = true;
    touchedCores.push_back(core);
}

void LayoutGraph::takeTouchedCores(std::vector<std::uint32_t>& cores)
{
    cores.clear();
    cores.swap(touchedCores);
    for (const std::uint32_t core : cores)
        isCoreTouched[core] = false;
}

void LayoutGraph::unroot(const LayoutStore& store, std::uint32_t row)
{
    items[row].isRooted = !store.constraints[items[row].origin].isRequired();
    measureRow(store, row);
}

// -- Sums

// Replaces definitions, the latest first, by what they stand for, until only what `visit` keeps is left: it is called
// for every item with its weight and answers whether to go on below it.
template <typename Visit> void LayoutGraph::sweepBack(const LayoutStore& store, const Visit& visit)
{
    while (!scratch.sum.isEmpty()) {
        const std::uint32_t i = scratch.sum.takeLast();
        const double weight = limited(std::exchange(scratch.sum.weight(i), 0));
        if (std::abs(weight) <= negligibleWeight || !visit(i, weight))
            continue;
        for (std::uint32_t term = items[i].firstTerm; term < items[i + 1].firstTerm; ++term)
            scratch.sum.add(store.variables[terms[term].variable].item, weight * terms[term].coefficient);
    }
}

void LayoutGraph::expand(const LayoutStore& store, std::uint32_t item, std::vector<Weight>& sum)
{
    sum.clear();
    scratch.sum.reserve(count);
    scratch.sum.add(item, 1);
    sweepBack(store, [&](std::uint32_t i, double weight) {
        if (items[i].kind == Kind::root)
            sum.push_back({ i, weight });
        return items[i].isRooted;
    });
}

void LayoutGraph::expandConflict(const LayoutStore& store, std::span<const Weight> rows, std::vector<Weight>& constraints)
{
    constraints.clear();
    scratch.sum.reserve(count);
    for (const Weight& row : rows)
        scratch.sum.add(row.index, row.value);
    sweepBack(store, [&](std::uint32_t i, double weight) {
        const Item& item = items[i];
        if (item.kind != Kind::root && std::abs(weight) > 1e-9)
            constraints.push_back({ item.origin, weight * store.constraints[item.origin].scale });
        return true;
    });
}

std::uint32_t LayoutGraph::firstMoved(const LayoutStore& store, std::span<const Weight> rootMoves)
{
    scratch.sum.reserve(count);
    scratch.visited.clear();
    for (const Weight& root : rootMoves)
        scratch.sum.add(root.index, root.value);
    std::uint32_t first = noIndex;
    while (!scratch.sum.isEmpty()) {
        const std::uint32_t i = scratch.sum.takeFirst();
        scratch.visited.push_back(i);
        double& move = scratch.sum.weight(i);
        if (items[i].kind == Kind::definition)
            for (std::uint32_t term = items[i].firstTerm; term < items[i + 1].firstTerm; ++term)
                move += terms[term].coefficient * scratch.sum.weight(store.variables[terms[term].variable].item);
        move = limited(move);
        if (std::abs(move) <= 1e-9)
            continue;
        first = std::min(first, items[i].variable);
        for (std::uint32_t use = items[i].firstUse; use < items[i + 1].firstUse; ++use)
            if (uses[use] < firstRow)
                scratch.sum.add(uses[use], 0);
    }
    for (const std::uint32_t i : scratch.visited)
        scratch.sum.weight(i) = 0;
    return first;
}

// -- Building

void LayoutGraph::orderVariables(
    LayoutStore& store, std::span<const std::uint32_t> variables, std::span<const std::uint32_t> constraints)
{
    for (auto& bucket : scratch.open)
        bucket.clear();
    scratch.nextUnit = 0;
    for (const std::uint32_t variable : variables) {
        store.variables[variable].item = noIndex;
        store.variables[variable].isMeasured = false;
    }
    for (const std::uint32_t constraint : constraints) {
        LayoutConstraintRecord& record = store.constraints[constraint];
        record.item = noIndex;
        record.isDefinition = false;
        record.scale = 1;
        record.openTerms = static_cast<std::uint8_t>(record.equation.terms.size());
        if (record.isDropped)
            continue;
        if (record.isRequiredEquality())
            scratch.open[record.openTerms].push_back(constraint);
        else if (record.openTerms == 1)
            store.variables[index(record.equation.terms[0].variable)].isMeasured = true;
    }

    while (const auto constraint = nextOpenEquality(store)) {
        if (store.constraints[*constraint].openTerms == 1)
            addDefinition(store, *constraint);
        else
            tear(store, *constraint);
    }
    for (const std::uint32_t variable : variables)
        if (store.variables[variable].item == noIndex)
            addRoot(store, variable);
}

// The equality with the fewest variables that have no item yet, which keeps the roots few. Units come first in, first out.
std::optional<std::uint32_t> LayoutGraph::nextOpenEquality(const LayoutStore& store)
{
    while (scratch.nextUnit < scratch.open[1].size()) {
        const std::uint32_t constraint = scratch.open[1][scratch.nextUnit++];
        if (store.constraints[constraint].openTerms == 1)
            return constraint;
    }
    for (unsigned open = 2; open <= LayoutTerms::capacity; ++open) {
        while (!scratch.open[open].empty()) {
            const std::uint32_t constraint = scratch.open[open].back();
            scratch.open[open].pop_back();
            if (store.constraints[constraint].openTerms == open)
                return constraint;
        }
    }
    return std::nullopt;
}

void LayoutGraph::addRoot(LayoutStore& store, std::uint32_t variable)
{
    Item& item = items.emplace_back();
    item.variable = variable;
    item.origin = roots++;
    item.firstTerm = static_cast<std::uint32_t>(terms.size());
    item.isRooted = true;
    settleVariable(store, variable);
}

void LayoutGraph::addDefinition(LayoutStore& store, std::uint32_t constraint)
{
    LayoutConstraintRecord& record = store.constraints[constraint];
    const LayoutTerm* target = nullptr;
    double largest = 0;
    Item item;
    for (const LayoutTerm& term : record.equation.terms) {
        largest = std::max(largest, std::abs(term.coefficient));
        const std::uint32_t known = store.variables[index(term.variable)].item;
        if (known == noIndex)
            target = &term;
        else
            item.isRooted |= items[known].isRooted;
    }
    if (item.isRooted && std::abs(target->coefficient) < weakestPivot * largest)
        return addRoot(store, index(target->variable));

    item.kind = Kind::definition;
    item.variable = index(target->variable);
    item.origin = constraint;
    item.firstTerm = static_cast<std::uint32_t>(terms.size());
    record.scale = 1 / target->coefficient;
    item.constant = record.equation.constant * record.scale;
    for (const LayoutTerm& term : record.equation.terms) {
        if (&term == target)
            continue;
        terms.push_back({ -term.coefficient * record.scale, index(term.variable) });
    }
    record.item = static_cast<std::uint32_t>(items.size());
    record.isDefinition = true;
    items.push_back(item);
    settleVariable(store, item.variable);
}

void LayoutGraph::settleVariable(LayoutStore& store, std::uint32_t variable)
{
    store.variables[variable].item = static_cast<std::uint32_t>(items.size() - 1);
    store.forEachUse(variable, [&](std::uint32_t constraint) {
        LayoutConstraintRecord& record = store.constraints[constraint];
        if (--record.openTerms > 0 && record.isRequiredEquality() && !record.isDropped)
            scratch.open[record.openTerms].push_back(constraint);
    });
}

// Makes one of the equality's open variables a root, by preference one whose constraints then stay short.
void LayoutGraph::tear(LayoutStore& store, std::uint32_t constraint)
{
    const auto rank = [&](std::uint32_t variable) { return std::pair(!store.variables[variable].isMeasured, variable); };
    std::uint32_t root = noIndex;
    for (const LayoutTerm& term : store.constraints[constraint].equation.terms) {
        const std::uint32_t variable = index(term.variable);
        if (store.variables[variable].item == noIndex && (root == noIndex || rank(variable) < rank(root)))
            root = variable;
    }
    addRoot(store, root);
}

void LayoutGraph::addRows(LayoutStore& store, std::span<const std::uint32_t> constraints)
{
    for (const std::uint32_t constraint : constraints) {
        LayoutConstraintRecord& record = store.constraints[constraint];
        if (record.isDropped || record.isDefinition)
            continue;
        bool isRooted = false;
        for (const LayoutTerm& term : record.equation.terms)
            isRooted |= items[store.variables[index(term.variable)].item].isRooted;
        if (!isRooted && !record.isRequired())
            continue; // an error that no one can change needs no watching
        record.item = static_cast<std::uint32_t>(items.size());
        record.scale = -1;
        Item& item = items.emplace_back();
        item.kind = Kind::row;
        item.origin = constraint;
        item.relation = record.equation.relation;
        item.isRooted = isRooted;
        item.constant = -record.equation.constant;
        item.firstTerm = static_cast<std::uint32_t>(terms.size());
        for (const LayoutTerm& term : record.equation.terms)
            terms.push_back({ term.coefficient, index(term.variable) });
    }
}

// Turns the items' terms round: what depends on an item stands in `uses`, in one run per item.
void LayoutGraph::linkUses(const LayoutStore& store)
{
    items.emplace_back().firstTerm = static_cast<std::uint32_t>(terms.size());
    for (const Term& term : terms)
        ++items[store.variables[term.variable].item].firstUse;
    std::uint32_t total = 0;
    for (Item& item : items) { // each now points behind its run, and is drawn back as the run fills
        total += item.firstUse;
        item.firstUse = total;
    }
    uses.resize(total);
    for (std::uint32_t i = count; i-- > 0;)
        for (std::uint32_t term = items[i].firstTerm; term < items[i + 1].firstTerm; ++term)
            uses[--items[store.variables[terms[term].variable].item].firstUse] = i;
}

double LayoutGraph::evaluate(const LayoutStore& store, const Item& item, const Item& next) const
{
    double value = item.constant;
    for (std::uint32_t term = item.firstTerm; term < next.firstTerm; ++term)
        value += terms[term].coefficient * store.values[terms[term].variable];
    return limited(value);
}

void LayoutGraph::measureRow(const LayoutStore& store, std::uint32_t row)
{
    const Item& item = items[row];
    const double residual = evaluate(store, item, items[row + 1]);
    residuals[row - firstRow] = residual;
    if (item.core != noIndex)
        return touchCore(item.core);
    if (item.isRooted || std::abs(residual) <= layoutTolerance(0))
        return; // a rooted row without a core is soft, or waits for its core
    const bool isBroken
        = item.relation == LayoutRelation::equal || (residual < 0) == (item.relation == LayoutRelation::greaterOrEqual);
    if (!isBroken)
        return;
    double magnitude = std::abs(item.constant);
    for (std::uint32_t term = item.firstTerm; term < items[row + 1].firstTerm; ++term)
        magnitude = std::max(magnitude, std::abs(terms[term].coefficient * store.values[terms[term].variable]));
    if (std::abs(residual) > layoutTolerance(magnitude))
        brokenRow = row;
}

} // namespace platform
