// The smallest host app: a broadcast service of its own, a window, and the kit's list of shows in a navigation stack.

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/WindowHost.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIWindow.h"
#include "Service/Mivora.h"
#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsViewController.h"

#include <iostream>

namespace {

using namespace platform;

// Where the shows come from. A real one asks its server and may answer later, from any thread.
class CornerShop final : public mv::Mivora {
public:
    CornerShop()
    {
        for (const char* title : { "Ceramic Hour: forty cups, no two alike", "Trail test: boots, packs and a very wet tent" }) {
            shows.push_back(make<mv::MVBroadcast>());
            shows.back()->id = title;
            shows.back()->title = title;
            shows.back()->description = "Live from the corner shop.";
            shows.back()->status = mv::MVBroadcastStatus::live;
            shows.back()->endTime = Date::now() + 3600;
            shows.back()->isAnonymousAllowedToWatch = true;
        }
    }

protected:
    void performGetBroadcasts(const mv::MVBroadCastsListQueryBuilder& query, BroadcastsCompletion completion) override
    {
        completion(query.status == mv::MVBroadcastStatus::live ? shows : BroadcastList(), std::nullopt);
    }
    void performGetBroadcast(const std::string& identifier, BroadcastCompletion completion) override
    {
        for (const auto& show : shows)
            if (show->id == identifier)
                return completion(show, std::nullopt);
        completion(nullptr, mv::MVApiError { .errorCode = "not_found", .errorMessage = "No such show.", .statusCode = 404 });
    }

private:
    BroadcastList shows;
};

std::shared_ptr<UIWindow> openShop()
{
    auto window = make<UIWindow>();
    window->setRootViewController(make<UINavigationController>(make<mv::MVBroadcastsViewController>()));
    window->makeKeyAndVisible();
    return window;
}

} // namespace

int main()
{
    Bundle::setMainBundle(Folders::executable() + "/CornerShop.bundle"); // the shop's words
    std::string problem;
    if (const auto host = WindowHost::open("Corner shop", HostDevice::phone(), {}, problem)) {
        mv::Mivora::install(std::make_shared<CornerShop>());
        const auto window = openShop();
        host->run();
        return 0;
    }
    std::cout << "No window (" << problem << "), so here is a picture: corner-shop.png\n";
    HeadlessHost host;
    mv::Mivora::install(std::make_shared<CornerShop>());
    const auto window = openShop();
    host.advance(1);
    return host.writePicture("corner-shop.png") ? 0 : 1;
}
