#include "Benchmarks/Compositor/CompositorBenchmark.h"
#include "Benchmarks/Layout/LayoutBenchmark.h"
#include "Benchmarks/Measure.h"
#include "Benchmarks/Workloads/Chat.h"
#include "Benchmarks/Workloads/ChatPanel.h"
#include "Benchmarks/Workloads/FirstFrame.h"
#include "Benchmarks/Workloads/ListScroll.h"
#include "Benchmarks/Workloads/LiveScreen.h"
#include "Benchmarks/Workloads/Reactions.h"
#include "Benchmarks/Workloads/Rotation.h"
#include "Benchmarks/Workloads/VideoFrames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

// Benchmarks/README.md says what each workload is.

namespace {

struct Options {
    std::string workload; // empty: all
    std::string assets, picture;
    int frames = 0; // as many as the workload has
    bool json = false;
};

void printFrames(const Options& options, const char* workload, const char* name, const bench::FrameFigures& figures, double copy)
{
    const double copies = figures.cpuPerFrame / copy;
    if (options.json) {
        std::printf(
            "{\"peer\":\"mivora\",\"workload\":\"%s\",\"frames\":%d,\"cpu_ms_per_frame\":%.3f,\"wall_ms_median\":%.3f,"
            "\"wall_ms_p99\":%.3f,\"wall_ms_max\":%.3f,\"peak_pss_mib\":%.1f,\"memcpy_frame_ms\":%.3f,\"frame_copies\":%.2f}\n",
            workload, figures.frames, figures.cpuPerFrame, figures.wallMedian, figures.wallP99, figures.wallMax, figures.memory,
            copy, copies);
        return;
    }
    std::printf("%s %s: %.2f frame copies, %.3f ms CPU a frame (wall median %.3f, p99 %.3f), %.1f MiB; a copy is %.3f ms\n",
        workload, name, copies, figures.cpuPerFrame, figures.wallMedian, figures.wallP99, figures.memory, copy);
}

void runListScroll(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const int frames = options.frames > 0 ? options.frames : 600;
    printFrames(options, "W1", "list", bench::measureListScroll(frames, options.assets, options.picture), copy);
}

void runListStarts(const Options& options)
{
    const auto starts = bench::measureListStarts(15, options.assets);
    const auto middle = bench::median(starts.milliseconds), memory = bench::median(starts.memory);
    std::printf(options.json
            ? "{\"peer\":\"mivora\",\"workload\":\"W4\",\"wall_ms_median\":%.1f,\"peak_pss_mib\":%.1f,\"runs\":%zu}\n"
            : "W4 first frame of the list: %.1f ms from exec, %.1f MiB (%zu runs)\n",
        middle, memory, starts.milliseconds.size());
}

void runChatFlood(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const int frames = options.frames > 0 ? options.frames : 300;
    printFrames(options, "W2", "chat", bench::measureChatFlood(frames, options.assets, options.picture), copy);
    const auto figures = bench::measureChatOverVideo(frames, options.assets);
    const double chat = figures.all.cpuPerFrame - figures.video;
    std::printf(options.json
            ? "{\"workload\":\"W2\",\"over\":\"video\",\"frames\":%d,\"chat_cpu_ms\":%.3f,\"video_cpu_ms\":%.3f,"
              "\"peak_pss_mib\":%.1f,\"memcpy_frame_ms\":%.3f,\"frame_copies\":%.2f}\n"
            : "W2 over video (%d frames): chat %.3f ms CPU a frame besides the video's own %.3f; %.1f MiB; a copy is %.3f "
              "ms, the chat %.2f\n",
        frames, chat, figures.video, figures.all.memory, copy, chat / copy);
}

void runIdle(const Options& options)
{
    constexpr double seconds = 10;
    const auto print = [&](const char* place, const bench::IdleFigures& figures) {
        std::printf(options.json ? "{\"peer\":\"mivora\",\"workload\":\"W6\",\"place\":\"%s\",\"cpu_ms\":%.2f,\"frames\":%d,"
                                   "\"peak_pss_mib\":%.1f}\n"
                                 : "W6 at rest, %s: %.2f ms CPU in 10 s, %d frames, %.1f MiB\n",
            place, figures.cpu, figures.frames, figures.memory);
    };
    print("headless", bench::measureIdle(seconds, options.assets));
    if (const auto figures = bench::measureIdleWindow(seconds, options.assets))
        print("window", *figures);
}

void runReactions(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const int frames = options.frames > 0 ? options.frames : 300;
    printFrames(options, "W3", "reactions", bench::measureReactions(frames, options.assets, options.picture), copy);
}

void runRotation(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const int turns = options.frames > 0 ? options.frames : 40;
    printFrames(options, "W5", "rotation", bench::measureRotation(turns, options.assets, options.picture), copy);
}

void runComposition(const Options& options)
{
    for (const auto& figure : bench::measureComposition()) {
        if (options.json)
            std::printf("{\"workload\":\"K1\",\"layers\":\"%s\",\"wall_ms_median\":%.3f,\"frame_copies\":%.2f}\n", figure.name,
                figure.milliseconds, figure.copies);
        else
            std::printf("K1 full frame, %-24s %6.2f frame copies, %7.3f ms\n", figure.name, figure.copies, figure.milliseconds);
    }
}

void runFirstFrame(const Options& options)
{
    const auto times = bench::measureFirstFrames(15);
    const auto middle = bench::median(times), best = bench::percentile(times, 0), worst = bench::percentile(times, 1);
    std::printf(options.json
            ? "{\"workload\":\"K2\",\"wall_ms_median\":%.1f,\"wall_ms_min\":%.1f,\"wall_ms_max\":%.1f,\"runs\":%zu}\n"
            : "K2 first frame of the gallery: %.1f ms from exec (best %.1f, worst %.1f of %zu runs)\n",
        middle, best, worst, times.size());
}

void runLayout(const Options& options)
{
    for (const int rows : { 10, 200, 2000 }) {
        const auto figures = bench::measureLayout(rows);
        if (!figures.isCorrect)
            std::fprintf(stderr, "K3: the rows of %d are in the wrong place\n", rows);
        std::printf(options.json
                ? "{\"workload\":\"K3\",\"rows\":%d,\"build_ms\":%.5f,\"resize_ms\":%.5f,\"change_height_ms\":%.5f}\n"
                : "K3 layout of %4d rows: build %.4f ms, resize %.5f ms, change one height %.5f ms\n",
            rows, figures.build, figures.resize, figures.changeHeight);
    }
}

void runChatPanel(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const int frames = options.frames > 0 ? options.frames : 300;
    std::vector<double> handOvers[2], wholes[2]; // turn and turn about, so that a busy machine weighs on both
    for (int run = 0; run < 5; ++run) {
        for (const bool isLong : { false, true }) {
            const auto figures = bench::measureChatPanel(isLong ? 10'000 : 50, frames, options.picture);
            handOvers[isLong].push_back(figures.handOver);
            wholes[isLong].push_back(figures.frame);
        }
    }
    for (const bool isLong : { false, true }) {
        const double handOver = bench::median(handOvers[isLong]), whole = bench::median(wholes[isLong]);
        std::printf(options.json
                ? "{\"workload\":\"K5\",\"held\":%d,\"hand_over_ms\":%.4f,\"frame_ms\":%.4f,\"frame_copies\":%.2f}\n"
                : "K5 panel with %5d messages held: %.4f ms to hand them over, %.3f ms with the frame, %.2f frame copies\n",
            isLong ? 10'000 : 50, handOver, whole, whole / copy);
    }
}

void runVideoFrames(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const auto figures = bench::measureVideoFrames(options.frames > 0 ? options.frames : 300);
    std::printf(options.json
            ? "{\"workload\":\"K4\",\"decode_cpu_ms\":%.3f,\"convert_cpu_ms\":%.3f,\"whole_cpu_ms\":%.3f,\"frames\":%d,"
              "\"memcpy_frame_ms\":%.3f}\n"
            : "K4 a frame of video: decoder %.2f ms CPU, conversion and scaling %.2f ms, whole %.2f ms (%d frames); a copy is "
              "%.3f ms\n",
        figures.decoding, figures.converting, figures.whole, figures.frames, copy);
}

void runLiveScreen(const Options& options)
{
    const double copy = bench::frameCopyMilliseconds();
    const auto figures = bench::measureLiveScreen(options.frames > 0 ? options.frames : 300, options.picture);
    const auto print = [&](const char* what, const bench::FrameFigures& frames, double screenFrames) {
        std::printf(options.json
                ? "{\"workload\":\"K6\",\"chat\":\"%s\",\"frames\":%d,\"cpu_ms_per_frame\":%.3f,\"decode_cpu_ms\":%.3f,"
                  "\"screen_frames\":%.2f,\"peak_pss_mib\":%.1f,\"memcpy_frame_ms\":%.3f,\"frame_copies\":%.2f}\n"
                : "K6 live screen, %s (%d frames): %.2f ms CPU a frame of video, of which %.2f ms decode it; %.2f drawn for it; "
                  "%.1f MiB; a copy is %.3f ms, all are %.2f\n",
            what, frames.frames, frames.cpuPerFrame, figures.decoding, screenFrames, frames.memory, copy,
            frames.cpuPerFrame / copy);
    };
    print("quiet", figures.quiet, figures.quietScreenFrames);
    print("busy", figures.busy, figures.busyScreenFrames);
}

constexpr struct {
    const char* name;
    void (*run)(const Options&);
} workloads[] = { { "W1", runListScroll }, { "W2", runChatFlood }, { "W3", runReactions }, { "W4", runListStarts },
    { "W5", runRotation }, { "W6", runIdle }, { "K1", runComposition }, { "K2", runFirstFrame }, { "K3", runLayout },
    { "K4", runVideoFrames }, { "K5", runChatPanel }, { "K6", runLiveScreen } };

int usage(const std::string& problem)
{
    std::fprintf(stderr,
        "mivora_bench: %s\nmivora_bench [--workload W1|W2|W3|W4|W5|W6|K1|K2|K3|K4|K5|K6] [--assets DIR] [--frames N] [--png "
        "FILE] "
        "[--json]\n",
        problem.c_str());
    return 2;
}

} // namespace

int main(int count, char** words)
{
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string option = words[i];
        if (option == "--json") {
            options.json = true;
            continue;
        }
        if (i + 1 == count)
            return usage(option + ": a word is missing after it, or it is no option");
        const std::string word = words[++i];
        if (option == "--first-frame")
            return bench::showFirstFrame(std::atof(word.c_str()));
        if (option == "--first-list")
            return bench::showFirstList(std::atof(word.c_str()), options.assets);
        if (option == "--workload")
            options.workload = word;
        else if (option == "--assets")
            options.assets = word;
        else if (option == "--png")
            options.picture = word;
        else if (option == "--frames")
            options.frames = std::clamp(std::atoi(word.c_str()), 1, 100'000);
        else
            return usage("\"" + option + "\" is no option");
    }
    bool known = false;
    for (const auto& workload : workloads) {
        if (!options.workload.empty() && options.workload != workload.name)
            continue;
        known = true;
        workload.run(options);
        std::fflush(stdout);
    }
    return known ? 0 : usage("workload \"" + options.workload + "\" is not built yet, or there is none of that name");
}
