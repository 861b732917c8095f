#include "Showroom/CommandLine.h"

#include "Showroom/Scenes/Scene.h"

#include <map>

namespace showroom {

using namespace platform;

namespace {

// One of a few words after an option, as the value it stands for.
template <typename Value>
bool choose(const std::string& option, const std::string& word, const std::map<std::string, Value>& choices, Value& chosen,
    std::string& problem)
{
    if (const auto found = choices.find(word); found != choices.end()) {
        chosen = found->second;
        return true;
    }
    problem = option + " \"" + word + "\" is not one of:";
    for (const auto& [name, value] : choices)
        problem += " " + name;
    return false;
}

bool takeOption(CommandLine& line, const std::string& option, const std::string& word, std::string& problem)
{
    if (option == "--device") {
        const auto device = HostDevice::named(word);
        if (device)
            line.device = *device;
        else
            problem = "--device \"" + word + "\" is not one of: phone small tablet";
        return device.has_value();
    }
    if (option == "--orientation")
        return choose(option, word,
            { { "portrait", UIDeviceOrientation::portrait }, { "landscape", UIDeviceOrientation::landscapeLeft } },
            line.state.orientation, problem);
    if (option == "--appearance")
        return choose(option, word, { { "light", UIUserInterfaceStyle::light }, { "dark", UIUserInterfaceStyle::dark } },
            line.state.appearance, problem);
    if (option == "--direction")
        return choose(option, word,
            { { "ltr", UIUserInterfaceLayoutDirection::leftToRight }, { "rtl", UIUserInterfaceLayoutDirection::rightToLeft } },
            line.state.direction, problem);
    if (option == "--png" || option == "--tree") {
        (option == "--png" ? line.pictureFile : line.treeFile) = word;
        return true;
    }
    if (option == "--log" && line.command == CommandLine::Command::shop) {
        line.logFile = word;
        return true;
    }
    if (option == "--out" && line.command == CommandLine::Command::tour) {
        line.folder = word;
        return true;
    }
    problem = "\"" + option + "\" is no option";
    return false;
}

} // namespace

std::optional<CommandLine> CommandLine::parse(const std::vector<std::string>& words, std::string& problem)
{
    CommandLine line;
    std::size_t next = 0;
    if (!words.empty() && !words[0].starts_with("--")) {
        const std::map<std::string, Command> commands = { { "scenes", Command::listScenes }, { "scene", Command::scene },
            { "tour", Command::tour }, { "help", Command::help } };
        if (!choose("the command", words[next++], commands, line.command, problem))
            return std::nullopt;
    } else if (!words.empty() && words[0] == "--help") {
        line.command = Command::help;
        return line;
    }
    if (line.command == Command::scene) {
        if (next == words.size()) {
            problem = "scene: which one? \"showroom scenes\" lists them";
            return std::nullopt;
        }
        line.scene = words[next++];
        if (!findScene(line.scene)) {
            problem = "there is no scene \"" + line.scene + "\"; \"showroom scenes\" lists them";
            return std::nullopt;
        }
    }
    while (next < words.size()) {
        const auto& option = words[next++];
        if (option == "--video" && line.command == Command::tour) {
            line.withFilm = true;
            continue;
        }
        if (option == "--fast" && (line.command == Command::tour || line.command == Command::shop)) {
            line.isFast = true;
            continue;
        }
        if (next == words.size()) {
            problem = option + ": a word is missing after it";
            return std::nullopt;
        }
        if (!takeOption(line, option, words[next++], problem))
            return std::nullopt;
    }
    return line;
}

const char* CommandLine::usage()
{
    return "showroom                  opens the shop in a window; without a display it plays the tour into ./Pictures\n"
           "    --log FILE            writes the service's calls and the host's loudness, in JSON, a line each\n"
           "showroom scenes           lists the scenes\n"
           "showroom scene NAME       brings the shop into that state\n"
           "    --png FILE            writes the picture\n"
           "    --tree FILE           writes the view tree as JSON\n"
           "showroom tour             plays what there is without a display, in real time: pictures and a log of events\n"
           "    --out FOLDER          where they go, instead of ./Pictures\n"
           "    --video               films it as tour.mp4\n"
           "    --fast                as fast as it can be drawn, every frame at its time\n"
           "Options of all:\n"
           "    --device phone|small|tablet       --orientation portrait|landscape\n"
           "    --appearance light|dark           --direction ltr|rtl\n";
}

} // namespace showroom
