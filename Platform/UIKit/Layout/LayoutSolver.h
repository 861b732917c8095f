#pragma once

#include "Platform/UIKit/Layout/LayoutStore.h"

#include <functional>
#include <memory>
#include <vector>

namespace platform {

class LayoutComponent;

// Required constraints that cannot hold together, and the one of them that was given up.
struct LayoutConflict {
    LayoutConstraintId dropped = LayoutConstraintId::none;
    std::vector<LayoutConstraintId> constraints; // the whole set, `dropped` included, in the order of activation
};

// Places variables so that all required constraints hold and the others fail as little as possible: level by level, the
// highest priority first, the sum of the errors in points is the least that the levels above allow. What then is still
// open is decided by zero: in the order of the variables' ids each is as near to 0 as the rest lets it be. So the result
// follows from the constraints alone, not from the way to them. A variable that no constraint names is 0.
//
// Required constraints that contradict each other by more than a ten-thousandth of a point: the one activated last is
// dropped, and comes back when it fits again. Redundant ones are normal. Changes are queued and judged by `solve`; it works on
// the connected groups of variables that changed, and a changed constant costs as much as the variables that move with it.
//
// A view does best with four variables in the order x, y, width, height (frames are then never of negative size for want
// of a constraint). Not thread-safe; no operation throws.
class LayoutSolver {
public:
    LayoutSolver();
    ~LayoutSolver();
    LayoutSolver(LayoutSolver&&) noexcept;
    LayoutSolver& operator=(LayoutSolver&&) noexcept;

    LayoutVariableId addVariable(); // starts at 0
    bool removeVariable(LayoutVariableId variable); // false while a constraint names it, or when there is none such

    // The reason in words why `addConstraint` would refuse: a number that is infinite, not a number or beyond the range
    // that a screen can need, an unknown variable, no variable left or too many. Null when all is well.
    const char* refusal(const LayoutEquation& equation) const;

    // Activates a constraint; `none` when it is refused, and then nothing has changed.
    LayoutConstraintId addConstraint(const LayoutEquation& equation);
    // These three answer false, and change nothing, for an unknown id or a number that `refusal` would not accept.
    bool removeConstraint(LayoutConstraintId constraint);
    bool setConstant(LayoutConstraintId constraint, double points);
    bool setPriority(LayoutConstraintId constraint, float priority);

    void solve();
    bool needsSolve() const { return !changedConstants.empty() || !touched.empty(); }

    double value(LayoutVariableId variable) const { return store.values[index(variable)]; } // points
    // What the last `solve` moved by more than a billionth of a point, each once, in no particular order.
    const std::vector<LayoutVariableId>& changedVariables() const { return store.changed; }

    bool isDropped(LayoutConstraintId constraint) const; // as of the last `solve`
    void* owner(LayoutConstraintId constraint) const; // null for an unknown id

    // Called at the end of `solve`, once for each constraint that this solve dropped. It may queue changes.
    std::function<void(const LayoutConflict&)> onConflict;

private:
    bool contains(LayoutVariableId variable) const;
    bool contains(LayoutConstraintId constraint) const;
    void link(std::uint32_t constraint);
    void unlink(std::uint32_t constraint);
    void touch(std::uint32_t constraint);
    void regroup();
    void settleLoneVariable(std::uint32_t variable);
    void enqueue(std::uint32_t component);

    LayoutStore store;
    std::vector<std::uint32_t> freeVariables;
    std::vector<std::uint32_t> freeConstraints;
    std::vector<std::unique_ptr<LayoutComponent>> components;
    std::vector<std::uint32_t> freeComponents;
    std::vector<std::uint32_t> touched; // variables of added, removed and re-ranked constraints
    std::vector<std::uint32_t> changedConstants; // constraints
    std::vector<std::uint32_t> queue; // components to solve
    std::uint64_t activations = 0;
};

} // namespace platform
