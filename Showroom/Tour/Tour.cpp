#include "Showroom/Tour/Tour.h"

#include "Platform/Foundation/NSLog.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/TourGuide.h"
#include "Showroom/Tour/TourText.h"
#include "UI/Utils/MVUtilities.h"

#include <filesystem>

namespace showroom {

namespace {

constexpr double settleLength = 1.2; // seconds until a page or a turned device stands still
constexpr double watchLength = 6; // until messages, reactions and a featured product have come
constexpr double loadLength = 3; // until the lists have answered and their pictures have faded in

void browse(TourGuide& guide)
{
    guide.drag({ 0.5, 0.8 }, { 0.5, 0.3 }, 0.25);
    guide.wait(2 * settleLength);
    guide.takePicture("list-scrolled");
    for (const auto& [tab, picture] : { std::pair("mvUpcoming", "list-upcoming"), std::pair("mvPast", "list-past") }) {
        guide.tap(mv::MVLocalized(tab));
        guide.wait(2 * settleLength);
        guide.takePicture(picture);
    }
    guide.tap(mv::MVLocalized("mvLive"));
    guide.wait(settleLength);
    guide.drag({ 0.5, 0.4 }, { 0.5, 0.9 }, 0.15);
    guide.wait(2 * settleLength);
    guide.tap("refreshButton");
    guide.wait(0.3);
    guide.takePicture("list-loading");
    guide.wait(loadLength);
}

// A first comment, for which the viewer gives a name, and a reaction.
void takePart(TourGuide& guide)
{
    guide.tap("commentTextField");
    guide.wait(settleLength);
    guide.type(tourText("comment"));
    guide.takePicture("live-typing");
    guide.tap("sendCommentButton");
    guide.wait(settleLength);
    guide.takePicture("live-guest-prompt");
    guide.type(tourText("name"));
    guide.tap(mv::MVLocalized("mvJoin"));
    guide.wait(2 * settleLength);
    guide.takePicture("live-comment");
    guide.tap("sendReactionButton");
    guide.wait(settleLength);
    guide.takePicture("live-reaction-picker");
    guide.tap("reactionButton");
    guide.wait(settleLength);
    guide.takePicture("live-reaction");
}

void turnShow(TourGuide& guide)
{
    guide.rotate(UIDeviceOrientation::landscapeLeft);
    guide.wait(settleLength);
    guide.takePicture("live-landscape");
    guide.tap("commentTextField");
    guide.wait(settleLength);
    guide.type(tourText("thanks"));
    guide.takePicture("live-landscape-typing");
    guide.tap("sendCommentButton");
    guide.wait(settleLength);
    guide.takePicture("live-landscape-comment");
    guide.rotate(UIDeviceOrientation::portrait);
    guide.wait(settleLength);
}

// The first live show: watched, taken part in, turned, a product looked at, left.
void watchShow(TourGuide& guide)
{
    guide.tap(mv::MVLocalized("mvJoinNow"));
    guide.wait(watchLength);
    guide.takePicture("live");
    guide.tap("chatToggleButton");
    guide.wait(settleLength);
    guide.takePicture("live-chat-hidden");
    guide.tap("chatToggleButton");
    guide.wait(settleLength);
    takePart(guide);
    turnShow(guide);
    guide.tap("productNameLabel");
    guide.wait(settleLength);
    guide.takePicture("product");
    guide.tap("productBackButton");
    guide.wait(settleLength);
    guide.tap("closeButton");
    guide.wait(settleLength);
}

void changeDevice(TourGuide& guide, bool rightToLeft)
{
    guide.rotate(UIDeviceOrientation::landscapeLeft);
    guide.wait(settleLength);
    guide.takePicture("landscape");
    guide.rotate(UIDeviceOrientation::portrait);
    guide.wait(settleLength);
    guide.setAppearance(UIUserInterfaceStyle::dark);
    guide.wait(settleLength);
    guide.takePicture("dark");
    guide.setAppearance(UIUserInterfaceStyle::light);
    const auto other = rightToLeft ? UIUserInterfaceLayoutDirection::leftToRight : UIUserInterfaceLayoutDirection::rightToLeft;
    guide.setDirection(other);
    guide.wait(settleLength);
    guide.takePicture("other-direction");
    guide.setDirection(rightToLeft ? UIUserInterfaceLayoutDirection::rightToLeft : UIUserInterfaceLayoutDirection::leftToRight);
    guide.wait(settleLength);
}

} // namespace

bool playTour(ShowroomApp& app, HeadlessHost& host, const std::string& folder, bool withFilm)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        NSLog("tour not played: folder \"" + folder + "\" cannot be made: " + error.message());
        return false;
    }
    app.openHome();
    TourGuide guide(host, folder, withFilm, app.service());
    guide.wait(1);
    guide.takePicture("home");
    guide.tap("liveShowsButton");
    guide.wait(loadLength);
    guide.takePicture("list-live");
    browse(guide);
    watchShow(guide);
    changeDevice(guide, host.device().state().direction == UIUserInterfaceLayoutDirection::rightToLeft);
    guide.tap("backButton");
    guide.wait(settleLength);
    return guide.finish();
}

} // namespace showroom
