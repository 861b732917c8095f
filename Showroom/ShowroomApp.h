#pragma once

#include "Platform/Host/SimulatedDevice.h"

#include <memory>
#include <string>

namespace platform {
class UIViewController;
class UIWindow;
}

namespace showroom {

class CannedService;

// The sample shop as an application: its bundle, its language, its broadcast service and its window. Main thread.
class ShowroomApp {
public:
    // Names the application's bundle and data folders; a right-to-left device speaks Arabic, any other the environment's
    // language.
    explicit ShowroomApp(const platform::DeviceState& state);
    ~ShowroomApp();

    void show(std::shared_ptr<platform::UIViewController> controller);
    // Makes the canned service, playing the shop's scenario, the kit's. Before the first screen that asks it.
    void installService();

private:
    std::shared_ptr<CannedService> service;
    std::shared_ptr<platform::UIWindow> window;
};

} // namespace showroom
