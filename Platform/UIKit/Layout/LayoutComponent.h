#pragma once

#include "Platform/UIKit/Layout/LayoutCores.h"
#include "Platform/UIKit/Layout/LayoutSolver.h"

namespace platform {

// Variables that constraints connect, directly or through others, with their solution: a graph for what follows from
// equalities and simplex cores for the rest. It knows which constraints it had to drop, and why.
class LayoutComponent {
public:
    // Takes in all that hangs together with a variable.
    void gather(LayoutStore& store, std::uint32_t variable, std::uint32_t ownIndex);
    // Lets its variables go, and lists them.
    void release(LayoutStore& store, std::vector<std::uint32_t>& released);

    void applyConstant(const LayoutStore& store, std::uint32_t constraint);
    void solve(LayoutStore& store, std::vector<LayoutConflict>& conflicts);

    bool isQueued = false; // by the solver

private:
    struct Drop {
        std::uint32_t constraint = noIndex;
        std::vector<LayoutGraph::Weight> proof; // constraints whose constants, so weighted, add up to a violation
    };

    void rebuild(LayoutStore& store, std::vector<LayoutConflict>& conflicts);
    void buildWithDrops(LayoutStore& store);
    void settleDrops(LayoutStore& store);
    bool doDropsStand(const LayoutStore& store) const;
    LayoutConflict describe(const LayoutStore& store, const Drop& drop) const;
    bool build(LayoutStore& store);
    bool settle(LayoutStore& store);

    std::vector<std::uint32_t> variables;
    std::vector<std::uint32_t> constraints;
    LayoutGraph graph;
    LayoutCores cores { graph };
    std::vector<Drop> drops;
    std::vector<LayoutGraph::Weight> proof; // of the last contradiction
    bool isBuilt = false;
};

} // namespace platform
