#include "Platform/UIKit/Layout/LayoutComponent.h"

#include <algorithm>
#include <numeric>
#include <queue>
#include <utility>

namespace platform {

namespace {

constexpr int roundLimit = 12; // of moving cores and measuring what came of it; two or three are normal

struct Scratch {
    std::vector<double> before; // values
    std::vector<double> moves; // of a core's roots
    std::vector<std::uint32_t> touched; // cores
    std::vector<std::uint32_t> examined; // cores
    std::vector<std::uint32_t> groups; // of roots
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

void LayoutComponent::gather(LayoutStore& store, std::uint32_t variable, std::uint32_t ownIndex)
{
    const auto take = [&](std::uint32_t found) {
        if (std::exchange(store.variables[found].component, ownIndex) != ownIndex)
            variables.push_back(found);
    };
    take(variable);
    for (std::size_t i = 0; i < variables.size(); ++i) {
        store.forEachUse(variables[i], [&](std::uint32_t constraint) {
            LayoutConstraintRecord& record = store.constraints[constraint];
            if (std::exchange(record.component, ownIndex) == ownIndex)
                return;
            constraints.push_back(constraint);
            for (const LayoutTerm& term : record.equation.terms)
                take(index(term.variable));
        });
    }
    isBuilt = false;
}

void LayoutComponent::release(LayoutStore& store, std::vector<std::uint32_t>& released)
{
    for (const std::uint32_t variable : variables)
        store.variables[variable].component = noIndex;
    for (const std::uint32_t constraint : constraints)
        store.constraints[constraint].component = noIndex;
    released.insert(released.end(), variables.begin(), variables.end());
    variables.clear();
    constraints.clear();
    drops.clear();
    cores.clear();
}

void LayoutComponent::applyConstant(LayoutStore& store, std::uint32_t constraint)
{
    const LayoutConstraintRecord& record = store.constraints[constraint];
    if (isBuilt && record.item != noIndex)
        graph.setConstant(record.item, record.equation.constant * record.scale);
}

void LayoutComponent::solve(LayoutStore& store, std::vector<LayoutConflict>& conflicts)
{
    if (isBuilt && doDropsStand(store)) {
        graph.propagate(store);
        if (settle(store))
            return;
    }
    rebuild(store, conflicts);
}

// -- Conflicts

void LayoutComponent::rebuild(LayoutStore& store, std::vector<LayoutConflict>& conflicts)
{
    std::vector<double> before;
    for (const std::uint32_t variable : variables)
        before.push_back(store.values[variable]);
    std::vector<std::uint32_t> oldDrops;
    for (const std::uint32_t constraint : constraints)
        if (std::exchange(store.constraints[constraint].isDropped, false))
            oldDrops.push_back(constraint);
    const std::size_t changedBefore = store.changed.size();

    drops.clear();
    buildWithout(store, drops);
    settleDrops(store);
    isBuilt = true;

    for (const Drop& drop : drops)
        if (std::find(oldDrops.begin(), oldDrops.end(), drop.constraint) == oldDrops.end())
            conflicts.push_back(describe(store, drop));
    for (std::size_t i = changedBefore; i < store.changed.size(); ++i)
        store.variables[index(store.changed[i])].changeStamp = store.stamp - 1;
    store.changed.resize(changedBefore);
    for (std::size_t i = 0; i < variables.size(); ++i)
        store.noteChange(variables[i], before[i], store.values[variables[i]]);
}

// Builds and solves, and drops the youngest constraint of each contradiction until none is left.
void LayoutComponent::buildWithout(LayoutStore& store, std::vector<Drop>& found)
{
    while (!build(store)) {
        Drop drop;
        drop.proof = proof;
        for (const LayoutGraph::Weight& part : proof)
            if (drop.constraint == noIndex
                || store.constraints[part.index].sequence > store.constraints[drop.constraint].sequence)
                drop.constraint = part.index;
        store.constraints[drop.constraint].isDropped = true;
        found.push_back(std::move(drop));
    }
}

// What was dropped for the sake of a constraint that was itself dropped later is tried again, in the order of activation.
// So in the end each constraint stands or falls with those before it only.
void LayoutComponent::settleDrops(LayoutStore& store)
{
    const auto sequence = [&](const Drop& drop) { return store.constraints[drop.constraint].sequence; };
    const auto isDoubtful = [&](const Drop& drop) {
        return std::any_of(drop.proof.begin(), drop.proof.end(), [&](const LayoutGraph::Weight& part) {
            return part.index != drop.constraint && store.constraints[part.index].isDropped;
        });
    };
    for (std::size_t settled = 0; settled < drops.size(); ++settled) {
        std::sort(drops.begin() + static_cast<std::ptrdiff_t>(settled), drops.end(),
            [&](const Drop& a, const Drop& b) { return sequence(a) < sequence(b); });
        if (!isDoubtful(drops[settled]))
            continue;
        const std::uint32_t constraint = drops[settled].constraint;
        store.constraints[constraint].isDropped = false;
        drops.erase(drops.begin() + static_cast<std::ptrdiff_t>(settled));
        buildWithout(store, drops);
        if (!store.constraints[constraint].isDropped) {
            --settled; // it fits; the next one has moved up
            continue;
        }
        const auto again
            = std::find_if(drops.begin(), drops.end(), [&](const Drop& drop) { return drop.constraint == constraint; });
        std::rotate(drops.begin() + static_cast<std::ptrdiff_t>(settled), again, again + 1);
    }
}

// Whether the contradictions hold for the present constants, too.
bool LayoutComponent::doDropsStand(const LayoutStore& store) const
{
    return std::all_of(drops.begin(), drops.end(), [&](const Drop& drop) {
        double violation = 0;
        double magnitude = 1;
        for (const LayoutGraph::Weight& part : drop.proof) {
            const double share = part.value * store.constraints[part.index].equation.constant;
            violation += share;
            magnitude = std::max(magnitude, std::abs(share));
        }
        return violation > 1e-5 * magnitude;
    });
}

LayoutConflict LayoutComponent::describe(const LayoutStore& store, const Drop& drop) const
{
    LayoutConflict conflict;
    conflict.dropped = LayoutConstraintId { drop.constraint };
    for (const LayoutGraph::Weight& part : drop.proof)
        conflict.constraints.push_back(LayoutConstraintId { part.index });
    std::sort(conflict.constraints.begin(), conflict.constraints.end(), [&](LayoutConstraintId a, LayoutConstraintId b) {
        return store.constraints[index(a)].sequence < store.constraints[index(b)].sequence;
    });
    return conflict;
}

// -- Solving

// False when required constraints contradict each other, as `proof` then shows.
bool LayoutComponent::build(LayoutStore& store)
{
    graph.build(store, variables, constraints);
    cores.clear();
    if (graph.brokenRow == noIndex && graph.rootCount() > 0)
        buildCores(store);
    return settle(store);
}

// Puts roots that rows connect into one core. A row whose roots cancel out connects nothing.
void LayoutComponent::buildCores(LayoutStore& store)
{
    struct RowSum {
        std::uint32_t item;
        std::uint32_t begin;
    };
    std::vector<RowSum> rows;
    std::vector<LayoutGraph::Weight> sums;
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
        rows.push_back({ row, static_cast<std::uint32_t>(sums.size()) });
        for (LayoutGraph::Weight& weight : scratch.sum) {
            weight.index = graph.item(weight.index).origin;
            groups[groupOf(groups, weight.index)] = groupOf(groups, scratch.sum[0].index);
        }
        sums.insert(sums.end(), scratch.sum.begin(), scratch.sum.end());
    }

    places.assign(graph.rootCount(), {});
    for (std::uint32_t item = 0; item < graph.rowsBegin(); ++item) {
        if (graph.item(item).kind != LayoutGraph::Kind::root)
            continue;
        const std::uint32_t root = graph.item(item).origin;
        RootPlace& group = places[groupOf(groups, root)];
        if (group.core == noIndex) {
            group.core = static_cast<std::uint32_t>(cores.size());
            cores.emplace_back();
        }
        Core& core = cores[group.core];
        places[root] = { group.core, core.simplex.addRoot() };
        core.roots.push_back(item);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto end = i + 1 < rows.size() ? rows[i + 1].begin : static_cast<std::uint32_t>(sums.size());
        scratch.entries.clear();
        for (std::uint32_t at = rows[i].begin; at < end; ++at)
            scratch.entries.push_back({ places[sums[at].index].index, sums[at].value });
        const std::uint32_t core = places[sums[rows[i].begin].index].core;
        const LayoutEquation& equation = store.constraints[graph.item(rows[i].item).origin].equation;
        cores[core].simplex.addRow(rows[i].item, equation.relation, equation.priority, scratch.entries);
        graph.setCore(rows[i].item, core);
    }
    for (std::uint32_t core = 0; core < cores.size(); ++core)
        graph.touchCore(core);
}

// Brings the cores up to date with what has touched them. False when required constraints contradict each other.
bool LayoutComponent::settle(LayoutStore& store)
{
    if (!checkRows(store))
        return false;
    scratch.examined.clear();
    const bool isOptimised = settleCores(store);
    for (const std::uint32_t core : scratch.examined)
        if (!checkCore(store, core))
            return false;
    if (isOptimised)
        settleOpenCores(store);
    return checkRows(store);
}

// False when a required row does not hold that no core can mend.
bool LayoutComponent::checkRows(const LayoutStore& store)
{
    if (graph.brokenRow == noIndex)
        return true;
    const LayoutGraph::Weight weight { graph.brokenRow, graph.residual(graph.brokenRow) < 0 ? -1.0 : 1.0 };
    prove(store, { &weight, 1 });
    return false;
}

// True when a core has new tight rows.
bool LayoutComponent::settleCores(LayoutStore& store)
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

void LayoutComponent::measure(const LayoutStore& store, Core& core)
{
    for (std::uint32_t row = 0; row < core.simplex.rowCount(); ++row) {
        const std::uint32_t source = core.simplex.source(row);
        core.simplex.setResidual(
            row, core.simplex.isStay(row) ? store.values[graph.item(source).variable] : graph.residual(source));
    }
}

void LayoutComponent::move(LayoutStore& store, std::uint32_t core)
{
    const auto& roots = cores[core].roots;
    for (std::size_t i = 0; i < roots.size(); ++i)
        if (scratch.moves[i] != 0)
            graph.moveRoot(store, roots[i], store.values[graph.item(roots[i]).variable] + scratch.moves[i]);
}

// False when the core cannot satisfy its required rows.
bool LayoutComponent::checkCore(const LayoutStore& store, std::uint32_t core)
{
    LayoutSimplex& simplex = cores[core].simplex;
    const double error = simplex.errorAtRank(requiredLayoutPriority);
    if (error <= 1e-5)
        return true;
    double magnitude = 0;
    for (const std::uint32_t variable : variables)
        magnitude = std::max(magnitude, std::abs(store.values[variable]));
    if (error <= 1e-9 * magnitude)
        return true;
    simplex.multipliersAtRank(requiredLayoutPriority, scratch.entries);
    scratch.sum.clear();
    for (const LayoutSimplex::Entry& entry : scratch.entries)
        scratch.sum.push_back({ simplex.source(entry.index), entry.value });
    prove(store, scratch.sum);
    return proof.empty();
}

void LayoutComponent::prove(const LayoutStore& store, std::span<const LayoutGraph::Weight> rows)
{
    graph.expandConflict(store, rows, proof);
}

// -- What no constraint decides

// Gives each open variable, in the order of ids, a row that holds it near zero, until every core is a point. A variable
// may hang on several open cores, which then become one.
void LayoutComponent::settleOpenCores(LayoutStore& store)
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
    for (double rank = -1; !candidates.empty(); --rank) {
        const auto [variable, core] = candidates.top();
        candidates.pop();
        if (!cores[core].isOpen)
            continue; // it has become part of another one
        holdNearZero(store, core, variable, rank);
        settleCores(store);
        consider(core);
    }
}

void LayoutComponent::removeStays(LayoutStore& store, std::uint32_t core)
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

std::uint32_t LayoutComponent::firstOpenVariable(const LayoutStore& store, std::uint32_t core)
{
    if (!cores[core].simplex.findFreeMove(scratch.entries))
        return noIndex;
    scratch.sum.clear();
    for (const LayoutSimplex::Entry& entry : scratch.entries)
        scratch.sum.push_back({ cores[core].roots[entry.index], entry.value });
    return graph.firstMoved(store, scratch.sum);
}

void LayoutComponent::holdNearZero(LayoutStore& store, std::uint32_t core, std::uint32_t variable, double rank)
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

void LayoutComponent::join(std::uint32_t core, std::uint32_t other)
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
