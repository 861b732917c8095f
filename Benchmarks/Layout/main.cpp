// Prints what building and changing a list of rows costs in the layout engine.

#include "Benchmarks/Layout/LayoutBenchmark.h"

#include <cstdio>
#include <initializer_list>

int main()
{
    std::printf("rows   shape    build ms  resize ms  change one height ms\n");
    bool isCorrect = true;
    for (const auto shape : { bench::RowShape::fixed, bench::RowShape::fitting }) {
        for (const int rows : { 10, 200, 2000 }) {
            const bench::LayoutFigures figures = bench::measureLayout(rows, shape);
            std::printf("%-6d %-8s %-9.4f %-10.6f %.6f%s\n", rows, shape == bench::RowShape::fixed ? "fixed" : "fitting",
                figures.build, figures.resize, figures.changeHeight, figures.isCorrect ? "" : "  WRONG POSITIONS");
            isCorrect &= figures.isCorrect;
        }
    }
    return isCorrect ? 0 : 1;
}
