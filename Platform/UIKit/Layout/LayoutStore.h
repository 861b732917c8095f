#pragma once

#include "Platform/UIKit/Layout/LayoutEquation.h"

#include <cmath>
#include <vector>

namespace platform {

constexpr std::uint32_t noIndex = 0xffffffff;

// Values are kept within this many points, so that a chain of growing factors cannot end in infinities.
constexpr double layoutValueLimit = 1e12;

// How far required constraints may be off, in points, before they contradict each other: callers round, and so do doubles
// of this size.
constexpr double layoutTolerance(double magnitude) { return 1e-4 + 1e-9 * magnitude; }

struct LayoutVariableRecord {
    std::uint32_t firstUse = noIndex; // head of the list of the terms that name it: constraint * LayoutTerms::capacity + term
    std::uint32_t component = noIndex;
    std::uint32_t item = noIndex; // in its component's graph
    std::uint32_t changeStamp = 0;
    bool isAlive = false;
    bool isTouched = false; // waits in the solver's queue
    bool isMeasured = false; // a soft or one-sided constraint names it alone, so that it makes a good root
};

struct LayoutConstraintRecord {
    LayoutEquation equation;
    std::uint64_t sequence = 0; // order of activation
    double scale = 0; // the item's constant is this times the equation's
    std::uint32_t component = noIndex;
    std::uint32_t item = noIndex; // none where it bears on nothing: dropped, or soft over fixed variables
    std::uint32_t next[LayoutTerms::capacity]; // the lists that LayoutVariableRecord::firstUse heads
    std::uint32_t previous[LayoutTerms::capacity];
    std::uint8_t openTerms = 0; // while the graph is built: variables without an item yet
    bool isAlive = false;
    bool isDropped = false;
    bool isQueued = false; // its constant waits to be applied
    bool isDefinition = false;

    bool isRequired() const { return equation.priority >= requiredLayoutPriority; }
    bool isRequiredEquality() const { return isRequired() && equation.relation == LayoutRelation::equal; }
};

// What all components of one solver share.
struct LayoutStore {
    std::vector<double> values; // points, by variable
    std::vector<LayoutVariableRecord> variables;
    std::vector<LayoutConstraintRecord> constraints;
    std::vector<LayoutVariableId> changed;
    std::uint32_t stamp = 0; // of the present solve

    void noteChange(std::uint32_t variable, double from, double to)
    {
        LayoutVariableRecord& record = variables[variable];
        if (record.changeStamp == stamp || std::abs(to - from) <= 1e-9)
            return;
        record.changeStamp = stamp;
        changed.push_back(LayoutVariableId { variable });
    }

    // Calls `visit(constraint)` for every constraint that names the variable.
    template <typename Visit> void forEachUse(std::uint32_t variable, const Visit& visit) const
    {
        for (std::uint32_t link = variables[variable].firstUse; link != noIndex;) {
            const std::uint32_t constraint = link / LayoutTerms::capacity;
            link = constraints[constraint].next[link % LayoutTerms::capacity];
            visit(constraint);
        }
    }
};

inline std::uint32_t index(LayoutVariableId id) { return static_cast<std::uint32_t>(id); }
inline std::uint32_t index(LayoutConstraintId id) { return static_cast<std::uint32_t>(id); }

} // namespace platform
