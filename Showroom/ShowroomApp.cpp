#include "Showroom/ShowroomApp.h"

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/Locale.h"
#include "Platform/Foundation/URL.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"
#include "Showroom/Service/CannedService.h"

namespace showroom {

using namespace platform;

ShowroomApp::ShowroomApp(const DeviceState& state)
{
    Folders::setApplicationName("mivora-showroom");
    Bundle::setMainBundle(Folders::executable() + "/Showroom.bundle");
    if (state.direction == UIUserInterfaceLayoutDirection::rightToLeft)
        Locale::setCurrent(Locale { "ar_AE" });
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::all);
}

ShowroomApp::~ShowroomApp()
{
    if (service)
        service->stop();
    mv::Mivora::install(nullptr);
    mv::MVVideoStreamService::install(nullptr);
}

void ShowroomApp::show(std::shared_ptr<UIViewController> controller)
{
    window = make<UIWindow>();
    window->setRootViewController(std::move(controller));
    window->makeKeyAndVisible();
}

void ShowroomApp::installService()
{
    const auto& bundle = Bundle::mainBundle().bundlePath();
    service = std::make_shared<CannedService>(
        Scenario::load(bundle + "/Scenarios/shop.json", URL::fileURL(bundle).absoluteString() + "/"));
    service->install();
}

} // namespace showroom
