#include "Platform/UIKit/Layout/LayoutComponent.h"

#include <algorithm>
#include <utility>

namespace platform {

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

void LayoutComponent::applyConstant(const LayoutStore& store, std::uint32_t constraint)
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
    buildWithDrops(store);
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
void LayoutComponent::buildWithDrops(LayoutStore& store)
{
    while (!build(store)) {
        Drop drop;
        drop.proof = proof;
        for (const LayoutGraph::Weight& part : proof)
            if (drop.constraint == noIndex
                || store.constraints[part.index].sequence > store.constraints[drop.constraint].sequence)
                drop.constraint = part.index;
        store.constraints[drop.constraint].isDropped = true;
        drops.push_back(std::move(drop));
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
    std::size_t trialsLeft = 2 * constraints.size(); // fewer are needed unless rounding errors contradict each other
    for (std::size_t settled = 0; settled < drops.size() && trialsLeft > 0; ++settled) {
        std::sort(drops.begin() + static_cast<std::ptrdiff_t>(settled), drops.end(),
            [&](const Drop& a, const Drop& b) { return sequence(a) < sequence(b); });
        if (!isDoubtful(drops[settled]))
            continue;
        --trialsLeft;
        const std::uint32_t constraint = drops[settled].constraint;
        store.constraints[constraint].isDropped = false;
        drops.erase(drops.begin() + static_cast<std::ptrdiff_t>(settled));
        buildWithDrops(store);
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
        double magnitude = 0;
        for (const LayoutGraph::Weight& part : drop.proof) {
            const double share = part.value * store.constraints[part.index].equation.constant;
            violation += share;
            magnitude = std::max(magnitude, std::abs(share));
        }
        return violation > layoutTolerance(magnitude);
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

// False when required constraints contradict each other, as `proof` then shows.
bool LayoutComponent::build(LayoutStore& store)
{
    graph.build(store, variables, constraints);
    cores.clear();
    if (graph.brokenRow == noIndex)
        cores.build(store);
    return settle(store);
}

bool LayoutComponent::settle(LayoutStore& store)
{
    std::vector<LayoutGraph::Weight> brokenRows;
    if (cores.settle(store, brokenRows))
        return true;
    graph.expandConflict(store, brokenRows, proof);
    return proof.empty(); // nothing could be dropped: rounding errors
}

} // namespace platform
