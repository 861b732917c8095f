#include "Benchmarks/Measure.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <fstream>
#include <string>
#include <sys/resource.h>

namespace bench {

double wallMilliseconds()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double cpuMilliseconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) { return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3; };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

double peakMemoryMiB()
{
    std::ifstream file("/proc/self/smaps_rollup");
    for (std::string word; file >> word;) {
        if (word == "Pss:") {
            double kibibytes = 0;
            file >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

double median(std::vector<double> values) { return percentile(std::move(values), 0.5); }

double percentile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    const auto index = std::min(std::size_t(share * double(values.size())), values.size() - 1);
    std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(index), values.end());
    return values[index];
}

} // namespace bench
