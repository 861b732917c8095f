#include "Benchmarks/Compositor/CompositorBenchmark.h"

#include <cstdio>

int main()
{
    std::printf("a frame copy: %.3f ms\n", bench::frameCopyMilliseconds());
    for (const auto& figure : bench::measureComposition())
        std::printf("%-26s %6.2f frame copies, %7.3f ms\n", figure.name, figure.copies, figure.milliseconds);
}
