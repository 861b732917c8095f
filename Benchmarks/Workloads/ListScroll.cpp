#include "Benchmarks/Workloads/ListScroll.h"

#include "Benchmarks/Workloads/CardTable.h"
#include "Benchmarks/Workloads/ChatScreen.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIWindow.h"

#include <cstdio>
#include <unistd.h>

namespace bench {

using namespace platform;

namespace {

constexpr CGFloat pixelsAFrame = 12, scale = 3;

// A phone that shows the list from its top.
struct ListScreen {
    explicit ListScreen(const std::string& assets)
    {
        registerWorkloadFonts();
        window = make<UIWindow>();
        window->setBackgroundColor(UIColor { 0.949, 0.949, 0.969, 1 });
        list = make<CardTable>(window->bounds(), assets);
        window->addSubview(list);
        window->makeKeyAndVisible();
    }

    void show(int frame)
    {
        list->setContentOffset({ 0, list->minimumContentOffset().y + frame * pixelsAFrame / scale });
        host.advance(1.0 / 60);
    }

    HeadlessHost host;
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<CardTable> list;
};

} // namespace

FrameFigures measureListScroll(int frames, const std::string& assets, const std::string& picture)
{
    ListScreen screen(assets);
    const auto figures = measureFrames(frames, 5, [&](int frame) { screen.show(frame); });
    if (!picture.empty())
        screen.host.writePicture(picture);
    return figures;
}

ListStarts measureListStarts(int runs, const std::string& assets)
{
    ListStarts starts;
    for (int run = 0; run < runs; ++run) {
        char command[4400];
        std::snprintf(command, sizeof command, "exec /proc/%d/exe --assets '%s' --first-list %.3f", int(getpid()), assets.c_str(),
            wallMilliseconds());
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command, "r"), pclose);
        double elapsed = 0, memory = 0;
        if (output && std::fscanf(output.get(), "%lf %lf", &elapsed, &memory) == 2) {
            starts.milliseconds.push_back(elapsed);
            starts.memory.push_back(memory);
        }
    }
    return starts;
}

int showFirstList(double startedAt, const std::string& assets)
{
    ListScreen screen(assets);
    screen.show(0);
    const double elapsed = wallMilliseconds() - startedAt;
    std::printf("%.3f %.2f\n", elapsed, peakMemoryMiB());
    std::fflush(stdout);
    return 0;
}

} // namespace bench
