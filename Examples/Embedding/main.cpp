// The smallest host app: a broadcast service of its own, a window, and a screen made of the kit's words.

#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/WindowHost.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"
#include "Service/Mivora.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Extensions/MVSetters.h"

#include <iostream>

namespace {

using namespace platform;

// Where the shows come from. A real one asks its server and may answer later, from any thread.
class CornerShop final : public mv::Mivora {
protected:
    void performGetBroadcasts(const mv::MVBroadCastsListQueryBuilder&, BroadcastsCompletion completion) override
    {
        BroadcastList shows;
        for (const char* title : { "Ceramic Hour: forty cups, no two alike", "Trail test: boots, packs and a very wet tent" }) {
            shows.push_back(make<mv::MVBroadcast>());
            shows.back()->title = title;
            shows.back()->status = mv::MVBroadcastStatus::live;
        }
        completion(shows, std::nullopt);
    }
};

class ShowsViewController final : public UIViewController {
protected:
    void viewDidLoad() override
    {
        view() | mv::setBackgroundColor(mv::MVColor::backgroundColor());
        stack | mv::setAxis(NSLayoutConstraintAxis::vertical) | mv::setSpacing(12);
        stack->setTranslatesAutoresizingMaskIntoConstraints(false);
        view()->addSubview(stack);
        const auto safeArea = view()->safeAreaLayoutGuide();
        activate({
            stack->leadingAnchor().equalTo(safeArea->leadingAnchor(), 20),
            stack->trailingAnchor().equalTo(safeArea->trailingAnchor(), -20),
            stack->topAnchor().equalTo(safeArea->topAnchor(), 20),
        });
        mv::Mivora::getBroadcasts({}, [weakSelf = weak(this)](const auto& shows, const auto&) {
            if (auto self = weakSelf.lock(); self && shows)
                self->show(*shows);
        });
    }

private:
    void show(const mv::Mivora::BroadcastList& shows)
    {
        for (const auto& broadcast : shows) {
            stack->addArrangedSubview(make<UILabel>() | mv::setText(broadcast->title) | mv::setNumberOfLine(0)
                | mv::setFont(mv::MVFont::normalSizeSemiBoldFont()) | mv::setTitleColor(mv::MVColor::primaryTextColor()));
        }
    }

    std::shared_ptr<UIStackView> stack = make<UIStackView>();
};

std::shared_ptr<UIWindow> openShop()
{
    auto window = make<UIWindow>();
    window->setRootViewController(make<ShowsViewController>());
    window->makeKeyAndVisible();
    return window;
}

} // namespace

int main()
{
    mv::Mivora::install(std::make_shared<CornerShop>());

    std::string problem;
    if (const auto host = WindowHost::open("Corner shop", HostDevice::phone(), {}, problem)) {
        const auto window = openShop();
        host->run();
        return 0;
    }
    std::cout << "No window (" << problem << "), so here is a picture: corner-shop.png\n";
    HeadlessHost host;
    const auto window = openShop();
    host.advance(1);
    return host.writePicture("corner-shop.png") ? 0 : 1;
}
