#include "Benchmarks/Layout/LayoutBenchmark.h"

#include "Platform/UIKit/Layout/LayoutSolver.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <memory>

namespace bench {

using namespace platform;

namespace {

constexpr double rowHeight = 44;
constexpr double gap = 8;

struct Box {
    explicit Box(LayoutSolver& solver)
        : x(solver.addVariable())
        , y(solver.addVariable())
        , width(solver.addVariable())
        , height(solver.addVariable())
    {
    }
    LayoutVariableId x, y, width, height;
};

class List {
public:
    List(int rows, RowShape shape)
        : list(solver)
    {
        require({ { list.x } }, 0);
        require({ { list.y } }, 0);
        width = require({ { list.width } }, 320);
        for (int i = 0; i < rows; ++i)
            addRow(shape);
        solver.solve();
    }

    void setWidth(double points)
    {
        solver.setConstant(width, points);
        solver.solve();
    }

    void setFirstHeight(double points)
    {
        for (const LayoutConstraintId height : firstHeight)
            solver.setConstant(height, points);
        solver.solve();
    }

    bool isAt(double expectedWidth, double firstHeightPoints) const
    {
        const double top = boxes.size() == 1 ? 0 : firstHeightPoints + gap + (boxes.size() - 2) * (rowHeight + gap);
        return std::abs(solver.value(boxes.back().y) - top) < 0.001
            && std::abs(solver.value(boxes.back().width) - expectedWidth) < 0.001;
    }

private:
    LayoutConstraintId require(const LayoutTerms& terms, double constant, LayoutRelation relation = LayoutRelation::equal,
        float priority = requiredLayoutPriority)
    {
        return solver.addConstraint({ terms, relation, constant, priority });
    }

    void addRow(RowShape shape)
    {
        const Box row(solver);
        require({ { row.x }, { list.x, -1 } }, 0);
        require({ { row.x }, { row.width }, { list.x, -1 }, { list.width, -1 } }, 0);
        if (boxes.empty())
            require({ { row.y }, { list.y, -1 } }, 0);
        else
            require({ { row.y }, { boxes.back().y, -1 }, { boxes.back().height, -1 } }, gap);
        std::vector<LayoutConstraintId> heights;
        if (shape == RowShape::fixed) {
            heights.push_back(require({ { row.height } }, rowHeight));
            require({ { row.width } }, 40, LayoutRelation::greaterOrEqual);
        } else {
            heights.push_back(require({ { row.height } }, rowHeight, LayoutRelation::greaterOrEqual, 750));
            heights.push_back(require({ { row.height } }, rowHeight, LayoutRelation::lessOrEqual, 250));
        }
        if (boxes.empty())
            firstHeight = heights;
        boxes.push_back(row);
    }

    LayoutSolver solver;
    Box list;
    std::vector<Box> boxes;
    LayoutConstraintId width {};
    std::vector<LayoutConstraintId> firstHeight;
};

// The thread's own processor time, which does not count what else the machine is doing.
double threadMilliseconds()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

// Milliseconds of one call of `work(i)`; each sample is as many calls as fill about a millisecond.
template <typename Work> double medianOf(int samples, const Work& work)
{
    const auto time = [&](int calls) {
        const double start = threadMilliseconds();
        for (int i = 0; i < calls; ++i)
            work(i);
        return (threadMilliseconds() - start) / calls;
    };
    const int calls = std::max(1, static_cast<int>(1 / std::max(time(1), 1e-6)));
    std::vector<double> times;
    for (int i = 0; i < samples; ++i)
        times.push_back(time(calls));
    std::nth_element(times.begin(), times.begin() + samples / 2, times.end());
    return times[static_cast<std::size_t>(samples) / 2];
}

} // namespace

LayoutFigures measureLayout(int rows, RowShape shape)
{
    LayoutFigures figures;
    figures.build = medianOf(21, [&](int) {
        const List list(rows, shape);
        figures.isCorrect &= list.isAt(320, rowHeight);
    });
    List list(rows, shape);
    figures.resize = medianOf(51, [&](int i) { list.setWidth(300 + i % 2); });
    list.setWidth(310);
    figures.isCorrect &= list.isAt(310, rowHeight);
    figures.changeHeight = medianOf(51, [&](int i) { list.setFirstHeight(50 + i % 2); });
    list.setFirstHeight(60);
    figures.isCorrect &= list.isAt(310, 60);
    return figures;
}

} // namespace bench
