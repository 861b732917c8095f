#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ViewTree.h"
#include "Platform/Host/WindowHost.h"
#include "Showroom/CommandLine.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/Scenes/Scene.h"
#include "Showroom/ShowroomApp.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

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

// All scenes on all devices in both appearances, for who has no display.
int writePictures(CommandLine line)
{
    const auto folder = std::filesystem::current_path() / "Pictures";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    for (const auto& scene : allScenes()) {
        for (const auto& device : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
            for (const auto appearance : { UIUserInterfaceStyle::light, UIUserInterfaceStyle::dark }) {
                line.scene = scene.name;
                line.device = device;
                line.state.appearance = appearance;
                const char* ending = appearance == UIUserInterfaceStyle::dark ? "-dark.png" : "-light.png";
                line.pictureFile = folder / (line.scene + "-" + device.name + ending);
                if (!writeScene(line))
                    return 1;
            }
        }
    }
    std::printf("There is no display; pictures are in %s\n", folder.c_str());
    return 0;
}

int openShop(const CommandLine& line)
{
    std::string problem;
    const auto host = WindowHost::open("Lumen Lane", line.device, line.state, problem);
    if (!host) {
        std::printf("No window: %s.\n", problem.c_str());
        return writePictures(line);
    }
    ShowroomApp app(line.state);
    app.installService();
    const auto gallery = make<GalleryViewController>();
    app.show(gallery);
    gallery->startReactions();
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
    case CommandLine::Command::shop:
        return openShop(*line);
    }
}
