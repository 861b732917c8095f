#pragma once

#include "Platform/UIKit/Layout/LayoutGraph.h"
#include "Platform/UIKit/Layout/LayoutSimplex.h"
#include "Platform/UIKit/Layout/LayoutSolver.h"

namespace platform {

// Variables that constraints connect, directly or through others, and their solution: a graph for what follows from
// equalities and a small simplex core for each group of roots that rows connect.
class LayoutComponent {
public:
    // Takes in all that hangs together with a variable.
    void gather(LayoutStore& store, std::uint32_t variable, std::uint32_t ownIndex);
    // Lets its variables go, and lists them.
    void release(LayoutStore& store, std::vector<std::uint32_t>& released);

    void applyConstant(LayoutStore& store, std::uint32_t constraint);
    void solve(LayoutStore& store, std::vector<LayoutConflict>& conflicts);

    bool isQueued = false;

private:
    struct Core {
        LayoutSimplex simplex;
        std::vector<std::uint32_t> roots; // items, by their index in the simplex
        bool isOpen = false; // more than one position is best
        bool isTied = false; // that it is a point depends on the constants, so any change of them may open it
    };
    struct RootPlace {
        std::uint32_t core = noIndex;
        std::uint32_t index = 0;
    };
    struct Drop {
        std::uint32_t constraint = noIndex;
        std::vector<LayoutGraph::Weight> proof; // constraints whose constants, so weighted, add up to a violation
    };

    void rebuild(LayoutStore& store, std::vector<LayoutConflict>& conflicts);
    void buildWithout(LayoutStore& store, std::vector<Drop>& found);
    void settleDrops(LayoutStore& store);
    bool doDropsStand(const LayoutStore& store) const;
    LayoutConflict describe(const LayoutStore& store, const Drop& drop) const;

    bool build(LayoutStore& store);
    void buildCores(LayoutStore& store);
    bool settle(LayoutStore& store);
    bool checkRows(const LayoutStore& store);
    bool settleCores(LayoutStore& store);
    void measure(const LayoutStore& store, Core& core);
    void move(LayoutStore& store, std::uint32_t core);
    bool checkCore(const LayoutStore& store, std::uint32_t core);
    void prove(const LayoutStore& store, std::span<const LayoutGraph::Weight> rows);

    void settleOpenCores(LayoutStore& store);
    std::uint32_t firstOpenVariable(const LayoutStore& store, std::uint32_t core);
    void removeStays(LayoutStore& store, std::uint32_t core);
    void holdNearZero(LayoutStore& store, std::uint32_t core, std::uint32_t variable, double rank);
    void join(std::uint32_t core, std::uint32_t other);

    std::vector<std::uint32_t> variables;
    std::vector<std::uint32_t> constraints;
    LayoutGraph graph;
    std::vector<Core> cores;
    std::vector<RootPlace> places; // by the roots' numbers
    std::vector<Drop> drops;
    std::vector<LayoutGraph::Weight> proof; // of the last failure
    bool isBuilt = false;
};

} // namespace platform
