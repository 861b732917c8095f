#pragma once

#include "Platform/UIKit/Layout/LayoutEquation.h"
#include "Tests/Platform/UIKit/Layout/Rational.h"

#include <map>
#include <vector>

namespace layouttests {

// A constraint in terms of the variables' places in a list.
struct ExactConstraint {
    std::vector<std::pair<std::size_t, double>> terms;
    platform::LayoutRelation relation = platform::LayoutRelation::equal;
    double constant = 0;
    float priority = platform::requiredLayoutPriority;
};

struct ExactSolution {
    std::vector<double> values;
    std::vector<bool> isDropped; // by constraint
    std::map<float, double> errors; // by priority
    bool isReliable = true; // false when a number outgrew the fractions
};

// The rules of the layout solver as a plain dense simplex in exact fractions: one required constraint after the other is
// kept if it can be, in the order given, then errors are minimised level by level, then each variable's distance from zero.
ExactSolution solveExactly(std::size_t variableCount, const std::vector<ExactConstraint>& constraints);

// The sum of errors on each level below required, at the given positions.
std::map<float, double> levelErrors(const std::vector<ExactConstraint>& constraints, const std::vector<double>& values);
double errorOf(const ExactConstraint& constraint, const std::vector<double>& values);

} // namespace layouttests
