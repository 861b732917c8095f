#pragma once

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Host/SimulatedDevice.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {
class UINavigationController;
class UIViewController;
class UIWindow;
}

namespace showroom {

class CannedService;
class MediaServer;
struct Scenario;

// The sample shop as an application: its bundle, its language, its broadcast service and its window. Main thread.
class ShowroomApp {
public:
    // Names the application's bundle and data folders; a right-to-left device speaks Arabic, any other the environment's
    // language.
    explicit ShowroomApp(const platform::DeviceState& state);
    ~ShowroomApp();

    void show(std::shared_ptr<platform::UIViewController> controller);
    // Serves the shop's media, and makes the canned service, playing the shop's scenario, the kit's. Before the first screen that
    // asks it. The scenario may be changed before it is played.
    void installService(const std::function<void(Scenario&)>& change = {});
    // Opens the list of shows, with the start page behind it. Installs the service if nobody has.
    void openShop();
    // Shows the start page, whose card leads to the list.
    void openHome();
    CannedService* service() const { return service_.get(); } // null before it is installed

private:
    std::shared_ptr<platform::UINavigationController> makeNavigation();
    void openProduct(const platform::Notification& tap, platform::UINavigationController& navigation) const;

    std::unique_ptr<MediaServer> media;
    platform::NotificationToken productTaps;
    std::shared_ptr<CannedService> service_;
    std::shared_ptr<platform::UIWindow> window;
};

} // namespace showroom
