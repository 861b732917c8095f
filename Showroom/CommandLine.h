#pragma once

#include "Platform/Host/SimulatedDevice.h"

#include <optional>
#include <string>
#include <vector>

namespace showroom {

// What the words after the program's name ask for.
struct CommandLine {
    enum class Command { shop, listScenes, scene, tour, help };
    Command command = Command::shop;
    std::string scene; // the scene's name
    platform::HostDevice device = platform::HostDevice::phone();
    platform::DeviceState state;
    std::string pictureFile; // empty: none
    std::string treeFile;
    std::string logFile; // of what happens in the shop's window; empty: none
    std::string folder = "Pictures"; // where a tour leaves what it made
    bool withFilm = false;
    bool isFast = false; // the tour need not take its time

    // Nothing when they cannot be understood; `problem` then says in one line why.
    static std::optional<CommandLine> parse(const std::vector<std::string>& words, std::string& problem);
    static const char* usage();
};

} // namespace showroom
