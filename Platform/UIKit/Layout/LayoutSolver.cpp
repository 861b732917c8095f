#include "Platform/UIKit/Layout/LayoutSolver.h"

#include "Platform/UIKit/Layout/LayoutComponent.h"

#include <utility>

namespace platform {

namespace {

// Beyond these a double cannot keep a thousandth of a point through a chain of constraints.
constexpr double constantLimit = 1e9; // points
constexpr double coefficientLimit = 1e6;

bool isConstant(double points) { return std::abs(points) <= constantLimit; } // false for NaN
bool isCoefficient(double value) { return std::abs(value) <= coefficientLimit && std::abs(value) >= 1 / coefficientLimit; }
bool isPriority(float priority) { return priority > 0 && priority <= requiredLayoutPriority; }

std::uint32_t takeIndex(std::vector<std::uint32_t>& free, std::size_t next)
{
    if (free.empty())
        return static_cast<std::uint32_t>(next);
    const std::uint32_t index = free.back();
    free.pop_back();
    return index;
}

} // namespace

LayoutSolver::LayoutSolver() = default;
LayoutSolver::~LayoutSolver() = default;
LayoutSolver::LayoutSolver(LayoutSolver&&) noexcept = default;
LayoutSolver& LayoutSolver::operator=(LayoutSolver&&) noexcept = default;

LayoutVariableId LayoutSolver::addVariable()
{
    const std::uint32_t variable = takeIndex(freeVariables, store.variables.size());
    if (variable == store.variables.size()) {
        store.variables.emplace_back();
        store.values.push_back(0);
    }
    store.variables[variable] = {};
    store.variables[variable].isAlive = true;
    store.values[variable] = 0;
    return LayoutVariableId { variable };
}

bool LayoutSolver::removeVariable(LayoutVariableId id)
{
    const std::uint32_t variable = index(id);
    if (!contains(id) || store.variables[variable].firstUse != noIndex)
        return false;
    LayoutVariableRecord& record = store.variables[variable];
    record.isAlive = false;
    if (record.component == noIndex && !record.isTouched)
        freeVariables.push_back(variable);
    return true; // else `regroup` frees it
}

bool LayoutSolver::contains(LayoutVariableId id) const
{
    return index(id) < store.variables.size() && store.variables[index(id)].isAlive;
}

bool LayoutSolver::contains(LayoutConstraintId id) const
{
    return index(id) < store.constraints.size() && store.constraints[index(id)].isAlive;
}

const char* LayoutSolver::refusal(const LayoutEquation& equation) const
{
    if (equation.terms.isOverfull())
        return "it names more than four variables";
    if (equation.terms.size() == 0)
        return "its variables cancel out";
    for (const LayoutTerm& term : equation.terms) {
        if (!contains(term.variable))
            return "it names an unknown variable";
        if (!isCoefficient(term.coefficient))
            return "a multiplier is not a number between a millionth and a million";
    }
    if (!isConstant(equation.constant))
        return "its constant is not a number up to a thousand million";
    if (!isPriority(equation.priority))
        return "its priority is not above 0 and at most 1000";
    return nullptr;
}

LayoutConstraintId LayoutSolver::addConstraint(const LayoutEquation& equation)
{
    if (refusal(equation))
        return LayoutConstraintId::none;
    const std::uint32_t constraint = takeIndex(freeConstraints, store.constraints.size());
    if (constraint == store.constraints.size())
        store.constraints.emplace_back();
    LayoutConstraintRecord& record = store.constraints[constraint];
    const bool isQueued = record.isQueued; // a removed one's place in the queue serves the next
    record = {};
    record.isQueued = isQueued;
    record.equation = equation;
    record.sequence = ++activations;
    record.isAlive = true;
    link(constraint);
    touch(constraint);
    return LayoutConstraintId { constraint };
}

bool LayoutSolver::removeConstraint(LayoutConstraintId id)
{
    if (!contains(id))
        return false;
    touch(index(id));
    unlink(index(id));
    store.constraints[index(id)].isAlive = false;
    freeConstraints.push_back(index(id));
    return true;
}

bool LayoutSolver::setConstant(LayoutConstraintId id, double points)
{
    if (!contains(id) || !isConstant(points))
        return false;
    LayoutConstraintRecord& record = store.constraints[index(id)];
    if (record.equation.constant == points)
        return true;
    record.equation.constant = points;
    if (!std::exchange(record.isQueued, true))
        changedConstants.push_back(index(id));
    return true;
}

bool LayoutSolver::setPriority(LayoutConstraintId id, float priority)
{
    if (!contains(id) || !isPriority(priority))
        return false;
    LayoutConstraintRecord& record = store.constraints[index(id)];
    if (std::exchange(record.equation.priority, priority) != priority)
        touch(index(id));
    return true;
}

bool LayoutSolver::isDropped(LayoutConstraintId id) const { return contains(id) && store.constraints[index(id)].isDropped; }

void* LayoutSolver::owner(LayoutConstraintId id) const
{
    return contains(id) ? store.constraints[index(id)].equation.owner : nullptr;
}

void LayoutSolver::solve()
{
    store.changed.clear();
    ++store.stamp;
    if (!touched.empty())
        regroup();
    for (const std::uint32_t constraint : changedConstants) {
        LayoutConstraintRecord& record = store.constraints[constraint];
        record.isQueued = false;
        if (!record.isAlive)
            continue;
        components[record.component]->applyConstant(store, constraint);
        enqueue(record.component);
    }
    changedConstants.clear();

    std::vector<LayoutConflict> conflicts;
    for (const std::uint32_t component : queue) {
        components[component]->isQueued = false;
        components[component]->solve(store, conflicts);
    }
    queue.clear();
    if (conflicts.empty())
        return;
    const auto report = onConflict; // may replace itself
    for (const LayoutConflict& conflict : conflicts)
        if (report)
            report(conflict);
}

// Puts the constraint into the lists of the variables that it names.
void LayoutSolver::link(std::uint32_t constraint)
{
    LayoutConstraintRecord& record = store.constraints[constraint];
    for (unsigned term = 0; term < record.equation.terms.size(); ++term) {
        const std::uint32_t link = constraint * LayoutTerms::capacity + term;
        std::uint32_t& first = store.variables[index(record.equation.terms[term].variable)].firstUse;
        if (first != noIndex)
            store.constraints[first / LayoutTerms::capacity].previous[first % LayoutTerms::capacity] = link;
        record.next[term] = first;
        record.previous[term] = noIndex;
        first = link;
    }
}

void LayoutSolver::unlink(std::uint32_t constraint)
{
    LayoutConstraintRecord& record = store.constraints[constraint];
    for (unsigned term = 0; term < record.equation.terms.size(); ++term) {
        const std::uint32_t next = record.next[term];
        const std::uint32_t previous = record.previous[term];
        if (previous != noIndex)
            store.constraints[previous / LayoutTerms::capacity].next[previous % LayoutTerms::capacity] = next;
        else
            store.variables[index(record.equation.terms[term].variable)].firstUse = next;
        if (next != noIndex)
            store.constraints[next / LayoutTerms::capacity].previous[next % LayoutTerms::capacity] = previous;
    }
}

void LayoutSolver::touch(std::uint32_t constraint)
{
    for (const LayoutTerm& term : store.constraints[constraint].equation.terms)
        if (!std::exchange(store.variables[index(term.variable)].isTouched, true))
            touched.push_back(index(term.variable));
}

// Dissolves the components of the touched variables and forms new ones.
void LayoutSolver::regroup()
{
    std::vector<std::uint32_t> released;
    released.swap(touched);
    for (std::size_t i = 0, count = released.size(); i < count; ++i) {
        const std::uint32_t component = store.variables[released[i]].component;
        if (component == noIndex)
            continue;
        components[component]->release(store, released);
        freeComponents.push_back(component);
    }
    for (const std::uint32_t variable : released)
        store.variables[variable].isTouched = true;
    for (const std::uint32_t variable : released) {
        LayoutVariableRecord& record = store.variables[variable];
        if (!std::exchange(record.isTouched, false) || record.component != noIndex)
            continue; // it is listed twice, or has been gathered
        if (record.firstUse == noIndex) {
            settleLoneVariable(variable);
            continue;
        }
        const std::uint32_t component = takeIndex(freeComponents, components.size());
        if (component == components.size())
            components.push_back(std::make_unique<LayoutComponent>());
        components[component]->gather(store, variable, component);
        enqueue(component);
    }
}

void LayoutSolver::settleLoneVariable(std::uint32_t variable)
{
    if (!store.variables[variable].isAlive) {
        freeVariables.push_back(variable);
        return;
    }
    store.noteChange(variable, store.values[variable], 0);
    store.values[variable] = 0;
}

void LayoutSolver::enqueue(std::uint32_t component)
{
    if (!std::exchange(components[component]->isQueued, true))
        queue.push_back(component);
}

} // namespace platform
