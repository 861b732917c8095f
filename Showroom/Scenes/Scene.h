#pragma once

#include <functional>
#include <string_view>
#include <vector>

namespace platform {
class HeadlessHost;
}

namespace showroom {

class ShowroomApp;

// A state of the shop that can be brought about by name, with the manual clock, always the same.
struct Scene {
    std::string_view name;
    std::function<void(ShowroomApp&, platform::HeadlessHost&)> bringAbout;
};

const std::vector<Scene>& allScenes();
const Scene* findScene(std::string_view name); // null for an unknown name

} // namespace showroom
