#include "Showroom/Scenes/Scene.h"

#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Scenes/GalleryViewController.h"
#include "Showroom/ShowroomApp.h"

#include <algorithm>

namespace showroom {

namespace {

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
    app.openShop();
    host.advance(1);
}

} // namespace

const std::vector<Scene>& allScenes()
{
    static const std::vector<Scene> scenes = {
        { "gallery", showGallery },
        { "home", showHome },
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
