#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ViewTree.h"
#include "Platform/Host/WindowHost.h"
#include "Showroom/CommandLine.h"
#include "Showroom/Log/ShopLog.h"
#include "Showroom/Scenes/Scene.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/Tour.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace platform;
using namespace showroom;

namespace {

bool writeText(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        std::fprintf(stderr, "showroom: \"%s\" cannot be written\n", path.c_str());
    return bool(file);
}

bool writeScene(const CommandLine& line)
{
    HeadlessHost host(line.device, line.state);
    ShowroomApp app(line.state);
    findScene(line.scene)->bringAbout(app, host);
    bool written = true;
    if (!line.pictureFile.empty())
        written = host.writePicture(line.pictureFile);
    if (!line.treeFile.empty())
        written = writeText(line.treeFile, viewTree(host.device()).print(JSONStyle::indented) + "\n") && written;
    return written;
}

int leaveTour(const CommandLine& line)
{
    HeadlessHost host(line.device, line.state, line.isFast ? HostTime::manual : HostTime::real);
    ShowroomApp app(line.state);
    const bool whole = playTour(app, host, line.folder, line.withFilm);
    const auto folder = std::filesystem::absolute(line.folder).lexically_normal().string();
    std::printf("Pictures, events.jsonl%s are in %s\n", line.withFilm ? " and tour.mp4" : "", folder.c_str());
    return whole ? 0 : 1;
}

int openShop(CommandLine line)
{
    std::string problem;
    const auto host = WindowHost::open("Lumen Lane", line.device, line.state, problem);
    if (!host) {
        std::printf("No window: %s. A tour of the shop is played instead.\n", problem.c_str());
        std::fflush(stdout);
        line.withFilm = true;
        return leaveTour(line);
    }
    ShowroomApp app(line.state);
    app.openShop();
    std::unique_ptr<ShopLog> log;
    if (!line.logFile.empty()) {
        log = std::make_unique<ShopLog>(line.logFile, *app.service());
        if (!log->isWritable()) {
            std::fprintf(stderr, "showroom: \"%s\" cannot be written\n", line.logFile.c_str());
            return 1;
        }
    }
    host->run();
    return 0;
}

} // namespace

int main(int count, char** words)
{
    std::string problem;
    const auto line = CommandLine::parse({ words + 1, words + count }, problem);
    if (!line) {
        std::fprintf(stderr, "showroom: %s\n", problem.c_str());
        return 2;
    }
    switch (line->command) {
    case CommandLine::Command::help:
        std::fputs(CommandLine::usage(), stdout);
        return 0;
    case CommandLine::Command::listScenes:
        for (const auto& scene : allScenes())
            std::printf("%.*s\n", int(scene.name.size()), scene.name.data());
        return 0;
    case CommandLine::Command::scene:
        return writeScene(*line) ? 0 : 1;
    case CommandLine::Command::tour:
        return leaveTour(*line);
    case CommandLine::Command::shop:
        return openShop(*line);
    }
}
