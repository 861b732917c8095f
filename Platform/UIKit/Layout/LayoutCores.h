#pragma once

#include "Platform/UIKit/Layout/LayoutGraph.h"
#include "Platform/UIKit/Layout/LayoutSimplex.h"

namespace platform {

// The roots of a graph, in one simplex core for each group that rows connect, and what decides them. Cores that the
// constraints leave open are closed by zero, see LayoutSolver.
class LayoutCores {
public:
    explicit LayoutCores(LayoutGraph& graph)
        : graph(graph)
    {
    }

    void clear();
    void build(LayoutStore& store); // of a graph just built
    // Moves the roots of touched cores to their best places. False when required rows contradict each other: then
    // `brokenRows`, so weighted, add up to a violation wherever the roots are.
    bool settle(LayoutStore& store, std::vector<LayoutGraph::Weight>& brokenRows);

private:
    struct Core {
        LayoutSimplex simplex;
        std::vector<std::uint32_t> roots; // items, by their index in the simplex
        bool isOpen = false; // more than one position is best
        bool isTied = false; // that it is a point depends on the constants, so any change of them may open it
    };
    struct RootPlace {
        std::uint32_t core = noIndex;
        std::uint32_t index = 0; // in its simplex
    };

    void expandRows(const LayoutStore& store);
    void formCores();

    bool checkRows(std::vector<LayoutGraph::Weight>& brokenRows) const;
    bool settleTouched(LayoutStore& store);
    void measure(const LayoutStore& store, Core& core);
    void move(LayoutStore& store, std::uint32_t core);
    bool checkCore(const LayoutStore& store, std::uint32_t core, std::vector<LayoutGraph::Weight>& brokenRows) const;

    void settleOpen(LayoutStore& store);
    void removeStays(LayoutStore& store, std::uint32_t core);
    std::uint32_t firstOpenVariable(const LayoutStore& store, std::uint32_t core);
    void holdNearZero(LayoutStore& store, std::uint32_t core, std::uint32_t variable, double rank);
    void join(std::uint32_t core, std::uint32_t other);

    LayoutGraph& graph;
    std::vector<Core> cores;
    std::vector<RootPlace> places; // by the roots' numbers
};

} // namespace platform
