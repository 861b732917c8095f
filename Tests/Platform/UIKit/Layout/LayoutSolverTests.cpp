#include "Platform/UIKit/Layout/LayoutSolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace platform;

namespace {

constexpr auto atMost = LayoutRelation::lessOrEqual;
constexpr auto equal = LayoutRelation::equal;
constexpr auto atLeast = LayoutRelation::greaterOrEqual;

class LayoutSolverTest : public testing::Test {
protected:
    LayoutSolverTest()
    {
        solver.onConflict = [this](const LayoutConflict& conflict) { conflicts.push_back(conflict); };
    }

    LayoutConstraintId add(
        const LayoutTerms& terms, LayoutRelation relation, double constant, float priority = requiredLayoutPriority)
    {
        return solver.addConstraint({ terms, relation, constant, priority });
    }

    bool hasChanged(LayoutVariableId variable) const
    {
        const auto& changed = solver.changedVariables();
        return std::find(changed.begin(), changed.end(), variable) != changed.end();
    }

    LayoutSolver solver;
    LayoutVariableId a = solver.addVariable();
    LayoutVariableId b = solver.addVariable();
    LayoutVariableId c = solver.addVariable();
    std::vector<LayoutConflict> conflicts;
};

} // namespace

TEST_F(LayoutSolverTest, higherLevelIsNeverTradedForManyLowerOnes)
{
    add({ { a } }, equal, 100, 751);
    for (int i = 0; i < 2000; ++i)
        add({ { a } }, equal, 0, 750);
    solver.solve();
    EXPECT_DOUBLE_EQ(solver.value(a), 100);
}

TEST_F(LayoutSolverTest, variableThatLosesItsLastConstraintReturnsToZero)
{
    const auto only = add({ { a } }, equal, 7);
    solver.solve();
    EXPECT_FALSE(solver.removeVariable(a));
    solver.removeConstraint(only);
    solver.solve();
    EXPECT_EQ(solver.value(a), 0);
    EXPECT_TRUE(hasChanged(a));
    EXPECT_TRUE(solver.removeVariable(a));
    EXPECT_FALSE(solver.removeVariable(a));
}

TEST_F(LayoutSolverTest, removedVariablesAndConstraintsMakeRoomForNewOnes)
{
    const auto old = add({ { a }, { b, -1 } }, equal, 7);
    solver.solve();
    solver.setConstant(old, 9); // still queued when it goes
    solver.removeConstraint(old);
    solver.removeVariable(b);
    solver.removeVariable(a);
    const auto next = add({ { c } }, equal, 3);
    EXPECT_EQ(next, old);
    solver.solve();
    EXPECT_DOUBLE_EQ(solver.value(c), 3);
    const auto first = solver.addVariable();
    const auto second = solver.addVariable();
    EXPECT_NE(first, second);
    EXPECT_TRUE((first == a && second == b) || (first == b && second == a));
}

TEST_F(LayoutSolverTest, reportsOnlyWhatMoved)
{
    const auto left = add({ { a } }, equal, 10);
    add({ { b }, { a, -1 } }, equal, 5);
    add({ { c } }, equal, 5);
    solver.solve();
    EXPECT_EQ(solver.changedVariables().size(), 3U);

    solver.setConstant(left, 20);
    EXPECT_TRUE(solver.needsSolve());
    EXPECT_DOUBLE_EQ(solver.value(b), 15) << "changes wait for the solve";
    solver.solve();
    EXPECT_FALSE(solver.needsSolve());
    EXPECT_EQ(solver.changedVariables().size(), 2U);
    EXPECT_FALSE(hasChanged(c));

    solver.setConstant(left, 20);
    add({ { b } }, atLeast, 0); // builds the equations anew
    solver.solve();
    EXPECT_TRUE(solver.changedVariables().empty());
}

TEST_F(LayoutSolverTest, dropsTheYoungestOfAContradictionAndReportsItOnce)
{
    int owner = 0;
    const auto width = add({ { a } }, equal, 100);
    add({ { c } }, equal, 1);
    const auto same = add({ { b }, { a, -1 } }, equal, 0);
    const auto other = solver.addConstraint({ { { b } }, equal, 50, requiredLayoutPriority, &owner });
    solver.solve();
    ASSERT_EQ(conflicts.size(), 1U);
    EXPECT_EQ(conflicts[0].dropped, other);
    EXPECT_EQ(conflicts[0].constraints, (std::vector { width, same, other }));
    EXPECT_EQ(solver.owner(conflicts[0].dropped), &owner);
    EXPECT_TRUE(solver.isDropped(other));
    EXPECT_DOUBLE_EQ(solver.value(b), 100);

    solver.setConstant(width, 120); // the contradiction stays
    solver.solve();
    EXPECT_EQ(conflicts.size(), 1U);
    EXPECT_DOUBLE_EQ(solver.value(b), 120);

    solver.setConstant(width, 50);
    solver.solve();
    EXPECT_FALSE(solver.isDropped(other));
    solver.removeConstraint(same);
    solver.setConstant(width, 30);
    solver.solve();
    EXPECT_DOUBLE_EQ(solver.value(b), 50);
    EXPECT_EQ(conflicts.size(), 1U);
}

TEST_F(LayoutSolverTest, dropsSoftWishesSilently)
{
    add({ { a } }, equal, 1);
    const auto soft = add({ { a } }, equal, 2, 999);
    solver.solve();
    EXPECT_TRUE(conflicts.empty());
    EXPECT_FALSE(solver.isDropped(soft));

    solver.setPriority(soft, requiredLayoutPriority); // now it contradicts
    solver.solve();
    EXPECT_EQ(conflicts.size(), 1U);
    solver.setPriority(soft, 999);
    solver.solve();
    EXPECT_FALSE(solver.isDropped(soft));
}

TEST_F(LayoutSolverTest, redundantDuplicatesAreSilent)
{
    add({ { a } }, equal, 100.0 / 3);
    add({ { a }, { b, -1 } }, equal, 0);
    add({ { b } }, equal, 33.33333333);
    add({ { b, 3 } }, equal, 100);
    add({ { a }, { b, -1 } }, equal, 0);
    add({ { a }, { b, -1 } }, atMost, 0);
    solver.solve();
    EXPECT_TRUE(conflicts.empty());
}

TEST_F(LayoutSolverTest, callbackMayChangeConstraintsAndItself)
{
    const auto first = add({ { a } }, equal, 1);
    add({ { a } }, equal, 2);
    solver.onConflict = [&](const LayoutConflict& conflict) {
        solver.removeConstraint(conflict.dropped);
        solver.setConstant(first, 5);
        solver.onConflict = nullptr;
    };
    solver.solve();
    EXPECT_TRUE(solver.needsSolve());
    solver.solve();
    EXPECT_DOUBLE_EQ(solver.value(a), 5);
}

TEST_F(LayoutSolverTest, refusesWhatItCannotCountWithAndLosesNothing)
{
    const auto kept = add({ { a } }, equal, 7);
    solver.solve();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::nan("");
    LayoutTerms tooMany;
    for (int i = 0; i < 5; ++i)
        tooMany.add({ solver.addVariable() });
    struct Case {
        const char* why;
        LayoutEquation equation;
    };
    const Case cases[] = {
        { "constant is not a number", { { { b } }, equal, nan } },
        { "infinite constant", { { { b } }, equal, -infinity } },
        { "huge constant", { { { b } }, equal, 1e300 } },
        { "multiplier is not a number", { { { b, nan } }, equal, 1 } },
        { "infinite multiplier", { { { b, infinity } }, equal, 1 } },
        { "vanishing multiplier", { { { b, 1e-300 } }, equal, 1 } },
        { "huge multiplier", { { { b, 1e300 } }, equal, 1 } },
        { "priority is not a number", { { { b } }, equal, 1, std::nanf("") } },
        { "no priority", { { { b } }, equal, 1, 0 } },
        { "priority above required", { { { b } }, equal, 1, 1001 } },
        { "unknown variable", { { { LayoutVariableId { 99 } } }, equal, 1 } },
        { "no variable", { {}, equal, 1 } },
        { "cancelled out", { { { b }, { b, -1 } }, equal, 1 } },
        { "five variables", { tooMany, equal, 1 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_NE(solver.refusal(c.equation), nullptr);
        EXPECT_EQ(solver.addConstraint(c.equation), LayoutConstraintId::none);
    }
    for (const double number : { nan, infinity, 1e300 })
        EXPECT_FALSE(solver.setConstant(kept, number));
    EXPECT_FALSE(solver.setPriority(kept, 0));
    EXPECT_FALSE(solver.setConstant(LayoutConstraintId { 77 }, 1));
    EXPECT_FALSE(solver.removeConstraint(LayoutConstraintId::none));
    EXPECT_FALSE(solver.needsSolve());
    EXPECT_DOUBLE_EQ(solver.value(a), 7);
}

TEST_F(LayoutSolverTest, chainOfGrowingFactorsStaysFinite)
{
    LayoutVariableId previous = a;
    add({ { a } }, equal, 1);
    for (int i = 0; i < 500; ++i) {
        const LayoutVariableId next = solver.addVariable();
        add({ { next }, { previous, -1e6 } }, equal, 0);
        previous = next;
    }
    add({ { previous } }, atMost, 10, 500);
    solver.solve();
    EXPECT_TRUE(std::isfinite(solver.value(previous)));
    EXPECT_DOUBLE_EQ(solver.value(a), 1);
}

TEST_F(LayoutSolverTest, longChainsAreExact)
{
    std::vector<LayoutVariableId> tops { a };
    const auto top = add({ { a } }, equal, 0);
    for (int i = 0; i < 5000; ++i) {
        tops.push_back(solver.addVariable());
        add({ { tops[tops.size() - 1] }, { tops[tops.size() - 2], -1 } }, equal, 10.1);
    }
    solver.solve();
    EXPECT_NEAR(solver.value(tops.back()), 50500, 1e-6);
    for (int i = 1; i <= 1000; ++i) { // as a scroll would, with nothing piling up
        solver.setConstant(top, -i / 3.0);
        solver.solve();
    }
    EXPECT_NEAR(solver.value(tops.back()), 50500 - 1000 / 3.0, 1e-6);
}

TEST_F(LayoutSolverTest, manySoftTiesInOnePointEnd)
{
    std::vector<LayoutVariableId> variables;
    for (int i = 0; i < 24; ++i)
        variables.push_back(solver.addVariable());
    for (std::size_t i = 0; i < variables.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            add({ { variables[i] }, { variables[j], -1 } }, atMost, 0, 500);
            add({ { variables[i] }, { variables[j], -1 } }, equal, 0, 400);
        }
        add({ { variables[i] } }, atLeast, 0);
    }
    add({ { variables[7] } }, equal, 30, 600);
    solver.solve();
    for (const LayoutVariableId variable : variables)
        EXPECT_NEAR(solver.value(variable), 30, 0.001);
}
