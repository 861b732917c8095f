#pragma once

#include "Tests/Platform/UIKit/Layout/ExactLayout.h"

#include <random>

namespace layouttests {

// Systems of the kinds that hurt a solver.
enum class LayoutShape { anything, views, chains, conflicts, corners };

class RandomLayouts {
public:
    // Two to seven variables are few enough for the exact solver.
    RandomLayouts(LayoutShape shape, unsigned seed, std::size_t extraVariables = 0);

    std::size_t variableCount() const { return variables; }
    ExactConstraint makeConstraint();
    double makeConstant();
    float makePriority();
    std::size_t below(std::size_t limit);
    bool chance(double probability);

private:
    ExactConstraint makeViewConstraint();
    double makeCoefficient();

    LayoutShape shape;
    std::mt19937 random;
    std::size_t variables;
};

} // namespace layouttests
