#include "Showroom/Scenes/Scene.h"

#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "UI/Utils/MVUtilities.h"

#include <algorithm>

namespace showroom {

namespace {

constexpr double loadLength = 3.2; // seconds until the lists have answered and the pictures have faded in
constexpr double settleLength = 2; // until a page stands still and its pictures are there

void showGallery(ShowroomApp& app, HeadlessHost& host)
{
    const auto gallery = make<GalleryViewController>();
    app.show(gallery);
    host.advance(0);
    gallery->startReactions();
    host.advance(2.6); // the first reactions are near the top by then, the last ones just leave
}

void showHome(ShowroomApp& app, HeadlessHost& host)
{
    app.openHome();
    host.advance(1);
}

// What shows that text is tapped, and given time to settle.
void tapText(HeadlessHost& host, const std::string& text)
{
    if (const auto place = findOnScreen(host.device(), text))
        host.tap({ place->midX(), place->midY() });
    host.advance(settleLength);
}

void openList(ShowroomApp& app, HeadlessHost& host)
{
    app.openShop();
    host.advance(loadLength);
}

void showList(ShowroomApp& app, HeadlessHost& host) { openList(app, host); }

void showListUpcoming(ShowroomApp& app, HeadlessHost& host)
{
    openList(app, host);
    tapText(host, mv::MVLocalized("mvUpcoming"));
}

void showListPast(ShowroomApp& app, HeadlessHost& host)
{
    openList(app, host);
    tapText(host, mv::MVLocalized("mvPast"));
}

void showListEmpty(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) { scenario.broadcasts.clear(); });
    openList(app, host);
}

void showListLoading(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) { scenario.operations["getBroadcasts"].answer = CannedAnswer::never; });
    app.openShop();
    host.advance(0.95); // the loader's arc is long then
}

void showAlertLogin(ShowroomApp& app, HeadlessHost& host)
{
    app.installService([](Scenario& scenario) {
        for (auto& show : scenario.broadcasts)
            show.anonymousMayWatch = false;
    });
    openList(app, host);
    tapText(host, mv::MVLocalized("mvJoinNow"));
}

} // namespace

const std::vector<Scene>& allScenes()
{
    static const std::vector<Scene> scenes = {
        { "gallery", showGallery },
        { "home", showHome },
        { "list-live", showList },
        { "list-upcoming", showListUpcoming },
        { "list-past", showListPast },
        { "list-empty", showListEmpty },
        { "list-loading", showListLoading },
        { "alert-login", showAlertLogin },
    };
    return scenes;
}

const Scene* findScene(std::string_view name)
{
    const auto& scenes = allScenes();
    const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const Scene& scene) { return scene.name == name; });
    return found == scenes.end() ? nullptr : &*found;
}

} // namespace showroom
