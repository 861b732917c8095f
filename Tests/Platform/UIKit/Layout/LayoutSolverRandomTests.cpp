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

    // Adds, removes or changes a constraint, keeping about as many as are wanted.
    void edit(RandomLayouts& random, std::size_t wanted)
    {
        const std::size_t count = constraints.size();
        if (count < wanted / 4 || (count < wanted && random.chance(0.4)))
            return add(random.makeConstraint());
        const std::size_t place = random.below(count);
        if (random.chance(0.6)) {
            constraints[place].constant = random.makeConstant();
            EXPECT_TRUE(solver.setConstant(ids[place], constraints[place].constant));
        } else if (random.chance(0.4)) {
            constraints[place].priority = random.makePriority();
            EXPECT_TRUE(solver.setPriority(ids[place], constraints[place].priority));
        } else {
            remove(place);
        }
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

void expectLikeNew(const Model& model)
{
    Model fresh(model.variables.size());
    for (const ExactConstraint& constraint : model.constraints)
        fresh.add(constraint);
    fresh.solver.solve();
    for (std::size_t i = 0; i < model.ids.size(); ++i)
        EXPECT_EQ(model.solver.isDropped(model.ids[i]), fresh.solver.isDropped(fresh.ids[i])) << "constraint " << i;
    const std::vector<double> values = model.values();
    const std::vector<double> freshValues = fresh.values();
    for (std::size_t i = 0; i < values.size(); ++i)
        EXPECT_NEAR(values[i], freshValues[i], 0.001) << "variable " << i;
}

class LayoutSolverRandom : public testing::TestWithParam<LayoutShape> { };

} // namespace

TEST_P(LayoutSolverRandom, findsTheExactOptimum)
{
    unreliable = 0;
    for (unsigned seed = 0; seed < 2000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomLayouts random(GetParam(), seed);
        Model model(random.variableCount());
        for (std::size_t count = 1 + random.below(14); count > 0; --count)
            model.add(random.makeConstraint());
        model.solver.solve();
        expectExact(model);
    }
    EXPECT_LT(unreliable, 20);
}

TEST_P(LayoutSolverRandom, staysExactThroughEdits)
{
    unreliable = 0;
    for (unsigned seed = 0; seed < 200 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomLayouts random(GetParam(), seed + 5000);
        Model model(random.variableCount());
        for (int edit = 0; edit < 25 && !HasFailure(); ++edit) {
            SCOPED_TRACE(edit);
            model.edit(random, 14);
            if (random.chance(0.8)) {
                model.solver.solve();
                expectExact(model);
            }
        }
    }
    EXPECT_LT(unreliable, 40);
}

TEST_P(LayoutSolverRandom, largeLayoutsKeepNoMemoryOfTheirPast)
{
    for (unsigned seed = 0; seed < 20 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomLayouts random(GetParam(), seed, 40);
        Model model(random.variableCount());
        for (int edit = 0; edit < 100 && !HasFailure(); ++edit) {
            SCOPED_TRACE(edit);
            model.edit(random, 60);
            model.solver.solve();
            if (edit % 10 == 9)
                expectLikeNew(model);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, LayoutSolverRandom,
    testing::Values(LayoutShape::anything, LayoutShape::views, LayoutShape::chains, LayoutShape::conflicts, LayoutShape::corners),
    [](const auto& shape) { return std::string(nameOf(shape.param)); });
