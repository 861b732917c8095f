#include "Showroom/ShowroomApp.h"

#include "Main/MivoraUINotification.h"
#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/Locale.h"
#include "Platform/Foundation/URL.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIWindow.h"
#include "Showroom/Home/HomeViewController.h"
#include "Showroom/Product/ProductPageViewController.h"
#include "Showroom/Server/MediaServer.h"
#include "Showroom/Service/CannedService.h"
#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsViewController.h"

namespace showroom {

using namespace platform;

namespace {

// The shows' words in the viewer's language, where the shop has them.
void translate(Scenario& scenario)
{
    const auto inViewersLanguage = [](std::optional<std::string>& text, const std::string& key) {
        if (text)
            text = Bundle::mainBundle().localizedString(key, *text, "Shows");
    };
    for (auto& show : scenario.broadcasts) {
        inViewersLanguage(show.title, show.id + ".title");
        inViewersLanguage(show.description, show.id + ".description");
    }
}

} // namespace

ShowroomApp::ShowroomApp(const DeviceState& state)
{
    Folders::setApplicationName("mivora-showroom");
    Bundle::setMainBundle(Folders::executable() + "/Showroom.bundle");
    const bool rightToLeft = state.direction == UIUserInterfaceLayoutDirection::rightToLeft;
    Locale::setCurrent(rightToLeft ? std::optional(Locale { "ar_AE" }) : std::nullopt);
    UIApplication::shared().setSupportedInterfaceOrientations(UIInterfaceOrientationMask::all);
}

ShowroomApp::~ShowroomApp()
{
    if (service_)
        service_->stop();
    mv::Mivora::install(nullptr);
    mv::MVVideoStreamService::install(nullptr);
}

void ShowroomApp::show(std::shared_ptr<UIViewController> controller)
{
    window = make<UIWindow>();
    window->setRootViewController(std::move(controller));
    window->makeKeyAndVisible();
}

void ShowroomApp::installService(const std::function<void(Scenario&)>& change)
{
    const auto& bundle = Bundle::mainBundle().bundlePath();
    if (!media)
        media = MediaServer::start(bundle);
    const auto mediaBase = media ? media->address() : URL::fileURL(bundle).absoluteString() + "/";
    auto scenario = Scenario::load(bundle + "/Scenarios/shop.json", mediaBase);
    translate(scenario);
    if (change)
        change(scenario);
    service_ = std::make_shared<CannedService>(std::move(scenario));
    service_->install();
}

void ShowroomApp::openShop()
{
    const auto navigation = makeNavigation();
    navigation->pushViewController(make<mv::MVBroadcastsViewController>(), false);
    show(navigation);
}

void ShowroomApp::openHome() { show(makeNavigation()); }

std::shared_ptr<UINavigationController> ShowroomApp::makeNavigation()
{
    if (!service_)
        installService();
    const auto home = make<HomeViewController>();
    home->onPressLiveShows = [weakHome = weak(home)] {
        const auto shownHome = weakHome.lock();
        if (shownHome && shownHome->navigationController())
            shownHome->navigationController()->pushViewController(make<mv::MVBroadcastsViewController>(), true);
    };
    const auto navigation = make<UINavigationController>(home);
    navigation->setNavigationBarHidden(true, false); // every page brings its own head
    productTaps = NotificationCenter::defaultCenter().addObserver(
        mv::rawValue(mv::MivoraUINotification::mv_product_tapped), [this, shop = weak(navigation)](const Notification& tap) {
            if (const auto shown = shop.lock())
                openProduct(tap, *shown);
        });
    return navigation;
}

// Over the show, which goes on meanwhile.
void ShowroomApp::openProduct(const Notification& tap, UINavigationController& navigation) const
{
    const auto* productId = tap.value<std::string>("productId");
    const auto* product = productId ? service_->findProduct(*productId) : nullptr;
    if (product)
        navigation.pushViewController(make<ProductPageViewController>(*product), true);
}

} // namespace showroom
