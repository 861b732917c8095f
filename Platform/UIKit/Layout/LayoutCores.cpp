#include "Platform/UIKit/Layout/LayoutCores.h"

#include <algorithm>
#include <numeric>
#include <queue>

namespace platform {

namespace {

constexpr int roundLimit = 12; // of moving cores and measuring what came of it; two or three are normal

struct RowSum {
    std::uint32_t item;
    std::size_t begin; // in `Scratch::sums`, up to the next one's
};

// Working memory of one call.
struct Scratch {
    std::vector<RowSum> rows;
    std::vector<LayoutGraph::Weight> sums; // of all rows
    std::vector<std::uint32_t> groups; // of roots: the number of another member, or its own
    std::vector<double> moves; // of a core's roots
    std::vector<std::uint32_t> touched; // cores
    std::vector<std::uint32_t> examined; // cores
    std::vector<LayoutGraph::Weight> sum;
    std::vector<LayoutSimplex::Entry> entries;
};
thread_local Scratch scratch;

std::uint32_t groupOf(std::vector<std::uint32_t>& groups, std::uint32_t member)
{
    while (groups[member] != member)
        member = groups[member] = groups[groups[member]];
    return member;
}

} // namespace

void LayoutCores::clear() { cores.clear(); }

void LayoutCores::build(LayoutStore& store)
{
    expandRows(store);
    formCores();
    for (std::size_t i = 0; i < scratch.rows.size(); ++i) {
        const RowSum& row = scratch.rows[i];
        const auto end = i + 1 < scratch.rows.size() ? scratch.rows[i + 1].begin : scratch.sums.size();
        scratch.entries.clear();
        for (std::size_t at = row.begin; at < end; ++at)
            scratch.entries.push_back({ places[scratch.sums[at].index].index, scratch.sums[at].value });
        const std::uint32_t core = places[scratch.sums[row.begin].index].core;
        const LayoutEquation& equation = store.constraints[graph.item(row.item).origin].equation;
        cores[core].simplex.addRow(row.item, equation.relation, equation.priority, scratch.entries);
        graph.setCore(row.item, core);
    }
    for (std::uint32_t core = 0; core < cores.size(); ++core)
        graph.touchCore(core);
}

// Writes each row as a sum of roots, by their numbers, and groups the roots that rows connect. A row whose roots cancel
// out connects nothing.
void LayoutCores::expandRows(const LayoutStore& store)
{
    scratch.rows.clear();
    scratch.sums.clear();
    auto& groups = scratch.groups;
    groups.resize(graph.rootCount());
    std::iota(groups.begin(), groups.end(), 0u);
    for (std::uint32_t row = graph.rowsBegin(); row < graph.itemCount(); ++row) {
        if (!graph.item(row).isRooted)
            continue;
        graph.expand(store, row, scratch.sum);
        if (scratch.sum.empty()) {
            graph.unroot(store, row);
            continue;
        }
        scratch.rows.push_back({ row, scratch.sums.size() });
        for (LayoutGraph::Weight& weight : scratch.sum) {
            weight.index = graph.item(weight.index).origin;
            groups[groupOf(groups, weight.index)] = groupOf(groups, scratch.sum[0].index);
        }
        scratch.sums.insert(scratch.sums.end(), scratch.sum.begin(), scratch.sum.end());
    }
}

// One core for each group of roots.
void LayoutCores::formCores()
{
    places.assign(graph.rootCount(), {});
    for (std::uint32_t item = 0; item < graph.rowsBegin(); ++item) {
        if (graph.item(item).kind != LayoutGraph::Kind::root)
            continue;
        const std::uint32_t root = graph.item(item).origin;
        RootPlace& group = places[groupOf(scratch.groups, root)];
        if (group.core == noIndex) {
            group.core = static_cast<std::uint32_t>(cores.size());
            cores.emplace_back();
        }
        Core& core = cores[group.core];
        places[root] = { group.core, core.simplex.addRoot() };
        core.roots.push_back(item);
    }
}

// -- Solving

bool LayoutCores::settle(LayoutStore& store, std::vector<LayoutGraph::Weight>& brokenRows)
{
    if (!checkRows(brokenRows))
        return false;
    scratch.examined.clear();
    const bool isOptimised = settleTouched(store);
    for (const std::uint32_t core : scratch.examined)
        if (!checkCore(store, core, brokenRows))
            return false;
    if (isOptimised)
        settleOpen(store);
    return checkRows(brokenRows);
}

// False when a required row does not hold that no core can mend.
bool LayoutCores::checkRows(std::vector<LayoutGraph::Weight>& brokenRows) const
{
    if (graph.brokenRow == noIndex)
        return true;
    brokenRows.assign(1, { graph.brokenRow, graph.residual(graph.brokenRow) < 0 ? -1.0 : 1.0 });
    return false;
}

// True when a core has new tight rows.
bool LayoutCores::settleTouched(LayoutStore& store)
{
    bool isOptimised = false;
    for (int round = 0; round < roundLimit; ++round) {
        graph.takeTouchedCores(scratch.touched);
        if (scratch.touched.empty())
            break;
        for (const std::uint32_t index : scratch.touched) {
            scratch.examined.push_back(index);
            LayoutSimplex& simplex = cores[index].simplex;
            measure(store, cores[index]);
            if (simplex.correct(scratch.moves)) {
                move(store, index);
                if (simplex.hasStays()) // other cores may move the variable of a stay at the same time
                    graph.touchCore(index);
            } else if (simplex.needsOptimise() || cores[index].isTied) {
                simplex.optimise(scratch.moves);
                move(store, index);
                graph.touchCore(index);
                cores[index].isOpen = true; // until it is found closed
                cores[index].isTied = false;
                isOptimised = true;
            }
        }
        graph.propagate(store);
    }
    return isOptimised;
}

void LayoutCores::measure(const LayoutStore& store, Core& core)
{
    for (std::uint32_t row = 0; row < core.simplex.rowCount(); ++row) {
        const std::uint32_t source = core.simplex.source(row);
        core.simplex.setResidual(
            row, core.simplex.isStay(row) ? store.values[graph.item(source).variable] : graph.residual(source));
    }
}

void LayoutCores::move(LayoutStore& store, std::uint32_t core)
{
    const auto& roots = cores[core].roots;
    for (std::size_t i = 0; i < roots.size(); ++i)
        if (scratch.moves[i] != 0)
            graph.moveRoot(store, roots[i], store.values[graph.item(roots[i]).variable] + scratch.moves[i]);
}

// False when the core cannot satisfy its required rows.
bool LayoutCores::checkCore(const LayoutStore& store, std::uint32_t core, std::vector<LayoutGraph::Weight>& brokenRows) const
{
    const LayoutSimplex& simplex = cores[core].simplex;
    const double error = simplex.errorAtRank(requiredLayoutPriority);
    if (error <= layoutTolerance(0))
        return true;
    double magnitude = 0;
    for (std::uint32_t item = 0; item < graph.rowsBegin(); ++item)
        magnitude = std::max(magnitude, std::abs(store.values[graph.item(item).variable]));
    if (error <= layoutTolerance(magnitude))
        return true;
    simplex.multipliersAtRank(requiredLayoutPriority, scratch.entries);
    brokenRows.clear();
    for (const LayoutSimplex::Entry& entry : scratch.entries)
        brokenRows.push_back({ simplex.source(entry.index), entry.value });
    return false;
}

// -- What no constraint decides

// Gives each open variable, in the order of ids, a row that holds it near zero, until every core is a point. A variable
// may hang on several open cores, which then become one.
void LayoutCores::settleOpen(LayoutStore& store)
{
    using Candidate = std::pair<std::uint32_t, std::uint32_t>; // variable, core
    std::priority_queue<Candidate, std::vector<Candidate>, std::greater<>> candidates;
    const auto consider = [&](std::uint32_t core) {
        const std::uint32_t variable = firstOpenVariable(store, core);
        // One that is held already and still seems to move is a play of rounding errors.
        cores[core].isOpen = variable != noIndex && graph.item(store.variables[variable].item).core == noIndex;
        if (cores[core].isOpen)
            candidates.push({ variable, core });
        else
            cores[core].isTied = cores[core].simplex.hasStays() || cores[core].simplex.isTied();
    };
    for (std::uint32_t core = 0; core < cores.size(); ++core) {
        if (cores[core].simplex.hasStays())
            removeStays(store, core);
        if (cores[core].isOpen)
            consider(core);
    }
    graph.propagate(store);
    for (double rank = -1; !candidates.empty(); --rank) {
        const auto [variable, core] = candidates.top();
        candidates.pop();
        if (!cores[core].isOpen)
            continue; // it has become part of another one
        holdNearZero(store, core, variable, rank);
        settleTouched(store);
        consider(core);
    }
}

void LayoutCores::removeStays(LayoutStore& store, std::uint32_t core)
{
    LayoutSimplex& simplex = cores[core].simplex;
    for (std::uint32_t row = 0; row < simplex.rowCount(); ++row)
        if (simplex.isStay(row))
            graph.setCore(simplex.source(row), noIndex);
    simplex.removeStays();
    measure(store, cores[core]);
    simplex.optimise(scratch.moves);
    move(store, core);
    cores[core].isOpen = true;
}

std::uint32_t LayoutCores::firstOpenVariable(const LayoutStore& store, std::uint32_t core)
{
    if (!cores[core].simplex.findFreeMove(scratch.entries))
        return noIndex;
    scratch.sum.clear();
    for (const LayoutSimplex::Entry& entry : scratch.entries)
        scratch.sum.push_back({ cores[core].roots[entry.index], entry.value });
    return graph.firstMoved(store, scratch.sum);
}

void LayoutCores::holdNearZero(LayoutStore& store, std::uint32_t core, std::uint32_t variable, double rank)
{
    const std::uint32_t item = store.variables[variable].item;
    graph.expand(store, item, scratch.sum);
    scratch.entries.clear();
    for (const LayoutGraph::Weight& weight : scratch.sum) {
        const std::uint32_t root = graph.item(weight.index).origin;
        if (places[root].core != core && cores[places[root].core].isOpen)
            join(core, places[root].core);
        if (places[root].core == core) // what hangs on other cores is fixed
            scratch.entries.push_back({ places[root].index, weight.value });
    }
    cores[core].simplex.addStay(item, rank, scratch.entries);
    graph.setCore(item, core);
    measure(store, cores[core]);
    cores[core].simplex.optimise(scratch.moves);
    move(store, core);
    graph.touchCore(core);
    graph.propagate(store);
}

void LayoutCores::join(std::uint32_t core, std::uint32_t other)
{
    const std::uint32_t offset = cores[core].simplex.rootCount();
    for (const std::uint32_t item : cores[other].roots) {
        RootPlace& place = places[graph.item(item).origin];
        place = { core, place.index + offset };
        cores[core].roots.push_back(item);
    }
    const LayoutSimplex& simplex = cores[other].simplex;
    for (std::uint32_t row = 0; row < simplex.rowCount(); ++row)
        graph.setCore(simplex.source(row), core);
    cores[core].simplex.merge(simplex);
    cores[other] = {};
}

} // namespace platform
