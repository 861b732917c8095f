// Not under the sanitizers: they bring allocation functions of their own, which these would replace.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include "Platform/UIKit/Layout/LayoutSolver.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

using namespace platform;

namespace {

std::size_t allocations = 0;

} // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

TEST(LayoutAllocation, emptySolverNeedsNone)
{
    const std::size_t before = allocations;
    LayoutSolver solver;
    solver.solve();
    EXPECT_EQ(allocations, before);
}

TEST(LayoutAllocation, repeatedChangesOfConstantsNeedNone)
{
    LayoutSolver solver;
    LayoutVariableId previous = solver.addVariable();
    const LayoutConstraintId start = solver.addConstraint({ { { previous } }, LayoutRelation::equal, 0 });
    for (int i = 0; i < 100; ++i) { // each at least 10 behind the one before, and softly 30
        const LayoutVariableId next = solver.addVariable();
        const LayoutVariableId gap = solver.addVariable();
        solver.addConstraint({ { { next }, { previous, -1 }, { gap, -1 } }, LayoutRelation::equal, 0 });
        solver.addConstraint({ { { gap } }, LayoutRelation::greaterOrEqual, 10 });
        solver.addConstraint({ { { gap } }, LayoutRelation::equal, 30, 500 });
        previous = next;
    }
    const auto change = [&](double points) {
        solver.setConstant(start, points);
        solver.solve();
    };
    change(1);
    change(2);
    const std::size_t before = allocations;
    for (int i = 0; i < 100; ++i)
        change(i);
    EXPECT_EQ(allocations, before);
    EXPECT_NEAR(solver.value(previous), 99 + 3000, 0.001);
}

#endif
