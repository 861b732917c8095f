#include "Platform/UIKit/Layout/LayoutSolver.h"
#include "Tests/Platform/UIKit/Layout/RandomLayouts.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace layouttests;

namespace {

// A solver together with the plain list of what was put into it.
struct Model {
    explicit Model(std::size_t variableCount)
    {
        for (std::size_t i = 0; i < variableCount; ++i)
            variables.push_back(solver.addVariable());
        solver.onConflict = [this](const LayoutConflict& conflict) { reported.push_back(conflict); };
    }

    void add(const ExactConstraint& constraint)
    {
        LayoutEquation equation;
        for (const auto& [variable, coefficient] : constraint.terms)
            equation.terms.add({ variables[variable], coefficient });
        equation.relation = constraint.relation;
        equation.constant = constraint.constant;
        equation.priority = constraint.priority;
        if (solver.refusal(equation))
            return; // its terms cancel out
        ids.push_back(solver.addConstraint(equation));
        constraints.push_back(constraint);
    }

    void remove(std::size_t place)
    {
        EXPECT_TRUE(solver.removeConstraint(ids[place]));
        ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(place));
        constraints.erase(constraints.begin() + static_cast<std::ptrdiff_t>(place));
    }

    std::vector<double> values() const
    {
        std::vector<double> result;
        for (const LayoutVariableId variable : variables)
            result.push_back(solver.value(variable));
        return result;
    }

    std::string describe() const
    {
        std::string text;
        const char* relations[] = { "<=", "==", ">=" };
        for (const ExactConstraint& constraint : constraints) {
            for (const auto& [variable, coefficient] : constraint.terms)
                text += (coefficient < 0 ? " " : " +") + std::to_string(coefficient) + "*v" + std::to_string(variable);
            text += std::string(" ") + relations[static_cast<int>(constraint.relation)] + " "
                + std::to_string(constraint.constant) + " @" + std::to_string(constraint.priority) + "\n";
        }
        return text;
    }

    LayoutSolver solver;
    std::vector<LayoutVariableId> variables;
    std::vector<LayoutConstraintId> ids;
    std::vector<ExactConstraint> constraints;
    std::vector<LayoutConflict> reported;
};

int unreliable = 0; // systems that outgrew the exact solver

void expectExact(const Model& model)
{
    const ExactSolution exact = solveExactly(model.variables.size(), model.constraints);
    if (!exact.isReliable) {
        ++unreliable;
        return;
    }
    const std::vector<double> values = model.values();
    for (std::size_t i = 0; i < model.constraints.size(); ++i) {
        EXPECT_EQ(model.solver.isDropped(model.ids[i]), exact.isDropped[i]) << "constraint " << i << "\n" << model.describe();
        if (model.constraints[i].priority < requiredLayoutPriority || exact.isDropped[i])
            continue;
        EXPECT_LT(errorOf(model.constraints[i], values), 0.001) << "constraint " << i << "\n" << model.describe();
    }
    const auto errors = levelErrors(model.constraints, values);
    for (const auto& [priority, error] : exact.errors)
        EXPECT_NEAR(errors.at(priority), error, 0.001) << "level " << priority << "\n" << model.describe();
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_NEAR(values[i], exact.values[i], 0.001) << "variable " << i << "\n" << model.describe();
}

const char* nameOf(LayoutShape shape)
{
    constexpr const char* names[] = { "anything", "views", "chains", "conflicts", "corners" };
    return names[static_cast<int>(shape)];
}

class LayoutSolverRandom : public testing::TestWithParam<LayoutShape> { };

} // namespace

TEST_P(LayoutSolverRandom, findsTheExactOptimum)
{
    unreliable = 0;
    for (unsigned seed = 0; seed < 1000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomLayouts random(GetParam(), seed);
        Model model(random.variableCount());
        for (std::size_t count = 1 + random.below(14); count > 0; --count)
            model.add(random.makeConstraint());
        model.solver.solve();
        expectExact(model);
    }
    EXPECT_LT(unreliable, 10);
}

TEST_P(LayoutSolverRandom, staysExactThroughEdits)
{
    unreliable = 0;
    for (unsigned seed = 0; seed < 100 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomLayouts random(GetParam(), seed + 5000);
        Model model(random.variableCount());
        for (int edit = 0; edit < 25 && !HasFailure(); ++edit) {
            SCOPED_TRACE(edit);
            const std::size_t count = model.constraints.size();
            if (count < 3 || (count < 14 && random.chance(0.4))) {
                model.add(random.makeConstraint());
            } else if (random.chance(0.6)) {
                const std::size_t place = random.below(count);
                model.constraints[place].constant = random.makeConstant();
                EXPECT_TRUE(model.solver.setConstant(model.ids[place], model.constraints[place].constant));
            } else if (random.chance(0.4)) {
                const std::size_t place = random.below(count);
                model.constraints[place].priority = random.makePriority();
                EXPECT_TRUE(model.solver.setPriority(model.ids[place], model.constraints[place].priority));
            } else {
                model.remove(random.below(count));
            }
            if (random.chance(0.8)) {
                model.solver.solve();
                expectExact(model);
            }
        }
    }
    EXPECT_LT(unreliable, 25);
}

INSTANTIATE_TEST_SUITE_P(Shapes, LayoutSolverRandom,
    testing::Values(LayoutShape::anything, LayoutShape::views, LayoutShape::chains, LayoutShape::conflicts, LayoutShape::corners),
    [](const auto& shape) { return std::string(nameOf(shape.param)); });
