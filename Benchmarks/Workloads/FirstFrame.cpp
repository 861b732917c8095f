#include "Benchmarks/Workloads/FirstFrame.h"

#include "Benchmarks/Measure.h"
#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/ShowroomApp.h"

#include <cstdio>
#include <memory>
#include <string>

namespace bench {

using namespace platform;

std::vector<double> measureFirstFrames(int runs)
{
    std::vector<double> milliseconds;
    for (int run = 0; run < runs; ++run) {
        char command[64];
        std::snprintf(command, sizeof command, "exec /proc/%d/exe --first-frame %.3f", int(getpid()), wallMilliseconds());
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command, "r"), pclose);
        double elapsed = 0;
        if (output && std::fscanf(output.get(), "%lf", &elapsed) == 1)
            milliseconds.push_back(elapsed);
    }
    return milliseconds;
}

int showFirstFrame(double startedAt)
{
    HeadlessHost host;
    showroom::ShowroomApp app(host.device().state());
    app.show(make<showroom::GalleryViewController>());
    host.advance(0);
    std::printf("%.3f\n", wallMilliseconds() - startedAt);
    std::fflush(stdout);
    return 0;
}

} // namespace bench
