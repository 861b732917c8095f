#include "Benchmarks/Workloads/LiveScreen.h"

#include "Benchmarks/Workloads/VideoFrames.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/MainQueue.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"

#include <cstdio>

namespace bench {

using namespace platform;

namespace {

constexpr const char* joinedShow = "ceramic-hour";
constexpr double secondsAFrame = 1.0 / 30;
constexpr double settleSeconds = 4; // after joining, until the curtain is gone and the buttons have come
constexpr int warmUp = 10; // frames

void tell(showroom::CannedService& service, const char* kind, JSONObject detail)
{
    showroom::ScenarioEvent event;
    event.kind = kind;
    event.broadcast = joinedShow;
    event.detail = std::move(detail);
    service.play(event);
}

void tellMessage(showroom::CannedService& service, int number)
{
    static const char* texts[] = { "Does the glaze survive a dishwasher?", "Yes please!",
        "I bought the small one last year and use it every single morning, it has not lost any of its colour" };
    JSONObject detail;
    detail.append("user", number % 2 ? "greta" : "omar");
    detail.append("text", texts[number % 3]);
    tell(service, "message", std::move(detail));
}

void tellReaction(showroom::CannedService& service, int number)
{
    static const char* kinds[] = { "heart", "wow", "like", "laugh" };
    JSONObject detail;
    detail.append("reaction", kinds[number % 4]);
    tell(service, "reaction", std::move(detail));
}

bool measureShow(LiveScreenFigures& figures, int frames, const std::string& picture)
{
    HeadlessHost host;
    showroom::ShowroomApp app(host.device().state());
    app.installService([](showroom::Scenario& scenario) {
        scenario.timeline.clear();
        // From its file, as the shop's media server, which runs in this process, is no part of what is measured.
        for (auto& show : scenario.broadcasts)
            if (show.id == joinedShow)
                show.stream = URL::fileURL(Folders::executable() + "/Showroom.bundle/Videos/host.mp4").absoluteString();
    });
    const auto screen = make<mv::MVBroadcastScreenViewController>();
    screen->broadcastId = joinedShow;
    const auto navigation = make<UINavigationController>(screen);
    navigation->setNavigationBarHidden(true, false); // as in the shop
    app.show(navigation);
    host.advance(settleSeconds);
    if (!showroom::findOnScreen(host.device(), "chatToggleButton")) {
        std::fprintf(stderr, "K6: the live screen is not there\n");
        return false;
    }
    const auto measure = [&](FrameFigures& result, double& screenFrames, bool isBusy) {
        int drawnBefore = 0;
        result = measureFrames(frames, warmUp, [&](int frame) {
            if (frame == warmUp)
                drawnBefore = host.frameCount();
            if (isBusy) {
                // Between two of the screen's frames, as from a network, so that the next one shows it.
                MainQueue::shared().asyncAfter(secondsAFrame / 4, [&app, frame] {
                    tellMessage(*app.service(), frame);
                    tellReaction(*app.service(), frame);
                });
            }
            host.advance(secondsAFrame);
        });
        screenFrames = double(host.frameCount() - drawnBefore) / frames;
    };
    measure(figures.quiet, figures.quietScreenFrames, false);
    measure(figures.busy, figures.busyScreenFrames, true);
    if (!picture.empty())
        host.writePicture(picture);
    return true;
}

} // namespace

LiveScreenFigures measureLiveScreen(int frames, const std::string& picture)
{
    LiveScreenFigures figures;
    if (measureShow(figures, frames, picture))
        figures.decoding = measureDecoding(frames); // last, as its player's memory is no part of the screen's
    return figures;
}

} // namespace bench
